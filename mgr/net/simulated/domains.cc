// SPDX-License-Identifier: Apache-2.0
#include "net/simulated/domains.h"

namespace cfm_mgr::net {
namespace {

Mep ToMep(const cfm::st_maintenance_endpoint_cfg& cfg) {
  Mep mep;
  mep.direction = static_cast<std::int32_t>(cfg.direction);
  mep.ifindex = cfg.port;
  mep.primary_vid = cfg.primary_vid;
  mep.inner_vid = cfg.inner_vid;
  mep.admin_state = cfg.admin_state;
  mep.ccm_enabled = cfg.ccm_enabled;
  mep.ccm_priority = cfg.ccm_priority;
  mep.lowest_prio_defect = static_cast<std::int32_t>(cfg.lowest_prio_defect);
  mep.fng_alarm_time = cfg.fng_alarm_time;
  mep.fng_reset_time = cfg.fng_reset_time;
  mep.fault_action = static_cast<std::int32_t>(cfg.fault_action);
  mep.aux_flag = cfg.aux_flag;
  return mep;
}

Ais ToAis(const cfm::st_ais_cfg& cfg) {
  Ais ais;
  ais.enabled = cfg.enabled;
  ais.flag_d = cfg.flag_d;
  if (!cfg.enabled) return ais;
  ais.octet_a = cfg.octet_a;
  ais.word_b = cfg.word_b;
  ais.octet_c = cfg.octet_c;
  ais.id_set.assign(cfg.id_set.begin(), cfg.id_set.end());
  return ais;
}

Association ToAssociation(const cfm::hierarchy_ma& ma) {
  Association association;
  AssociationSettings& settings = association.settings;
  settings.format = static_cast<std::int32_t>(ma.cfg.format);
  settings.vids.assign(ma.cfg.vids.begin(), ma.cfg.vids.end());
  settings.ccm_interval = static_cast<std::int32_t>(ma.cfg.ccm_interval);
  settings.mep_ids.assign(ma.cfg.mep_ids.begin(), ma.cfg.mep_ids.end());
  settings.sender_id = static_cast<std::int32_t>(ma.cfg.sender_id);
  settings.mhf_creation = static_cast<std::int32_t>(ma.cfg.mhf_creation);
  settings.ais = ToAis(ma.cfg.ais);
  for (const auto& [mep_id, mep] : ma.meps) association.meps.emplace(mep_id, ToMep(mep.cfg));
  return association;
}

Domain ToDomain(const cfm::hierarchy_md& md) {
  Domain domain;
  domain.settings.format = static_cast<std::int32_t>(md.cfg.format);
  domain.settings.level = md.cfg.level;
  domain.settings.sender_id = static_cast<std::int32_t>(md.cfg.sender_id);
  domain.settings.mhf_creation = static_cast<std::int32_t>(md.cfg.mhf_creation);
  for (const auto& [ma_name, ma] : md.mas) domain.associations.emplace(ma_name, ToAssociation(ma));
  return domain;
}

}  // namespace

std::map<std::string, Domain> ToDomains(const cfm::hierarchy& hierarchy) {
  std::map<std::string, Domain> domains;
  for (const auto& [md_name, md] : hierarchy.mds) domains.emplace(md_name, ToDomain(md));
  return domains;
}

}  // namespace cfm_mgr::net
