// SPDX-License-Identifier: Apache-2.0
#include "request_messages.h"

namespace cfm_test {
namespace {

template <typename Enumeration>
std::int32_t Value(Enumeration enumeration) {
  return static_cast<std::int32_t>(enumeration);
}

void Fill(const cfm::st_ais_cfg& cfg, client_server::Ais& ais) {
  ais.set_enabled(cfg.enabled);
  if (cfg.enabled) {
    ais.set_octet_a(cfg.octet_a);
    ais.set_word_b(cfg.word_b);
    ais.set_octet_c(cfg.octet_c);
    for (const std::uint16_t id : cfg.id_set) {
      ais.add_id_set(id);
    }
  }
  ais.set_flag_d(cfg.flag_d);
}

}  // namespace

client_server::OpCreateMaintenanceDomain CreateMdMessage(
    const std::string& md_name, const cfm::st_maintenance_domain_cfg& cfg) {
  client_server::OpCreateMaintenanceDomain message;
  message.set_md_name(md_name);
  message.set_format(Value(cfg.format));
  message.set_level(cfg.level);
  message.set_sender_id(Value(cfg.sender_id));
  message.set_mhf_creation(Value(cfg.mhf_creation));
  return message;
}

client_server::OpUpdateMaintenanceDomain UpdateMdMessage(
    const std::string& md_name, const cfm::st_maintenance_domain_cfg& cfg) {
  client_server::OpUpdateMaintenanceDomain message;
  message.set_md_name(md_name);
  message.set_sender_id(Value(cfg.sender_id));
  message.set_mhf_creation(Value(cfg.mhf_creation));
  return message;
}

client_server::OpDeleteMaintenanceDomain DeleteMdMessage(const std::string& md_name) {
  client_server::OpDeleteMaintenanceDomain message;
  message.set_md_name(md_name);
  return message;
}

client_server::OpCreateMaintenanceAssociation CreateMaMessage(
    const std::string& md_name, const std::string& ma_name,
    const cfm::st_maintenance_association_cfg& cfg) {
  client_server::OpCreateMaintenanceAssociation message;
  message.set_md_name(md_name);
  message.set_ma_name(ma_name);
  message.set_format(Value(cfg.format));
  message.set_ccm_interval(Value(cfg.ccm_interval));
  message.set_sender_id(Value(cfg.sender_id));
  message.set_mhf_creation(Value(cfg.mhf_creation));
  for (const std::uint16_t vid : cfg.vids) {
    message.add_vids(vid);
  }
  for (const std::uint16_t id : cfg.mep_ids) {
    message.add_mep_ids(id);
  }
  Fill(cfg.ais, *message.mutable_ais());
  return message;
}

client_server::OpUpdateMaintenanceAssociation UpdateMaMessage(
    const std::string& md_name, const std::string& ma_name,
    const cfm::st_maintenance_association_cfg& cfg) {
  client_server::OpUpdateMaintenanceAssociation message;
  message.set_md_name(md_name);
  message.set_ma_name(ma_name);
  message.set_ccm_interval(Value(cfg.ccm_interval));
  message.set_sender_id(Value(cfg.sender_id));
  message.set_mhf_creation(Value(cfg.mhf_creation));
  for (const std::uint16_t id : cfg.mep_ids) {
    message.add_mep_ids(id);
  }
  Fill(cfg.ais, *message.mutable_ais());
  return message;
}

client_server::OpDeleteMaintenanceAssociation DeleteMaMessage(const std::string& md_name,
                                                              const std::string& ma_name) {
  client_server::OpDeleteMaintenanceAssociation message;
  message.set_md_name(md_name);
  message.set_ma_name(ma_name);
  return message;
}

client_server::OpCreateMaintenanceEndpoint CreateMepMessage(const cfm::hierarchy_mep& mep) {
  std::uint32_t ifindex = 0;
  sepan_to_ifindex(mep.cfg.port, &ifindex);
  client_server::OpCreateMaintenanceEndpoint message;
  message.set_md_name(mep.md_name);
  message.set_ma_name(mep.ma_name);
  message.set_mep_id(mep.cfg.mep_id);
  message.set_direction(Value(mep.cfg.direction));
  message.set_ifindex(ifindex);
  message.set_primary_vid(mep.cfg.primary_vid);
  message.set_inner_vid(mep.cfg.inner_vid);
  message.set_admin_state(mep.cfg.admin_state);
  message.set_ccm_enabled(mep.cfg.ccm_enabled);
  message.set_ccm_priority(mep.cfg.ccm_priority);
  message.set_lowest_prio_defect(Value(mep.cfg.lowest_prio_defect));
  message.set_fng_alarm_time(mep.cfg.fng_alarm_time);
  message.set_fng_reset_time(mep.cfg.fng_reset_time);
  message.set_fault_action(Value(mep.cfg.fault_action));
  message.set_aux_flag(mep.cfg.aux_flag);
  return message;
}

client_server::OpUpdateMaintenanceEndpoint UpdateMepMessage(const cfm::hierarchy_mep& mep) {
  client_server::OpUpdateMaintenanceEndpoint message;
  message.set_md_name(mep.md_name);
  message.set_ma_name(mep.ma_name);
  message.set_mep_id(mep.cfg.mep_id);
  message.set_primary_vid(mep.cfg.primary_vid);
  message.set_inner_vid(mep.cfg.inner_vid);
  message.set_admin_state(mep.cfg.admin_state);
  message.set_ccm_enabled(mep.cfg.ccm_enabled);
  message.set_ccm_priority(mep.cfg.ccm_priority);
  message.set_lowest_prio_defect(Value(mep.cfg.lowest_prio_defect));
  message.set_fng_alarm_time(mep.cfg.fng_alarm_time);
  message.set_fng_reset_time(mep.cfg.fng_reset_time);
  message.set_fault_action(Value(mep.cfg.fault_action));
  message.set_aux_flag(mep.cfg.aux_flag);
  return message;
}

client_server::OpDeleteMaintenanceEndpoint DeleteMepMessage(const cfm::hierarchy_mep& mep) {
  client_server::OpDeleteMaintenanceEndpoint message;
  message.set_md_name(mep.md_name);
  message.set_ma_name(mep.ma_name);
  message.set_mep_id(mep.cfg.mep_id);
  return message;
}

client_server::OpCreateDelayMeasurementProbe CreateProbeMessage(std::uint16_t probe_id,
                                                                const cfm::probe_cfg& cfg) {
  client_server::OpCreateDelayMeasurementProbe message;
  message.set_ma_name(cfg.ma);
  message.set_md_name(cfg.md);
  message.set_probe_id(probe_id);
  message.set_interval(cfg.interval);
  message.set_lmep_id(cfg.lmep);
  message.set_rmep_id(cfg.rmep);
  return message;
}

client_server::OpDeleteDelayMeasurementProbe DeleteProbeMessage(std::uint16_t probe_id) {
  client_server::OpDeleteDelayMeasurementProbe message;
  message.set_probe_id(probe_id);
  return message;
}

client_server::OpCreateDelayMeasurementSession CreateSessionMessage(std::uint16_t probe_id,
                                                                    std::uint16_t session_id,
                                                                    const cfm::session_cfg& cfg) {
  client_server::OpCreateDelayMeasurementSession message;
  message.set_probe_id(probe_id);
  message.set_session_id(session_id);
  message.set_interval(cfg.interval);
  message.set_count(cfg.count);
  message.set_size(cfg.size);
  message.set_pcp(cfg.pcp);
  return message;
}

client_server::OpDeleteDelayMeasurementSession DeleteSessionMessage(std::uint16_t probe_id,
                                                                    std::uint16_t session_id) {
  client_server::OpDeleteDelayMeasurementSession message;
  message.set_probe_id(probe_id);
  message.set_session_id(session_id);
  return message;
}

}  // namespace cfm_test
