// SPDX-License-Identifier: Apache-2.0
#include "cache_model.h"

namespace cfm_test {
namespace {

// Cuts numbers to the widths of the configuration.
class Cutter {
 public:
  explicit Cutter(RuleCounts& rules) : rules_(rules) {}

  std::uint16_t To16(std::uint32_t number) { return Cut<std::uint16_t>(number, 0xffffU); }
  std::uint8_t To8(std::uint32_t number) { return Cut<std::uint8_t>(number, 0xffU); }

 private:
  template <typename Narrow>
  Narrow Cut(std::uint32_t number, std::uint32_t mask) {
    if ((number & mask) != number) {
      rules_.Add(Rule::NumberCut);
    }
    return static_cast<Narrow>(number & mask);
  }

  RuleCounts& rules_;
};

cfm::st_ais_cfg AisIn(const client_server::Ais& ais, Cutter& cut) {
  cfm::st_ais_cfg cfg;
  cfg.enabled = ais.enabled();
  if (cfg.enabled) {
    cfg.octet_a = cut.To8(ais.octet_a());
    cfg.word_b = ais.word_b();
    for (const std::uint32_t id : ais.id_set()) {
      cfg.id_set.insert(cut.To16(id));
    }
    cfg.octet_c = cut.To8(ais.octet_c());
    cfg.flag_d = ais.flag_d();
  }
  return cfg;
}

cfm::st_maintenance_association_cfg MaSettingsIn(
    const client_server::OpCreateMaintenanceAssociation& entry, Cutter& cut) {
  cfm::st_maintenance_association_cfg cfg;
  for (const std::uint32_t id : entry.mep_ids()) {
    cfg.mep_ids.insert(cut.To16(id));
  }
  for (const std::uint32_t vid : entry.vids()) {
    cfg.vids.push_back(cut.To16(vid));
  }
  cfg.ais = AisIn(entry.has_ais() ? entry.ais() : client_server::Ais::default_instance(), cut);
  cfg.format = static_cast<cfm::MaNameFormat>(entry.format());
  cfg.ccm_interval = static_cast<cfm::CcmInterval>(entry.ccm_interval());
  cfg.sender_id = static_cast<cfm::SenderIdTlvContent>(entry.sender_id());
  cfg.mhf_creation = static_cast<cfm::MhfCreationMode>(entry.mhf_creation());
  return cfg;
}

cfm::hierarchy_mep MepIn(const client_server::OpCreateMaintenanceEndpoint& entry, Cutter& cut) {
  cfm::hierarchy_mep mep;
  mep.md_name = entry.md_name();
  mep.ma_name = entry.ma_name();
  mep.cfg.mep_id = cut.To16(entry.mep_id());
  mep.cfg.direction = static_cast<cfm::MepDirection>(entry.direction());
  mep.cfg.port = sepan_from_ifindex(entry.ifindex()).port;
  mep.cfg.primary_vid = cut.To16(entry.primary_vid());
  mep.cfg.inner_vid = cut.To16(entry.inner_vid());
  mep.cfg.ccm_priority = cut.To8(entry.ccm_priority());
  mep.cfg.admin_state = entry.admin_state();
  mep.cfg.ccm_enabled = entry.ccm_enabled();
  mep.cfg.aux_flag = entry.aux_flag();
  mep.cfg.lowest_prio_defect = static_cast<cfm::Defects>(entry.lowest_prio_defect() & 0xff);
  mep.cfg.fng_alarm_time = cut.To16(entry.fng_alarm_time());
  mep.cfg.fng_reset_time = cut.To16(entry.fng_reset_time());
  mep.cfg.fault_action = static_cast<cfm::FaultAction>(entry.fault_action());
  return mep;
}

using Mds = std::map<std::string, cfm::hierarchy_md>;
using Probes = std::map<std::uint16_t, cfm::probe_cfg>;

void TakeMd(const client_server::OpCreateMaintenanceDomain& entry, Mds& mds, RuleCounts& rules) {
  if (mds.count(entry.md_name()) != 0) {
    rules.Add(Rule::MdListedTwice);
  }
  Cutter cut(rules);
  cfm::hierarchy_md& md = mds[entry.md_name()];
  md.cfg.format = static_cast<cfm::MdNameFormat>(entry.format());
  md.cfg.level = cut.To8(entry.level());
  md.cfg.sender_id = static_cast<cfm::SenderIdTlvContent>(entry.sender_id());
  md.cfg.mhf_creation = static_cast<cfm::MhfCreationMode>(entry.mhf_creation());
  md.mas = std::map<std::string, cfm::hierarchy_ma>();
}

void TakeMa(const client_server::OpCreateMaintenanceAssociation& entry, Mds& mds,
            RuleCounts& rules) {
  if (mds.count(entry.md_name()) == 0) {
    rules.Add(Rule::MaWithoutMd);
  } else if (mds[entry.md_name()].mas.count(entry.ma_name()) != 0) {
    rules.Add(Rule::MaListedTwice);
  }
  if (!entry.has_ais()) {
    rules.Add(Rule::MaWithoutAis);
  }
  Cutter cut(rules);
  cfm::hierarchy_ma& ma = mds[entry.md_name()].mas[entry.ma_name()];
  ma.cfg = MaSettingsIn(entry, cut);
  ma.md_name = entry.md_name();
  ma.meps = std::map<std::uint16_t, cfm::hierarchy_mep>();
}

void TakeMep(const client_server::OpCreateMaintenanceEndpoint& entry, Mds& mds, RuleCounts& rules) {
  if (mds.count(entry.md_name()) == 0 || mds[entry.md_name()].mas.count(entry.ma_name()) == 0) {
    rules.Add(Rule::MepWithoutMa);
  }
  Cutter cut(rules);
  const cfm::hierarchy_mep mep = MepIn(entry, cut);
  cfm::hierarchy_ma& ma = mds[entry.md_name()].mas[entry.ma_name()];
  if (ma.meps.count(mep.cfg.mep_id) != 0) {
    rules.Add(Rule::MepListedTwice);
  }
  ma.meps[mep.cfg.mep_id] = mep;
}

void TakeProbe(const client_server::OpCreateDelayMeasurementProbe& entry, Probes& probes,
               RuleCounts& rules) {
  Cutter cut(rules);
  const std::uint16_t key = cut.To16(entry.probe_id());
  if (probes.count(key) != 0) {
    rules.Add(Rule::ProbeListedTwice);
  }
  cfm::probe_cfg& probe = probes[key];
  probe.id = key;
  probe.interval = cut.To16(entry.interval());
  probe.md = entry.md_name();
  probe.ma = entry.ma_name();
  probe.lmep = cut.To16(entry.lmep_id());
  probe.rmep = cut.To16(entry.rmep_id());
  probe.sessions = std::map<std::uint16_t, cfm::session_cfg>();
}

void TakeSession(const client_server::OpCreateDelayMeasurementSession& entry, Probes& probes,
                 RuleCounts& rules) {
  Cutter cut(rules);
  const std::uint16_t probe_key = cut.To16(entry.probe_id());
  if (probes.count(probe_key) == 0) {
    rules.Add(Rule::SessionWithoutProbe);
  }
  cfm::probe_cfg& probe = probes[probe_key];
  const std::uint16_t session_key = cut.To16(entry.session_id());
  if (probe.sessions.count(session_key) != 0) {
    rules.Add(Rule::SessionListedTwice);
  }
  cfm::session_cfg& session = probe.sessions[session_key];
  session.count = cut.To16(entry.count());
  session.interval = cut.To16(entry.interval());
  session.size = cut.To16(entry.size());
  session.pcp = cut.To8(entry.pcp());
}

}  // namespace

std::map<std::string, cfm::hierarchy_md> HierarchyIn(const client_server::OpCacheSync& cache,
                                                     RuleCounts& rules) {
  Mds mds;
  for (const auto& entry : cache.mds()) {
    TakeMd(entry, mds, rules);
  }
  for (const auto& entry : cache.mas()) {
    TakeMa(entry, mds, rules);
  }
  for (const auto& entry : cache.meps()) {
    TakeMep(entry, mds, rules);
  }
  return mds;
}

std::map<std::uint16_t, cfm::probe_cfg> ProbesIn(const client_server::OpCacheSync& cache,
                                                 RuleCounts& rules) {
  Probes probes;
  for (const auto& entry : cache.probes()) {
    TakeProbe(entry, probes, rules);
  }
  for (const auto& entry : cache.sessions()) {
    TakeSession(entry, probes, rules);
  }
  return probes;
}

}  // namespace cfm_test
