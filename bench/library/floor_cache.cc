// SPDX-License-Identifier: Apache-2.0
#include <sepan/sepan.h>

#include "floor.h"
#include "samples.h"

namespace cfm_bench {
namespace {

cfm::hierarchy_ma Association(const client_server::OpCreateMaintenanceAssociation& entry) {
  cfm::hierarchy_ma ma;
  ma.md_name = entry.md_name();
  ma.cfg.format = static_cast<cfm::MaNameFormat>(entry.format());
  ma.cfg.vids.assign(entry.vids().begin(), entry.vids().end());
  ma.cfg.ccm_interval = static_cast<cfm::CcmInterval>(entry.ccm_interval());
  ma.cfg.mep_ids.insert(entry.mep_ids().begin(), entry.mep_ids().end());
  ma.cfg.sender_id = static_cast<cfm::SenderIdTlvContent>(entry.sender_id());
  ma.cfg.mhf_creation = static_cast<cfm::MhfCreationMode>(entry.mhf_creation());
  ma.cfg.ais.enabled = entry.ais().enabled();
  ma.cfg.ais.flag_d = entry.ais().flag_d();
  return ma;
}

void SetEndpoint(cfm::hierarchy_mep& mep, const client_server::OpCreateMaintenanceEndpoint& entry) {
  mep.md_name = entry.md_name();
  mep.ma_name = entry.ma_name();
  mep.cfg.mep_id = static_cast<std::uint16_t>(entry.mep_id());
  mep.cfg.direction = static_cast<cfm::MepDirection>(entry.direction());
  mep.cfg.port = sepan_from_ifindex(entry.ifindex()).port;
  mep.cfg.primary_vid = static_cast<std::uint16_t>(entry.primary_vid());
  mep.cfg.inner_vid = static_cast<std::uint16_t>(entry.inner_vid());
  mep.cfg.admin_state = entry.admin_state();
  mep.cfg.ccm_enabled = entry.ccm_enabled();
  mep.cfg.ccm_priority = static_cast<std::uint8_t>(entry.ccm_priority());
  mep.cfg.lowest_prio_defect = static_cast<cfm::Defects>(entry.lowest_prio_defect());
  mep.cfg.fng_alarm_time = static_cast<std::uint16_t>(entry.fng_alarm_time());
  mep.cfg.fng_reset_time = static_cast<std::uint16_t>(entry.fng_reset_time());
  mep.cfg.fault_action = static_cast<cfm::FaultAction>(entry.fault_action());
  mep.cfg.aux_flag = entry.aux_flag();
}

template <typename Message>
void SetMep(Message& message, const cfm::hierarchy_mep& mep) {
  const cfm::st_maintenance_endpoint_cfg& cfg = mep.cfg;
  message.set_md_name(mep.md_name);
  message.set_ma_name(mep.ma_name);
  message.set_mep_id(cfg.mep_id);
  message.set_direction(static_cast<int>(cfg.direction));
  message.set_ifindex(cfg.port + 100);
  message.set_primary_vid(cfg.primary_vid);
  message.set_inner_vid(cfg.inner_vid);
  message.set_admin_state(cfg.admin_state);
  message.set_ccm_enabled(cfg.ccm_enabled);
  message.set_ccm_priority(cfg.ccm_priority);
  message.set_lowest_prio_defect(static_cast<int>(cfg.lowest_prio_defect));
  message.set_fng_alarm_time(cfg.fng_alarm_time);
  message.set_fng_reset_time(cfg.fng_reset_time);
  message.set_fault_action(static_cast<int>(cfg.fault_action));
  message.set_aux_flag(cfg.aux_flag);
}

}  // namespace

cfm::hierarchy FloorAdopt(const std::string& payload) {
  client_server::OpCacheSync cache;
  cache.ParseFromString(std::string(payload.data(), payload.size()));
  cfm::hierarchy config;
  for (const auto& entry : cache.mds()) {
    cfm::st_maintenance_domain_cfg& cfg = config.mds[entry.md_name()].cfg;
    cfg.format = static_cast<cfm::MdNameFormat>(entry.format());
    cfg.level = static_cast<std::uint8_t>(entry.level());
    cfg.sender_id = static_cast<cfm::SenderIdTlvContent>(entry.sender_id());
    cfg.mhf_creation = static_cast<cfm::MhfCreationMode>(entry.mhf_creation());
  }
  for (const auto& entry : cache.mas()) {
    config.mds[entry.md_name()].mas[entry.ma_name()] = Association(entry);
  }
  for (const auto& entry : cache.meps()) {
    SetEndpoint(config.mds[entry.md_name()]
                    .mas[entry.ma_name()]
                    .meps[static_cast<std::uint16_t>(entry.mep_id())],
                entry);
  }
  return config;
}

client_server::OpCacheSync CacheOf(const cfm::hierarchy& config) {
  client_server::OpCacheSync cache;
  for (const auto& [md_name, md] : config.mds) {
    auto& entry = *cache.add_mds();
    entry.set_md_name(md_name);
    entry.set_format(static_cast<int>(md.cfg.format));
    entry.set_level(md.cfg.level);
    entry.set_sender_id(static_cast<int>(md.cfg.sender_id));
    entry.set_mhf_creation(static_cast<int>(md.cfg.mhf_creation));
    for (const auto& [ma_name, ma] : md.mas) {
      auto& ma_entry = *cache.add_mas();
      ma_entry.set_md_name(md_name);
      ma_entry.set_ma_name(ma_name);
      ma_entry.mutable_vids()->Assign(ma.cfg.vids.begin(), ma.cfg.vids.end());
      ma_entry.mutable_mep_ids()->Assign(ma.cfg.mep_ids.begin(), ma.cfg.mep_ids.end());
      ma_entry.mutable_ais()->set_enabled(ma.cfg.ais.enabled);
      ma_entry.mutable_ais()->set_flag_d(ma.cfg.ais.flag_d);
      ma_entry.set_format(static_cast<int>(ma.cfg.format));
      ma_entry.set_ccm_interval(static_cast<int>(ma.cfg.ccm_interval));
      ma_entry.set_sender_id(static_cast<int>(ma.cfg.sender_id));
      ma_entry.set_mhf_creation(static_cast<int>(ma.cfg.mhf_creation));
      for (const auto& [id, mep] : ma.meps) {
        SetMep(*cache.add_meps(), mep);
      }
    }
  }
  return cache;
}

}  // namespace cfm_bench
