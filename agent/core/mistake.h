/* SPDX-License-Identifier: Apache-2.0 */
// What is wrong with a configuration file, and where.
#ifndef CFM_AGENT_CORE_MISTAKE_H
#define CFM_AGENT_CORE_MISTAKE_H

#include <string>
#include <string_view>
#include <vector>

namespace cfm_agent {

// A place in a file, counted from 1; line 0 stands for the file as a whole.
struct FileMark {
  int line = 0;
  int column = 0;
};

struct Mistake {
  FileMark mark;
  std::string field;  // path such as domains[0].name; empty for the file as a whole
  std::string text;   // what is wrong and what would be right
};

using Mistakes = std::vector<Mistake>;

// Into the order of the file.
void SortByPlace(Mistakes& mistakes);

// "agent.yaml:14:9: domains[0].level: 9 is out of range; use a whole number from 0 to 7"
std::string Describe(std::string_view file, const Mistake& mistake);

}  // namespace cfm_agent

#endif
