/* SPDX-License-Identifier: Apache-2.0 */
// The answer to `show` as tables.
#ifndef CFM_AGENT_CORE_SHOW_TEXT_H
#define CFM_AGENT_CORE_SHOW_TEXT_H

#include <string>
#include <vector>

#include "core/show.h"
#include "core/style.h"

namespace cfm_agent {

std::vector<std::string> TextOf(const ShowAnswer& answer, const Style& style);

}  // namespace cfm_agent

#endif
