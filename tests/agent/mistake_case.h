/* SPDX-License-Identifier: Apache-2.0 */
// Mistakes of configuration files as tables: one line of a file, and what is wrong with it.
#ifndef CFM_TESTS_AGENT_MISTAKE_CASE_H
#define CFM_TESTS_AGENT_MISTAKE_CASE_H

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace cfm_agent::testing {

// The line stands for % in a file that is right but for that line, and whose line numbers the
// message counts.
struct Case {
  const char* name;
  const char* line;
  const char* mistake;
};

inline std::ostream& operator<<(std::ostream& out, const Case& test) { return out << test.name; }

inline std::string NameOf(const ::testing::TestParamInfo<Case>& info) { return info.param.name; }

inline std::string With(std::string text, const char* line) {
  return text.replace(text.find('%'), 1, line);
}

}  // namespace cfm_agent::testing

#endif
