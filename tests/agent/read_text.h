/* SPDX-License-Identifier: Apache-2.0 */
// Reads configuration texts the way the tests of the agent want them.
#ifndef CFM_TESTS_AGENT_READ_TEXT_H
#define CFM_TESTS_AGENT_READ_TEXT_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/config.h"

namespace cfm_agent::testing {

// Ports in the order in which their names come up, from 1.
class Ports {
 public:
  PortOfName Function() {
    return [this](const std::string& name) {
      return ports_.try_emplace(name, static_cast<sepan_port_t>(ports_.size() + 1)).first->second;
    };
  }
  sepan_port_t Of(const std::string& name) const { return ports_.at(name); }

 private:
  std::map<std::string, sepan_port_t> ports_;
};

inline ReadResult Read(std::string_view text) {
  Ports ports;
  return ReadConfig(text, ports.Function());
}

// The mistakes in a file called f, as they are printed.
inline std::vector<std::string> MistakesIn(std::string_view text) {
  std::vector<std::string> lines;
  for (const Mistake& mistake : Read(text).mistakes) {
    lines.push_back(Describe("f", mistake));
  }
  return lines;
}

// The warnings of a file called f, as they are printed.
inline std::vector<std::string> WarningsIn(std::string_view text) {
  std::vector<std::string> lines;
  for (const Warning& warning : Read(text).warnings) {
    lines.push_back(Describe("f", warning.found));
  }
  return lines;
}

}  // namespace cfm_agent::testing

#endif
