/* SPDX-License-Identifier: Apache-2.0 */
// Reads the maintenance endpoints of a configuration file.
#ifndef CFM_AGENT_CORE_ENDPOINT_READER_H
#define CFM_AGENT_CORE_ENDPOINT_READER_H

#include <cfm/hierarchy.h>

#include <cstdint>
#include <optional>

#include "core/config.h"
#include "core/value.h"

namespace cfm_agent {

constexpr std::uint64_t kMaxMepId = 8191;
constexpr std::uint64_t kMaxVid = 4094;

struct EndpointDraft {
  explicit EndpointDraft(const PortOfName& ports) : port_of_name(ports) {}

  const PortOfName& port_of_name;
  std::optional<std::uint16_t> mep_id;  // when it could be read
  cfm::st_maintenance_endpoint_cfg cfg;
};

// Reads one endpoint; what it does not say gets the standard's default.
EndpointDraft ReadEndpoint(const Value& endpoint, const PortOfName& port_of_name);

// Sets a field to a value that was read, if it was.
template <typename To, typename From>
void Assign(To& to, const std::optional<From>& from) {
  if (from) {
    to = static_cast<To>(*from);
  }
}

}  // namespace cfm_agent

#endif
