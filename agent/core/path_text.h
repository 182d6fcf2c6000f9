/* SPDX-License-Identifier: Apache-2.0 */
// A linktrace drawn hop by hop.
#ifndef CFM_AGENT_CORE_PATH_TEXT_H
#define CFM_AGENT_CORE_PATH_TEXT_H

#include <string>
#include <vector>

#include "core/hop.h"
#include "core/style.h"
#include "core/test_tracker.h"

namespace cfm_agent {

// The path from the local MEP on, a line for it, one for each hop, and one for each port that a hop
// tells of. Nothing without replies.
std::vector<std::string> DrawPath(const Test& test, const std::vector<PathStep>& path,
                                  const Style& style);

}  // namespace cfm_agent

#endif
