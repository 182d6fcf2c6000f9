// SPDX-License-Identifier: Apache-2.0
#include "config_rules.h"

#include <algorithm>
#include <set>

#include "require.h"

namespace cfm_fuzz {
namespace {

constexpr std::uint16_t kMaxVid = 4094;
constexpr std::uint16_t kMaxMepId = 8191;

template <typename Number>
bool IsWithin(Number number, std::uint64_t min, std::uint64_t max) {
  const auto value = static_cast<std::uint64_t>(number);
  return value >= min && value <= max;
}

bool HasControl(const std::string& text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; });
}

bool AreMepIds(const std::set<std::uint16_t>& ids) {
  return std::all_of(ids.begin(), ids.end(), [](auto id) { return IsWithin(id, 1, kMaxMepId); });
}

void RequireRightVids(const std::vector<std::uint16_t>& vids) {
  Require(std::all_of(vids.begin(), vids.end(), [](auto vid) { return IsWithin(vid, 1, kMaxVid); }),
          "VIDs are 1 to 4094");
  Require(std::set<std::uint16_t>(vids.begin(), vids.end()).size() == vids.size(),
          "no VID is given twice");
}

void RequireRightMep(const cfm::hierarchy_mep& mep, const cfm::hierarchy_ma& ma) {
  const cfm::st_maintenance_endpoint_cfg& cfg = mep.cfg;
  const auto& vids = ma.cfg.vids;
  Require(ma.cfg.mep_ids.count(cfg.mep_id) != 0, "an endpoint is in its association's mep-ids");
  Require(IsWithin(cfg.direction, 1, 2), "a direction is down or up");
  Require(cfg.port != 0, "an endpoint has a port");
  Require(
      cfg.primary_vid == 0 || std::find(vids.begin(), vids.end(), cfg.primary_vid) != vids.end(),
      "a primary VID is one of the association");
  Require(IsWithin(cfg.inner_vid, 0, kMaxVid), "an inner VID is 0 to 4094");
  Require(IsWithin(cfg.ccm_priority, 0, 7), "a CCM priority is 0 to 7");
  Require(IsWithin(cfg.lowest_prio_defect, 1, 6), "a lowest alarm priority has a name");
  Require(IsWithin(cfg.fng_alarm_time, 250, 1000), "an alarm time is 2.5 s to 10 s");
  Require(IsWithin(cfg.fng_reset_time, 250, 1000), "a reset time is 2.5 s to 10 s");
  Require(IsWithin(cfg.fault_action, 0, 2), "a fault action has a name");
}

void RequireRightMa(const std::string& name, const cfm::hierarchy_ma& ma) {
  using Format = cfm::MaNameFormat;
  const cfm::st_maintenance_association_cfg& cfg = ma.cfg;
  Require(!name.empty() && name.size() <= 45 && !HasControl(name), "an association's name fits");
  Require(IsWithin(cfg.format, 1, 4) || cfg.format == Format::IccBased ||
              cfg.format == Format::IccAndCountryCode,
          "an association's name format has a name");
  if (cfg.format == Format::PrimaryVid) {
    Require(IsWithin(std::stoul(name), 1, kMaxVid), "a name that is a VID is 1 to 4094");
  }
  if (cfg.format == Format::Uint16) {
    Require(IsWithin(std::stoul(name), 0, 65535), "a name that is a number has 16 bits");
  }
  Require(IsWithin(cfg.ccm_interval, 1, 7), "a CCM interval has a name");
  Require(IsWithin(cfg.sender_id, 1, 5), "an association's sender id has a name");
  Require(IsWithin(cfg.mhf_creation, 1, 4), "an association's MHF creation has a name");
  Require(AreMepIds(cfg.mep_ids), "MEP identifiers are 1 to 8191");
  RequireRightVids(cfg.vids);
}

void RequireRightMd(const std::string& name, const cfm::hierarchy_md& md) {
  Require(!name.empty() && name.size() <= 43 && !HasControl(name), "a domain's name fits");
  Require(IsWithin(md.cfg.format, 1, 4), "a domain's name format has a name");
  Require(md.cfg.level <= 7, "a level is 0 to 7");
  Require(IsWithin(md.cfg.sender_id, 1, 4), "a domain's sender id has a name");
  Require(IsWithin(md.cfg.mhf_creation, 1, 3), "a domain's MHF creation has a name");
}

void RequireRightHierarchy(const cfm::hierarchy& hierarchy) {
  for (const auto& [md_name, md] : hierarchy.mds) {
    RequireRightMd(md_name, md);
    for (const auto& [ma_name, ma] : md.mas) {
      RequireRightMa(ma_name, ma);
      Require(ma.md_name == md_name, "an association holds its domain's name");
      if (md.cfg.format == cfm::MdNameFormat::CharString &&
          ma.cfg.format == cfm::MaNameFormat::CharString) {
        Require(md_name.size() + ma_name.size() <= 44, "both names fit the MAID");
      }
      for (const auto& [mep_id, mep] : ma.meps) {
        Require(mep.md_name == md_name && mep.ma_name == ma_name && mep.cfg.mep_id == mep_id,
                "an endpoint holds the names of its owners and its identifier");
        RequireRightMep(mep, ma);
      }
    }
  }
}

void RequireRightProbe(std::uint16_t id, const cfm::probe_cfg& probe,
                       const cfm::hierarchy& hierarchy) {
  Require(id != 0 && probe.id == id, "a probe has an identifier");
  const auto md = hierarchy.mds.find(probe.md);
  Require(md != hierarchy.mds.end(), "a probe is in a domain that there is");
  const auto ma = md->second.mas.find(probe.ma);
  Require(ma != md->second.mas.end(), "a probe is in an association that there is");
  Require(ma->second.meps.count(probe.lmep) != 0, "a probe starts at an endpoint that there is");
  Require(ma->second.cfg.mep_ids.count(probe.rmep) != 0 && probe.rmep != probe.lmep,
          "a probe ends at another endpoint of the association");
  for (const auto& [session_id, session] : probe.sessions) {
    Require(session_id != 0, "a session has an identifier");
    Require(session.pcp <= 7, "a priority code point is 0 to 7");
  }
}

}  // namespace

void RequireRightConfig(const cfm_agent::Config& config) {
  RequireRightHierarchy(config.hierarchy);
  for (const auto& [id, probe] : config.probes.probes) {
    RequireRightProbe(id, probe, config.hierarchy);
  }
}

}  // namespace cfm_fuzz
