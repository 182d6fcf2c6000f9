// SPDX-License-Identifier: Apache-2.0
#include "held_configuration.h"

namespace cfm_fuzz {
namespace {

client_server::OpCreateMaintenanceDomain Message(const std::string& md_name,
                                                 const cfm::st_maintenance_domain_cfg& cfg) {
  client_server::OpCreateMaintenanceDomain message;
  message.set_md_name(md_name);
  message.set_format(static_cast<std::int32_t>(cfg.format));
  message.set_level(cfg.level);
  message.set_sender_id(static_cast<std::int32_t>(cfg.sender_id));
  message.set_mhf_creation(static_cast<std::int32_t>(cfg.mhf_creation));
  return message;
}

void Fill(client_server::Ais& message, const cfm::st_ais_cfg& ais) {
  message.set_enabled(ais.enabled);
  message.set_flag_d(ais.flag_d);
  if (ais.enabled) {
    message.set_octet_a(ais.octet_a);
    message.set_word_b(ais.word_b);
    message.set_octet_c(ais.octet_c);
    for (const std::uint16_t id : ais.id_set) {
      message.add_id_set(id);
    }
  }
}

client_server::OpCreateMaintenanceAssociation Message(
    const std::string& md_name, const std::string& ma_name,
    const cfm::st_maintenance_association_cfg& cfg) {
  client_server::OpCreateMaintenanceAssociation message;
  message.set_md_name(md_name);
  message.set_ma_name(ma_name);
  message.set_format(static_cast<std::int32_t>(cfg.format));
  message.set_ccm_interval(static_cast<std::int32_t>(cfg.ccm_interval));
  message.set_sender_id(static_cast<std::int32_t>(cfg.sender_id));
  message.set_mhf_creation(static_cast<std::int32_t>(cfg.mhf_creation));
  for (const std::uint16_t vid : cfg.vids) {
    message.add_vids(vid);
  }
  for (const std::uint16_t id : cfg.mep_ids) {
    message.add_mep_ids(id);
  }
  Fill(*message.mutable_ais(), cfg.ais);
  return message;
}

// The host gives every port but 0 the interface 1000 above it.
client_server::OpCreateMaintenanceEndpoint Message(const std::string& md_name,
                                                   const std::string& ma_name,
                                                   const cfm::st_maintenance_endpoint_cfg& cfg) {
  client_server::OpCreateMaintenanceEndpoint message;
  message.set_md_name(md_name);
  message.set_ma_name(ma_name);
  message.set_mep_id(cfg.mep_id);
  message.set_direction(static_cast<std::int32_t>(cfg.direction));
  message.set_ifindex(cfg.port == 0 ? 0 : cfg.port + 1000);
  message.set_primary_vid(cfg.primary_vid);
  message.set_inner_vid(cfg.inner_vid);
  message.set_ccm_priority(cfg.ccm_priority);
  message.set_admin_state(cfg.admin_state);
  message.set_ccm_enabled(cfg.ccm_enabled);
  message.set_aux_flag(cfg.aux_flag);
  message.set_lowest_prio_defect(static_cast<std::int32_t>(cfg.lowest_prio_defect));
  message.set_fng_alarm_time(cfg.fng_alarm_time);
  message.set_fng_reset_time(cfg.fng_reset_time);
  message.set_fault_action(static_cast<std::int32_t>(cfg.fault_action));
  return message;
}

client_server::OpCreateDelayMeasurementProbe Message(std::uint16_t id, const cfm::probe_cfg& cfg) {
  client_server::OpCreateDelayMeasurementProbe message;
  message.set_probe_id(id);
  message.set_interval(cfg.interval);
  message.set_md_name(cfg.md);
  message.set_ma_name(cfg.ma);
  message.set_lmep_id(cfg.lmep);
  message.set_rmep_id(cfg.rmep);
  return message;
}

client_server::OpCreateDelayMeasurementSession Message(std::uint16_t probe_id,
                                                       std::uint16_t session_id,
                                                       const cfm::session_cfg& cfg) {
  client_server::OpCreateDelayMeasurementSession message;
  message.set_probe_id(probe_id);
  message.set_session_id(session_id);
  message.set_count(cfg.count);
  message.set_interval(cfg.interval);
  message.set_size(cfg.size);
  message.set_pcp(cfg.pcp);
  return message;
}

template <typename Map, typename Value>
bool HasEqual(const Map& map, const typename Map::key_type& key, const Value& value) {
  const auto found = map.find(key);
  return found != map.end() && found->second.SerializeAsString() == value.SerializeAsString();
}

}  // namespace

bool Holds(const cfm_test::ServerModel& server, const cfm::hierarchy& config) {
  std::size_t mas = 0;
  std::size_t meps = 0;
  for (const auto& [md_name, md] : config.mds) {
    if (!HasEqual(server.mds, md_name, Message(md_name, md.cfg))) {
      return false;
    }
    for (const auto& [ma_name, ma] : md.mas) {
      if (!HasEqual(server.mas, {md_name, ma_name}, Message(md_name, ma_name, ma.cfg))) {
        return false;
      }
      for (const auto& [mep_id, mep] : ma.meps) {
        if (!HasEqual(server.meps, {md_name, ma_name, mep_id},
                      Message(md_name, ma_name, mep.cfg))) {
          return false;
        }
      }
      meps += ma.meps.size();
    }
    mas += md.mas.size();
  }
  return server.mds.size() == config.mds.size() && server.mas.size() == mas &&
         server.meps.size() == meps;
}

bool Holds(const cfm_test::ServerModel& server, const cfm::probe& config) {
  std::size_t sessions = 0;
  for (const auto& [probe_id, probe] : config.probes) {
    if (!HasEqual(server.probes, probe_id, Message(probe_id, probe))) {
      return false;
    }
    for (const auto& [session_id, session] : probe.sessions) {
      if (!HasEqual(server.sessions, {probe_id, session_id},
                    Message(probe_id, session_id, session))) {
        return false;
      }
    }
    sessions += probe.sessions.size();
  }
  return server.probes.size() == config.probes.size() && server.sessions.size() == sessions;
}

}  // namespace cfm_fuzz
