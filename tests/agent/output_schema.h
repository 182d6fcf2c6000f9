/* SPDX-License-Identifier: Apache-2.0 */
// Judges what the agent writes for programs.
#ifndef CFM_TESTS_AGENT_OUTPUT_SCHEMA_H
#define CFM_TESTS_AGENT_OUTPUT_SCHEMA_H

#include <string>

namespace cfm_agent::testing {

// What is wrong with the first line that is not as docs/agent-output.schema.json says, or that has
// a member which the schema does not name; empty if all are right.
std::string JudgeLines(const std::string& lines);

}  // namespace cfm_agent::testing

#endif
