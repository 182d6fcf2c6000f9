/* SPDX-License-Identifier: Apache-2.0 */
// The message that each request carries, filled field by field.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_REQUEST_MESSAGES_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_REQUEST_MESSAGES_H

#include <cfm/client_server.pb.h>
#include <cfm/hierarchy.h>
#include <cfm/probe.h>

#include <cstdint>
#include <string>

namespace cfm_test {

client_server::OpCreateMaintenanceDomain CreateMdMessage(const std::string& md_name,
                                                         const cfm::st_maintenance_domain_cfg& cfg);
client_server::OpUpdateMaintenanceDomain UpdateMdMessage(const std::string& md_name,
                                                         const cfm::st_maintenance_domain_cfg& cfg);
client_server::OpDeleteMaintenanceDomain DeleteMdMessage(const std::string& md_name);

client_server::OpCreateMaintenanceAssociation CreateMaMessage(
    const std::string& md_name, const std::string& ma_name,
    const cfm::st_maintenance_association_cfg& cfg);
client_server::OpUpdateMaintenanceAssociation UpdateMaMessage(
    const std::string& md_name, const std::string& ma_name,
    const cfm::st_maintenance_association_cfg& cfg);
client_server::OpDeleteMaintenanceAssociation DeleteMaMessage(const std::string& md_name,
                                                              const std::string& ma_name);

// The names that an endpoint's requests carry are its own, and its identifier is its settings'.
client_server::OpCreateMaintenanceEndpoint CreateMepMessage(const cfm::hierarchy_mep& mep);
client_server::OpUpdateMaintenanceEndpoint UpdateMepMessage(const cfm::hierarchy_mep& mep);
client_server::OpDeleteMaintenanceEndpoint DeleteMepMessage(const cfm::hierarchy_mep& mep);

client_server::OpCreateDelayMeasurementProbe CreateProbeMessage(std::uint16_t probe_id,
                                                                const cfm::probe_cfg& cfg);
client_server::OpDeleteDelayMeasurementProbe DeleteProbeMessage(std::uint16_t probe_id);
client_server::OpCreateDelayMeasurementSession CreateSessionMessage(std::uint16_t probe_id,
                                                                    std::uint16_t session_id,
                                                                    const cfm::session_cfg& cfg);
client_server::OpDeleteDelayMeasurementSession DeleteSessionMessage(std::uint16_t probe_id,
                                                                    std::uint16_t session_id);

}  // namespace cfm_test

#endif
