/* SPDX-License-Identifier: Apache-2.0 */
// The nine requests for domains, associations and endpoints as messages.
#ifndef CFM_SRC_CORE_HIERARCHY_REQUESTS_H
#define CFM_SRC_CORE_HIERARCHY_REQUESTS_H

#include <cfm/client_server.pb.h>
#include <cfm/hierarchy.h>

#include <cstdint>
#include <set>
#include <string>

namespace cfm::core {

client_server::OpCreateMaintenanceDomain CreateMd(const std::string& md_name,
                                                  const st_maintenance_domain_cfg& cfg);
client_server::OpUpdateMaintenanceDomain UpdateMd(const std::string& md_name,
                                                  SenderIdTlvContent sender_id,
                                                  MhfCreationMode mhf_creation);
client_server::OpDeleteMaintenanceDomain DeleteMd(const std::string& md_name);

client_server::OpCreateMaintenanceAssociation CreateMa(const std::string& md_name,
                                                       const std::string& ma_name,
                                                       const st_maintenance_association_cfg& cfg);
client_server::OpUpdateMaintenanceAssociation UpdateMa(
    const std::string& md_name, const std::string& ma_name, CcmInterval ccm_interval,
    SenderIdTlvContent sender_id, MhfCreationMode mhf_creation,
    const std::set<std::uint16_t>& mep_ids, const st_ais_cfg& ais);
client_server::OpDeleteMaintenanceAssociation DeleteMa(const std::string& md_name,
                                                       const std::string& ma_name);

/// @param ifindex  interface index of `cfg.port`
client_server::OpCreateMaintenanceEndpoint CreateMep(const std::string& md_name,
                                                     const std::string& ma_name,
                                                     const st_maintenance_endpoint_cfg& cfg,
                                                     std::uint32_t ifindex);
client_server::OpUpdateMaintenanceEndpoint UpdateMep(
    const std::string& md_name, const std::string& ma_name, std::uint16_t mep_id,
    std::uint16_t primary_vid, std::uint16_t inner_vid, bool admin_state, bool ccm_enabled,
    std::uint8_t ccm_priority, Defects lowest_prio_defect, std::uint16_t fng_alarm_time,
    std::uint16_t fng_reset_time, FaultAction fault_action, bool aux_flag);
client_server::OpDeleteMaintenanceEndpoint DeleteMep(const std::string& md_name,
                                                     const std::string& ma_name,
                                                     std::uint16_t mep_id);

}  // namespace cfm::core

#endif
