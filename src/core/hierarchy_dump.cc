// SPDX-License-Identifier: Apache-2.0
#include "core/hierarchy_dump.h"

#include "core/text_buffer.h"

namespace cfm::core {
namespace {

class Dump {
 public:
  Dump(std::size_t lines, PortName port_name) : port_name_(port_name), lines_(lines) {
    out_.Add("CFM Hierarchy\n");
  }

  void Add(const KeptMd& md) {
    const st_maintenance_domain_cfg& cfg = md.cfg;
    out_.AddField("+ MD Id: ", md.name);
    out_.AddField(", Format: ", cfg.format);
    out_.AddField(", Level: ", cfg.level);
    out_.AddField(", Sender Id: ", cfg.sender_id);
    out_.AddField(", Mhf Creation: ", cfg.mhf_creation);
    out_.EndLine(--lines_);
  }

  void Add(const KeptMa& ma) {
    out_.AddField("  + MA Id: ", ma.name);
    out_.AddField(", MD Name: ", ma.md_name);
    out_.AddField(", Format: ", ma.cfg.format);
    out_.AddList(", VID List: {", ma.cfg.vids);
    out_.AddField(", CCM Interval: ", ma.cfg.ccm_interval);
    out_.AddList(", MEP Id List : {", ma.cfg.mep_ids);
    out_.AddField(", Sender Id: ", ma.cfg.sender_id);
    out_.AddField(", Mhf Creation: ", ma.cfg.mhf_creation);
    out_.EndLine(--lines_);
  }

  void Add(const KeptMep& mep) {
    const st_maintenance_endpoint_cfg& cfg = mep.cfg;
    out_.AddField("    + MEP Id: ", mep.key);
    out_.AddField(", MD Name: ", *mep.md_name);
    out_.AddField(", MA Name: ", *mep.ma_name);
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

std::string HierarchyDump(const KeptHierarchy& config, PortName port_name) {
  Dump dump(config.Size(), port_name);
  for (const KeptMd& md : config.Mds()) {
    dump.Add(md);
    for (const KeptMa& ma : md.mas) {
      dump.Add(ma);
      for (const KeptMep& mep : ma.meps) {
        dump.Add(mep);
      }
    }
  }
  return std::move(dump).Take();
}

}  // namespace cfm::core
