/* SPDX-License-Identifier: Apache-2.0 */
// Which interface each port of the configuration had when the server was told last.
#ifndef CFM_AGENT_CORE_INTERFACE_TABLE_H
#define CFM_AGENT_CORE_INTERFACE_TABLE_H

#include <cfm/hierarchy.h>

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <utility>

namespace cfm_agent {

class InterfaceTable {
 public:
  // The interface index of a port, 0 while there is no such interface.
  using IndexOfPort = std::function<std::uint32_t(sepan_port_t)>;

  explicit InterfaceTable(IndexOfPort index_of_port) : index_of_port_(std::move(index_of_port)) {}

  // Looks up the ports of the configuration in force. Gives those that were in the last one, too,
  // and have an interface now that is not the one they had then: it has appeared, or was made anew.
  std::set<sepan_port_t> Look(const cfm::hierarchy& hierarchy);

 private:
  IndexOfPort index_of_port_;
  std::map<sepan_port_t, std::uint32_t> indexes_;
};

// The configuration without the endpoints on these ports.
cfm::hierarchy Without(cfm::hierarchy hierarchy, const std::set<sepan_port_t>& ports);

}  // namespace cfm_agent

#endif
