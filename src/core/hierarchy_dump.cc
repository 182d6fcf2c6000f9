#include "core/hierarchy_dump.h"

#include "core/text_buffer.h"

namespace cfm::core {
namespace {

std::size_t CountLines(const hierarchy& config) {
  std::size_t lines = 0;
  for (const auto& [md_name, md] : config.mds) {
    lines += 1 + md.mas.size();
    for (const auto& [ma_name, ma] : md.mas) {
      lines += ma.meps.size();
    }
  }
  return lines;
}

class Dump {
 public:
  Dump(const hierarchy& config, PortName port_name)
      : port_name_(port_name), lines_(CountLines(config)) {
    out_.Add("CFM Hierarchy\n");
  }

  void Add(const std::string& name, const st_maintenance_domain_cfg& cfg) {
    out_.AddField("+ MD Id: ", name);
    out_.AddField(", Format: ", cfg.format);
    out_.AddField(", Level: ", cfg.level);
    out_.AddField(", Sender Id: ", cfg.sender_id);
    out_.AddField(", Mhf Creation: ", cfg.mhf_creation);
    out_.EndLine(--lines_);
  }

  void Add(const std::string& name, const hierarchy_ma& ma) {
    out_.AddField("  + MA Id: ", name);
    out_.AddField(", MD Name: ", ma.md_name);
    out_.AddField(", Format: ", ma.cfg.format);
    out_.AddList(", VID List: {", ma.cfg.vids);
    out_.AddField(", CCM Interval: ", ma.cfg.ccm_interval);
    out_.AddList(", MEP Id List : {", ma.cfg.mep_ids);
    out_.AddField(", Sender Id: ", ma.cfg.sender_id);
    out_.AddField(", Mhf Creation: ", ma.cfg.mhf_creation);
    out_.EndLine(--lines_);
  }

  void Add(std::uint16_t key, const hierarchy_mep& mep) {
    const st_maintenance_endpoint_cfg& cfg = mep.cfg;
    out_.AddField("    + MEP Id: ", key);
    out_.AddField(", MD Name: ", mep.md_name);
    out_.AddField(", MA Name: ", mep.ma_name);
    out_.AddField(", Id: ", cfg.mep_id);
    out_.AddField(", Direction: ", cfg.direction);
    out_.AddField(", Port: ", port_name_(cfg.port));
    out_.AddField(", Primary VID: ", cfg.primary_vid);
    out_.AddField(", Inner VID: ", cfg.inner_vid);
    out_.AddField(", Admin State: ", cfg.admin_state);
    out_.AddField(", TX CCM Enabled: ", cfg.ccm_enabled);
    out_.AddField(", CCM Priority: ", cfg.ccm_priority);
    out_.AddField(", LowestPrioDefectAllowed: ", cfg.lowest_prio_defect);
    out_.AddField(", FNG Alarm Time: ", cfg.fng_alarm_time);
    out_.AddField(", FNG Reset Time: ", cfg.fng_reset_time);
    out_.AddField(", Action: ", cfg.fault_action);
    out_.EndLine(--lines_);
  }

  std::string Take() && { return std::move(out_).Take(); }

 private:
  PortName port_name_;
  std::size_t lines_;  // still to come
  TextBuffer out_;
};

}  // namespace

std::string HierarchyDump(const hierarchy& config, PortName port_name) {
  Dump dump(config, port_name);
  for (const auto& [md_name, md] : config.mds) {
    dump.Add(md_name, md.cfg);
    for (const auto& [ma_name, ma] : md.mas) {
      dump.Add(ma_name, ma);
      for (const auto& [mep_id, mep] : ma.meps) {
        dump.Add(mep_id, mep);
      }
    }
  }
  return std::move(dump).Take();
}

}  // namespace cfm::core
