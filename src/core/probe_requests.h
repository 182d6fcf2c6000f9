/* SPDX-License-Identifier: Apache-2.0 */
// The four requests for delay-measurement probes and their sessions as messages.
#ifndef CFM_SRC_CORE_PROBE_REQUESTS_H
#define CFM_SRC_CORE_PROBE_REQUESTS_H

#include <cfm/client_server.pb.h>
#include <cfm/probe.h>

#include <cstdint>

namespace cfm::core {

client_server::OpCreateDelayMeasurementProbe CreateProbe(std::uint16_t probe_id,
                                                         const probe_cfg& cfg);
client_server::OpDeleteDelayMeasurementProbe DeleteProbe(std::uint16_t probe_id);
client_server::OpCreateDelayMeasurementSession CreateSession(std::uint16_t probe_id,
                                                             std::uint16_t session_id,
                                                             const session_cfg& cfg);
client_server::OpDeleteDelayMeasurementSession DeleteSession(std::uint16_t probe_id,
                                                             std::uint16_t session_id);

}  // namespace cfm::core

#endif
