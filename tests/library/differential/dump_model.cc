// SPDX-License-Identifier: Apache-2.0
#include "dump_model.h"

#include <array>

namespace cfm_test {
namespace {

// Enumerations and octets print as the numbers that they are.
template <typename Value>
std::string Number(Value value) {
  return std::to_string(static_cast<std::int64_t>(value));
}

template <typename Numbers>
std::string Braced(const Numbers& numbers) {
  std::string text = "{";
  for (const std::uint16_t number : numbers) {
    text += " " + Number(number);
  }
  return text + " }, ";
}

std::string MdLine(const std::string& name, const cfm::st_maintenance_domain_cfg& cfg) {
  return "+ MD Id: " + name + ", Format: " + Number(cfg.format) + ", Level: " + Number(cfg.level) +
         ", Sender Id: " + Number(cfg.sender_id) + ", Mhf Creation: " + Number(cfg.mhf_creation) +
         "\n";
}

std::string MaLine(const std::string& name, const cfm::hierarchy_ma& ma) {
  return "  + MA Id: " + name + ", MD Name: " + ma.md_name + ", Format: " + Number(ma.cfg.format) +
         ", VID List: " + Braced(ma.cfg.vids) + "CCM Interval: " + Number(ma.cfg.ccm_interval) +
         ", MEP Id List : " + Braced(ma.cfg.mep_ids) + "Sender Id: " + Number(ma.cfg.sender_id) +
         ", Mhf Creation: " + Number(ma.cfg.mhf_creation) + "\n";
}

std::string MepLine(std::uint16_t key, const cfm::hierarchy_mep& mep) {
  std::array<char, 64> interface_name{};
  sepan_to_intfname(mep.cfg.port, interface_name.data(), interface_name.size());
  return "    + MEP Id: " + Number(key) + ", MD Name: " + mep.md_name +
         ", MA Name: " + mep.ma_name + ", Id: " + Number(mep.cfg.mep_id) +
         ", Direction: " + Number(mep.cfg.direction) + ", Port: " + interface_name.data() +
         ", Primary VID: " + Number(mep.cfg.primary_vid) +
         ", Inner VID: " + Number(mep.cfg.inner_vid) +
         ", Admin State: " + Number(mep.cfg.admin_state) +
         ", TX CCM Enabled: " + Number(mep.cfg.ccm_enabled) +
         ", CCM Priority: " + Number(mep.cfg.ccm_priority) +
         ", LowestPrioDefectAllowed: " + Number(mep.cfg.lowest_prio_defect) +
         ", FNG Alarm Time: " + Number(mep.cfg.fng_alarm_time) +
         ", FNG Reset Time: " + Number(mep.cfg.fng_reset_time) +
         ", Action: " + Number(mep.cfg.fault_action) + "\n";
}

}  // namespace

std::string DumpOf(const cfm::hierarchy& config) {
  std::string text = "CFM Hierarchy\n";
  for (const auto& [md_name, md] : config.mds) {
    text += MdLine(md_name, md.cfg);
    for (const auto& [ma_name, ma] : md.mas) {
      text += MaLine(ma_name, ma);
      for (const auto& [key, mep] : ma.meps) {
        text += MepLine(key, mep);
      }
    }
  }
  return text;
}

std::string DumpOf(const cfm::probe& config) {
  std::string text = "CFM Delay Measurement Probes\n";
  for (const auto& [probe_id, probe] : config.probes) {
    text += "+ Probe Id: " + Number(probe_id) + ", Interval: " + Number(probe.interval) +
            ", MA: " + probe.ma + ", MD: " + probe.md + ", LMEP: " + Number(probe.lmep) +
            ", RMEP: " + Number(probe.rmep) + ", Sessions: \n";
    for (const auto& [session_id, session] : probe.sessions) {
      text += "  + Session Id: " + Number(session_id) + ", Count: " + Number(session.count) +
              ", Interval: " + Number(session.interval) + ", Size: " + Number(session.size) +
              ", Pcp: " + Number(session.pcp) + "\n";
    }
  }
  return text;
}

}  // namespace cfm_test
