// SPDX-License-Identifier: Apache-2.0
#include "core/hierarchy_requests.h"

#include "core/numbers.h"

namespace cfm::core {
namespace {

template <typename Message>
void SetMaName(Message& message, const std::string& md_name, const std::string& ma_name) {
  message.set_md_name(md_name);
  message.set_ma_name(ma_name);
}

template <typename Message>
void SetMepName(Message& message, const std::string& md_name, const std::string& ma_name,
                std::uint16_t mep_id) {
  SetMaName(message, md_name, ma_name);
  message.set_mep_id(mep_id);
}

// What a domain and an association have in common.
template <typename Message>
void SetMpSettings(Message& message, SenderIdTlvContent sender_id, MhfCreationMode mhf_creation) {
  message.set_sender_id(Number(sender_id));
  message.set_mhf_creation(Number(mhf_creation));
}

// The parts of an association that its create and its update share.
template <typename Message>
void SetMaSettings(Message& message, CcmInterval ccm_interval, SenderIdTlvContent sender_id,
                   MhfCreationMode mhf_creation, const std::set<std::uint16_t>& mep_ids,
                   const st_ais_cfg& ais) {
  message.set_ccm_interval(Number(ccm_interval));
  SetMpSettings(message, sender_id, mhf_creation);
  message.mutable_mep_ids()->Assign(mep_ids.begin(), mep_ids.end());

  client_server::Ais& wire = *message.mutable_ais();
  wire.set_enabled(ais.enabled);
  if (ais.enabled) {
    wire.set_octet_a(ais.octet_a);
    wire.set_word_b(ais.word_b);
    wire.set_octet_c(ais.octet_c);
    wire.mutable_id_set()->Assign(ais.id_set.begin(), ais.id_set.end());
  }
  wire.set_flag_d(ais.flag_d);
}

// The parts of an endpoint that its create and its update share.
template <typename Message>
void SetMepSettings(Message& message, std::uint16_t primary_vid, std::uint16_t inner_vid,
                    bool admin_state, bool ccm_enabled, std::uint8_t ccm_priority,
                    Defects lowest_prio_defect, std::uint16_t fng_alarm_time,
                    std::uint16_t fng_reset_time, FaultAction fault_action, bool aux_flag) {
  message.set_primary_vid(primary_vid);
  message.set_inner_vid(inner_vid);
  message.set_admin_state(admin_state);
  message.set_ccm_enabled(ccm_enabled);
  message.set_ccm_priority(ccm_priority);
  message.set_lowest_prio_defect(Number(lowest_prio_defect));
  message.set_fng_alarm_time(fng_alarm_time);
  message.set_fng_reset_time(fng_reset_time);
  message.set_fault_action(Number(fault_action));
  message.set_aux_flag(aux_flag);
}

}  // namespace

client_server::OpCreateMaintenanceDomain CreateMd(const std::string& md_name,
                                                  const st_maintenance_domain_cfg& cfg) {
  client_server::OpCreateMaintenanceDomain message;
  message.set_md_name(md_name);
  message.set_format(Number(cfg.format));
  message.set_level(cfg.level);
  SetMpSettings(message, cfg.sender_id, cfg.mhf_creation);
  return message;
}

client_server::OpUpdateMaintenanceDomain UpdateMd(const std::string& md_name,
                                                  SenderIdTlvContent sender_id,
                                                  MhfCreationMode mhf_creation) {
  client_server::OpUpdateMaintenanceDomain message;
  message.set_md_name(md_name);
  SetMpSettings(message, sender_id, mhf_creation);
  return message;
}

client_server::OpDeleteMaintenanceDomain DeleteMd(const std::string& md_name) {
  client_server::OpDeleteMaintenanceDomain message;
  message.set_md_name(md_name);
  return message;
}

client_server::OpCreateMaintenanceAssociation CreateMa(const std::string& md_name,
                                                       const std::string& ma_name,
                                                       const st_maintenance_association_cfg& cfg) {
  client_server::OpCreateMaintenanceAssociation message;
  SetMaName(message, md_name, ma_name);
  message.set_format(Number(cfg.format));
  message.mutable_vids()->Assign(cfg.vids.begin(), cfg.vids.end());
  SetMaSettings(message, cfg.ccm_interval, cfg.sender_id, cfg.mhf_creation, cfg.mep_ids, cfg.ais);
  return message;
}

client_server::OpUpdateMaintenanceAssociation UpdateMa(
    const std::string& md_name, const std::string& ma_name, CcmInterval ccm_interval,
    SenderIdTlvContent sender_id, MhfCreationMode mhf_creation,
    const std::set<std::uint16_t>& mep_ids, const st_ais_cfg& ais) {
  client_server::OpUpdateMaintenanceAssociation message;
  SetMaName(message, md_name, ma_name);
  SetMaSettings(message, ccm_interval, sender_id, mhf_creation, mep_ids, ais);
  return message;
}

client_server::OpDeleteMaintenanceAssociation DeleteMa(const std::string& md_name,
                                                       const std::string& ma_name) {
  client_server::OpDeleteMaintenanceAssociation message;
  SetMaName(message, md_name, ma_name);
  return message;
}

client_server::OpCreateMaintenanceEndpoint CreateMep(const std::string& md_name,
                                                     const std::string& ma_name,
                                                     const st_maintenance_endpoint_cfg& cfg,
                                                     std::uint32_t ifindex) {
  client_server::OpCreateMaintenanceEndpoint message;
  SetMepName(message, md_name, ma_name, cfg.mep_id);
  message.set_direction(Number(cfg.direction));
  message.set_ifindex(ifindex);
  SetMepSettings(message, cfg.primary_vid, cfg.inner_vid, cfg.admin_state, cfg.ccm_enabled,
                 cfg.ccm_priority, cfg.lowest_prio_defect, cfg.fng_alarm_time, cfg.fng_reset_time,
                 cfg.fault_action, cfg.aux_flag);
  return message;
}

client_server::OpUpdateMaintenanceEndpoint UpdateMep(
    const std::string& md_name, const std::string& ma_name, std::uint16_t mep_id,
    std::uint16_t primary_vid, std::uint16_t inner_vid, bool admin_state, bool ccm_enabled,
    std::uint8_t ccm_priority, Defects lowest_prio_defect, std::uint16_t fng_alarm_time,
    std::uint16_t fng_reset_time, FaultAction fault_action, bool aux_flag) {
  client_server::OpUpdateMaintenanceEndpoint message;
  SetMepName(message, md_name, ma_name, mep_id);
  SetMepSettings(message, primary_vid, inner_vid, admin_state, ccm_enabled, ccm_priority,
                 lowest_prio_defect, fng_alarm_time, fng_reset_time, fault_action, aux_flag);
  return message;
}

client_server::OpDeleteMaintenanceEndpoint DeleteMep(const std::string& md_name,
                                                     const std::string& ma_name,
                                                     std::uint16_t mep_id) {
  client_server::OpDeleteMaintenanceEndpoint message;
  SetMepName(message, md_name, ma_name, mep_id);
  return message;
}

}  // namespace cfm::core
