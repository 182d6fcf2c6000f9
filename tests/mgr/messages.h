/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Requests as a client sends them, every field set to an allowed value.
 */
#ifndef CFM_TESTS_MGR_MESSAGES_H
#define CFM_TESTS_MGR_MESSAGES_H

#include <cfm/client_server.pb.h>

#include <cstdint>
#include <string>
#include <vector>

namespace cfm_mgr_test {

client_server::OpCreateMaintenanceDomain CreateMd(const std::string& md);
client_server::OpUpdateMaintenanceDomain UpdateMd(const std::string& md);
client_server::OpDeleteMaintenanceDomain DeleteMd(const std::string& md);
client_server::OpCreateMaintenanceAssociation CreateMa(
    const std::string& md, const std::string& ma, const std::vector<std::uint32_t>& mep_ids = {});
client_server::OpUpdateMaintenanceAssociation UpdateMa(
    const std::string& md, const std::string& ma, const std::vector<std::uint32_t>& mep_ids = {});
client_server::OpDeleteMaintenanceAssociation DeleteMa(const std::string& md,
                                                       const std::string& ma);
client_server::OpCreateMaintenanceEndpoint CreateMep(const std::string& md, const std::string& ma,
                                                     std::uint32_t mep_id);
client_server::OpUpdateMaintenanceEndpoint UpdateMep(const std::string& md, const std::string& ma,
                                                     std::uint32_t mep_id);
client_server::OpDeleteMaintenanceEndpoint DeleteMep(const std::string& md, const std::string& ma,
                                                     std::uint32_t mep_id);
client_server::OpCreateDelayMeasurementProbe CreateProbe(std::uint32_t probe_id);
client_server::OpDeleteDelayMeasurementProbe DeleteProbe(std::uint32_t probe_id);
client_server::OpCreateDelayMeasurementSession CreateSession(std::uint32_t probe_id,
                                                             std::uint32_t session_id);
client_server::OpDeleteDelayMeasurementSession DeleteSession(std::uint32_t probe_id,
                                                             std::uint32_t session_id);

/** AIS settings that are on, with every value set. */
void SetAis(client_server::Ais& ais);

}  // namespace cfm_mgr_test

#endif
