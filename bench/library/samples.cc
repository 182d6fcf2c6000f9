// SPDX-License-Identifier: Apache-2.0
#include "samples.h"

#include <algorithm>
#include <string>

namespace cfm_bench {
namespace {

std::string Numbered(const std::string& stem, std::size_t number) {
  return stem + std::to_string(100000 + number);
}

cfm::st_maintenance_endpoint_cfg MepSettings(std::uint16_t id) {
  cfm::st_maintenance_endpoint_cfg cfg;
  cfg.mep_id = id;
  cfg.direction = id % 2 == 0 ? cfm::MepDirection::Up : cfm::MepDirection::Down;
  cfg.port = id;
  cfg.primary_vid = 100;
  cfg.admin_state = true;
  cfg.ccm_enabled = true;
  cfg.ccm_priority = 7;
  cfg.lowest_prio_defect = cfm::Defects::MacRemoteErrorXcon;
  cfg.fng_alarm_time = 250;
  cfg.fng_reset_time = 1000;
  return cfg;
}

cfm::hierarchy_ma Association(const std::string& md_name, const std::string& ma_name,
                              std::size_t meps) {
  cfm::hierarchy_ma ma;
  ma.md_name = md_name;
  ma.cfg.format = cfm::MaNameFormat::CharString;
  ma.cfg.vids = {100, 200};
  ma.cfg.ccm_interval = cfm::CcmInterval::Interval1s;
  ma.cfg.sender_id = cfm::SenderIdTlvContent::Defer;
  ma.cfg.mhf_creation = cfm::MhfCreationMode::Defer;
  for (std::uint16_t id = 1; id <= meps; ++id) {
    ma.cfg.mep_ids.insert(id);
    ma.meps[id] = {md_name, ma_name, MepSettings(id)};
  }
  return ma;
}

}  // namespace

cfm::hierarchy HierarchyOf(std::size_t meps, std::uint8_t level) {
  constexpr std::size_t kMepsOfMa = 10;
  constexpr std::size_t kMasOfMd = 100;
  cfm::hierarchy config;
  for (std::size_t ma = 0; ma * kMepsOfMa < meps; ++ma) {
    const std::string md_name = Numbered("domain-", ma / kMasOfMd);
    const std::string ma_name = Numbered("association-", ma);
    cfm::hierarchy_md& md = config.mds[md_name];
    md.cfg.format = cfm::MdNameFormat::CharString;
    md.cfg.level = level;
    md.cfg.sender_id = cfm::SenderIdTlvContent::Chassis;
    md.cfg.mhf_creation = cfm::MhfCreationMode::None;
    md.mas[ma_name] = Association(md_name, ma_name, std::min(kMepsOfMa, meps - ma * kMepsOfMa));
  }
  return config;
}

cfm::probe ProbesOf(std::size_t sessions) {
  const std::size_t sessions_of_probe = std::min<std::size_t>(60, sessions / 2);
  cfm::probe config;
  for (std::size_t i = 0; i < sessions; ++i) {
    const auto probe_id = static_cast<std::uint16_t>(1 + i / sessions_of_probe);
    cfm::probe_cfg& probe = config.probes[probe_id];
    probe.id = probe_id;
    probe.interval = 300;
    probe.md = Numbered("domain-", probe_id / 100U);
    probe.ma = Numbered("association-", probe_id);
    probe.lmep = 1;
    probe.rmep = 2;
    probe.sessions[static_cast<std::uint16_t>(1 + i % sessions_of_probe)] = {100, 1000, 64, 5};
  }
  return config;
}

}  // namespace cfm_bench
