/* SPDX-License-Identifier: Apache-2.0 */
// How far a test has come, for the line that is updated while it runs.
#ifndef CFM_AGENT_CORE_PROGRESS_H
#define CFM_AGENT_CORE_PROGRESS_H

#include <string>

#include "core/findings.h"
#include "core/test_tracker.h"

namespace cfm_agent {

// "loopback 1: 37/100 replies, 3 s"; empty for statistics, which come at once or not at all.
std::string ProgressOf(const Test& test, const Plan& plan, Duration elapsed);

}  // namespace cfm_agent

#endif
