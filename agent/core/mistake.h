/* SPDX-License-Identifier: Apache-2.0 */
// What is wrong with a configuration file, or hardly meant, and where.
#ifndef CFM_AGENT_CORE_MISTAKE_H
#define CFM_AGENT_CORE_MISTAKE_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace cfm_agent {

// A place in a file, counted from 1; line 0 stands for the file as a whole.
struct FileMark {
  int line = 0;
  int column = 0;
};

enum class Severity : std::uint8_t {
  Mistake,  // the file cannot be taken
  Warning,  // it is taken, and hardly meant like this
};

struct Mistake {
  FileMark mark;
  std::string field;  // path such as domains[0].name; empty for the file as a whole
  std::string text;   // what is wrong and what would be right
  Severity severity = Severity::Mistake;
};

using Mistakes = std::vector<Mistake>;

struct Warning {
  Mistake found;
  std::string about;  // stays the same when an edit of the file moves what it is about
};

using Warnings = std::vector<Warning>;

// Into the order of the file.
void SortByPlace(Mistakes& mistakes);
void SortByPlace(Warnings& warnings);

// "agent.yaml:14:9: domains[0].level: 9 is out of range; use a whole number from 0 to 7"
// A warning says so behind the place.
std::string Describe(std::string_view file, const Mistake& mistake);

}  // namespace cfm_agent

#endif
