#include "core/hierarchy_dump.h"

#include "core/text.h"

namespace cfm::core {
namespace {

void AppendMd(std::string& out, const std::string& name, const st_maintenance_domain_cfg& cfg) {
  AppendField(out, "+ MD Id: ", name);
  AppendField(out, ", Format: ", cfg.format);
  AppendField(out, ", Level: ", cfg.level);
  AppendField(out, ", Sender Id: ", cfg.sender_id);
  AppendField(out, ", Mhf Creation: ", cfg.mhf_creation);
  out += '\n';
}

void AppendMa(std::string& out, const std::string& name, const hierarchy_ma& ma) {
  AppendField(out, "  + MA Id: ", name);
  AppendField(out, ", MD Name: ", ma.md_name);
  AppendField(out, ", Format: ", ma.cfg.format);
  AppendList(out, ", VID List: {", ma.cfg.vids);
  AppendField(out, ", CCM Interval: ", ma.cfg.ccm_interval);
  AppendList(out, ", MEP Id List : {", ma.cfg.mep_ids);
  AppendField(out, ", Sender Id: ", ma.cfg.sender_id);
  AppendField(out, ", Mhf Creation: ", ma.cfg.mhf_creation);
  out += '\n';
}

void AppendMep(std::string& out, std::uint16_t key, const hierarchy_mep& mep, PortName port_name) {
  const st_maintenance_endpoint_cfg& cfg = mep.cfg;
  AppendField(out, "    + MEP Id: ", key);
  AppendField(out, ", MD Name: ", mep.md_name);
  AppendField(out, ", MA Name: ", mep.ma_name);
  AppendField(out, ", Id: ", cfg.mep_id);
  AppendField(out, ", Direction: ", cfg.direction);
  AppendField(out, ", Port: ", port_name(cfg.port));
  AppendField(out, ", Primary VID: ", cfg.primary_vid);
  AppendField(out, ", Inner VID: ", cfg.inner_vid);
  AppendField(out, ", Admin State: ", cfg.admin_state);
  AppendField(out, ", TX CCM Enabled: ", cfg.ccm_enabled);
  AppendField(out, ", CCM Priority: ", cfg.ccm_priority);
  AppendField(out, ", LowestPrioDefectAllowed: ", cfg.lowest_prio_defect);
  AppendField(out, ", FNG Alarm Time: ", cfg.fng_alarm_time);
  AppendField(out, ", FNG Reset Time: ", cfg.fng_reset_time);
  AppendField(out, ", Action: ", cfg.fault_action);
  out += '\n';
}

}  // namespace

std::string HierarchyDump(const hierarchy& config, PortName port_name) {
  std::string out = "CFM Hierarchy\n";
  for (const auto& [md_name, md] : config.mds) {
    AppendMd(out, md_name, md.cfg);
    for (const auto& [ma_name, ma] : md.mas) {
      AppendMa(out, ma_name, ma);
      for (const auto& [mep_id, mep] : ma.meps) {
        AppendMep(out, mep_id, mep, port_name);
      }
    }
  }
  return out;
}

}  // namespace cfm::core
