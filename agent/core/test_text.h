/* SPDX-License-Identifier: Apache-2.0 */
// What tests come to as text.
#ifndef CFM_AGENT_CORE_TEST_TEXT_H
#define CFM_AGENT_CORE_TEST_TEXT_H

#include <string>
#include <vector>

#include "core/record.h"
#include "core/style.h"

namespace cfm_agent {

std::vector<std::string> TextOf(const TestStarted& started);
// What was found, and a last line that says how the test ended.
std::vector<std::string> TextOf(const TestResult& result, const Style& style);

}  // namespace cfm_agent

#endif
