/* SPDX-License-Identifier: Apache-2.0 */
// The answer to `show`.
#ifndef CFM_AGENT_CORE_SHOW_H
#define CFM_AGENT_CORE_SHOW_H

#include <cfm/hierarchy.h>
#include <cfm/status.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/command.h"
#include "core/config.h"
#include "core/status_table.h"

namespace cfm_agent {

// A port as the host knows it.
struct Interface {
  std::string name;
  bool present = false;
};
using InterfaceOfPort = std::function<Interface(sepan_port_t)>;

// Why nothing is reported of what is configured, or why what is reported cannot be that.
enum class Gap : std::uint8_t {
  None,
  ServerAbsent,
  ServerNotInStep,
  Removed,  // by the server
  InterfaceMissing,
  NeverReported,
  NotListed,  // a remote MEP that the association's list does not have
};

struct ShownRemote {
  std::uint16_t mep_id = 0;
  std::optional<cfm::remote_mep_status> status;
  Gap gap = Gap::None;
};

struct ShownEndpoint {
  std::uint16_t mep_id = 0;
  Interface port;
  cfm::MepDirection direction{};
  bool active = false;
  bool ccm_enabled = false;
  std::optional<cfm::local_mep_status> status;
  std::size_t remotes_ok = 0;
  std::size_t remotes_expected = 0;
  Gap gap = Gap::None;
  // Its remote MEPs, listed or reported, when it was asked for by its number.
  std::optional<std::vector<ShownRemote>> remotes;
};

struct ShownAssociation {
  std::string name;
  cfm::CcmInterval ccm_interval{};
  std::vector<ShownEndpoint> endpoints;
};

struct ShownDomain {
  std::string name;
  std::uint8_t level = 0;
  std::vector<ShownAssociation> associations;
};

// An endpoint that the server reports and the configuration does not have.
struct ShownStranger {
  MepKey mep;
  cfm::local_mep_status status;
};

struct ShowAnswer {
  ServerState server = ServerState::Absent;
  std::vector<ShownDomain> domains;
  std::vector<ShownStranger> unconfigured;
  bool found = true;  // false: there is nothing of the name or number asked for
};

// Each endpoint as it is configured beside what is reported.
ShowAnswer Show(const ShowCommand& filter, const Config& config, const StatusTable& table,
                ServerState server, const InterfaceOfPort& interface_of_port);

}  // namespace cfm_agent

#endif
