// SPDX-License-Identifier: Apache-2.0
#include <sepan/sepan.h>

#include "floor.h"
#include "floor_text.h"

namespace cfm_bench {
namespace {

template <typename Enum>
int Int(Enum value) {
  return static_cast<int>(value);
}

template <typename Enum>
unsigned Unsigned(Enum value) {
  return static_cast<unsigned>(value);
}

void AddMa(std::string& out, const std::string& name, const cfm::hierarchy_ma& ma) {
  Add(out, "  + MA Id: ", name);
  Add(out, ", MD Name: ", ma.md_name);
  Add(out, ", Format: ", Unsigned(ma.cfg.format));
  out += ", VID List: {";
  for (const unsigned vid : ma.cfg.vids) {
    Add(out, " ", vid);
  }
  Add(out, " }, CCM Interval: ", Unsigned(ma.cfg.ccm_interval));
  out += ", MEP Id List : {";
  for (const unsigned id : ma.cfg.mep_ids) {
    Add(out, " ", id);
  }
  Add(out, " }, Sender Id: ", Unsigned(ma.cfg.sender_id));
  Add(out, ", Mhf Creation: ", Unsigned(ma.cfg.mhf_creation));
  out += '\n';
}

void AddMep(std::string& out, unsigned key, const cfm::hierarchy_mep& mep) {
  const cfm::st_maintenance_endpoint_cfg& cfg = mep.cfg;
  char port[64] = {};
  sepan_to_intfname(cfg.port, port, sizeof port);
  Add(out, "    + MEP Id: ", key);
  Add(out, ", MD Name: ", mep.md_name);
  Add(out, ", MA Name: ", mep.ma_name);
  Add(out, ", Id: ", cfg.mep_id);
  Add(out, ", Direction: ", Unsigned(cfg.direction));
  out += ", Port: ";
  out += port;
  Add(out, ", Primary VID: ", cfg.primary_vid);
  Add(out, ", Inner VID: ", cfg.inner_vid);
  Add(out, ", Admin State: ", cfg.admin_state);
  Add(out, ", TX CCM Enabled: ", cfg.ccm_enabled);
  Add(out, ", CCM Priority: ", cfg.ccm_priority);
  Add(out, ", LowestPrioDefectAllowed: ", Unsigned(cfg.lowest_prio_defect));
  Add(out, ", FNG Alarm Time: ", cfg.fng_alarm_time);
  Add(out, ", FNG Reset Time: ", cfg.fng_reset_time);
  Add(out, ", Action: ", Unsigned(cfg.fault_action));
  out += '\n';
}

std::size_t CountMas(const cfm::hierarchy& config) {
  std::size_t count = 0;
  for (const auto& [name, md] : config.mds) {
    count += md.mas.size();
  }
  return count;
}

void LogAll(const cfm::hierarchy& config) {
  std::string out;
  out.reserve(CountMas(config) * 3800);
  out += "CFM Hierarchy\n";
  for (const auto& [md_name, md] : config.mds) {
    Add(out, "+ MD Id: ", md_name);
    Add(out, ", Format: ", Unsigned(md.cfg.format));
    Add(out, ", Level: ", md.cfg.level);
    Add(out, ", Sender Id: ", Unsigned(md.cfg.sender_id));
    Add(out, ", Mhf Creation: ", Unsigned(md.cfg.mhf_creation));
    out += '\n';
    for (const auto& [ma_name, ma] : md.mas) {
      AddMa(out, ma_name, ma);
      for (const auto& [id, mep] : ma.meps) {
        AddMep(out, id, mep);
      }
    }
  }
  LogText(out);
}

void CreateMd(const std::string& name, const cfm::hierarchy_md& md) {
  client_server::OpCreateMaintenanceDomain message;
  message.set_md_name(name);
  message.set_format(Int(md.cfg.format));
  message.set_level(md.cfg.level);
  message.set_sender_id(Int(md.cfg.sender_id));
  message.set_mhf_creation(Int(md.cfg.mhf_creation));
  Send(CFM_MGR_C2S_SIG_MD_CREATE, message);
}

void UpdateMd(const std::string& name, const cfm::hierarchy_md& md) {
  client_server::OpUpdateMaintenanceDomain message;
  message.set_md_name(name);
  message.set_sender_id(Int(md.cfg.sender_id));
  message.set_mhf_creation(Int(md.cfg.mhf_creation));
  Send(CFM_MGR_C2S_SIG_MD_UPDATE, message);
}

void DeleteMd(const std::string& name) {
  client_server::OpDeleteMaintenanceDomain message;
  message.set_md_name(name);
  Send(CFM_MGR_C2S_SIG_MD_DELETE, message);
}

template <typename Message>
void SetMa(Message& message, const std::string& name, const cfm::hierarchy_ma& ma) {
  message.set_md_name(ma.md_name);
  message.set_ma_name(name);
  message.set_ccm_interval(Int(ma.cfg.ccm_interval));
  message.set_sender_id(Int(ma.cfg.sender_id));
  message.set_mhf_creation(Int(ma.cfg.mhf_creation));
  message.mutable_mep_ids()->Reserve(static_cast<int>(ma.cfg.mep_ids.size()));
  for (const unsigned id : ma.cfg.mep_ids) {
    message.add_mep_ids(id);
  }
  message.mutable_ais()->set_enabled(ma.cfg.ais.enabled);
  message.mutable_ais()->set_flag_d(ma.cfg.ais.flag_d);
}

void CreateMa(const std::string& name, const cfm::hierarchy_ma& ma) {
  client_server::OpCreateMaintenanceAssociation message;
  SetMa(message, name, ma);
  message.set_format(Int(ma.cfg.format));
  message.mutable_vids()->Reserve(static_cast<int>(ma.cfg.vids.size()));
  for (const unsigned vid : ma.cfg.vids) {
    message.add_vids(vid);
  }
  Send(CFM_MGR_C2S_SIG_MA_CREATE, message);
}

void UpdateMa(const std::string& name, const cfm::hierarchy_ma& ma) {
  client_server::OpUpdateMaintenanceAssociation message;
  SetMa(message, name, ma);
  Send(CFM_MGR_C2S_SIG_MA_UPDATE, message);
}

void DeleteMa(const std::string& name, const cfm::hierarchy_ma& ma) {
  client_server::OpDeleteMaintenanceAssociation message;
  message.set_md_name(ma.md_name);
  message.set_ma_name(name);
  Send(CFM_MGR_C2S_SIG_MA_DELETE, message);
}

template <typename Message>
void SetMep(Message& message, const cfm::hierarchy_mep& mep) {
  const cfm::st_maintenance_endpoint_cfg& cfg = mep.cfg;
  message.set_md_name(mep.md_name);
  message.set_ma_name(mep.ma_name);
  message.set_mep_id(cfg.mep_id);
  message.set_primary_vid(cfg.primary_vid);
  message.set_inner_vid(cfg.inner_vid);
  message.set_admin_state(cfg.admin_state);
  message.set_ccm_enabled(cfg.ccm_enabled);
  message.set_ccm_priority(cfg.ccm_priority);
  message.set_lowest_prio_defect(Int(cfg.lowest_prio_defect));
  message.set_fng_alarm_time(cfg.fng_alarm_time);
  message.set_fng_reset_time(cfg.fng_reset_time);
  message.set_fault_action(Int(cfg.fault_action));
  message.set_aux_flag(cfg.aux_flag);
}

void CreateMep(const cfm::hierarchy_mep& mep) {
  std::uint32_t ifindex = 0;
  sepan_to_ifindex(mep.cfg.port, &ifindex);
  client_server::OpCreateMaintenanceEndpoint message;
  SetMep(message, mep);
  message.set_direction(Int(mep.cfg.direction));
  message.set_ifindex(ifindex);
  Send(CFM_MGR_C2S_SIG_MEP_CREATE, message);
}

void UpdateMep(const cfm::hierarchy_mep& mep) {
  client_server::OpUpdateMaintenanceEndpoint message;
  SetMep(message, mep);
  Send(CFM_MGR_C2S_SIG_MEP_UPDATE, message);
}

void DeleteMep(const cfm::hierarchy_mep& mep) {
  client_server::OpDeleteMaintenanceEndpoint message;
  message.set_md_name(mep.md_name);
  message.set_ma_name(mep.ma_name);
  message.set_mep_id(mep.cfg.mep_id);
  Send(CFM_MGR_C2S_SIG_MEP_DELETE, message);
}

// Domains first, then all associations, then all endpoints, as the library sends them.
template <typename VisitMd, typename VisitMa, typename VisitMep>
void TopDown(const cfm::hierarchy& config, VisitMd md_visit, VisitMa ma_visit, VisitMep mep_visit) {
  for (const auto& [name, md] : config.mds) {
    md_visit(name, md);
  }
  for (const auto& [md_name, md] : config.mds) {
    for (const auto& [name, ma] : md.mas) {
      ma_visit(name, ma);
    }
  }
  for (const auto& [md_name, md] : config.mds) {
    for (const auto& [ma_name, ma] : md.mas) {
      for (const auto& [id, mep] : ma.meps) {
        mep_visit(mep);
      }
    }
  }
}

}  // namespace

void FloorCreateAll(Copies& copies, const cfm::hierarchy& config) {
  copies.desired = config;
  LogAll(copies.desired);
  TopDown(copies.desired, CreateMd, CreateMa, CreateMep);
  copies.applied = copies.desired;
}

void FloorUpdateAll(Copies& copies, const cfm::hierarchy& config) {
  copies.desired = config;
  LogAll(copies.desired);
  TopDown(copies.desired, UpdateMd, UpdateMa, UpdateMep);
  copies.applied = copies.desired;
}

void FloorRecreateAll(Copies& copies, const cfm::hierarchy& config) {
  copies.desired = config;
  LogAll(copies.desired);
  for (const auto& [md_name, md] : copies.applied.mds) {
    for (const auto& [ma_name, ma] : md.mas) {
      for (const auto& [id, mep] : ma.meps) {
        DeleteMep(mep);
      }
    }
  }
  for (const auto& [md_name, md] : copies.applied.mds) {
    for (const auto& [name, ma] : md.mas) {
      DeleteMa(name, ma);
    }
  }
  for (const auto& [name, md] : copies.applied.mds) {
    DeleteMd(name);
  }
  TopDown(copies.desired, CreateMd, CreateMa, CreateMep);
  copies.applied = copies.desired;
}

void FloorAddLast(Copies& copies, const cfm::hierarchy& config) {
  copies.desired = config;
  LogAll(copies.desired);
  const cfm::hierarchy_mep& added =
      copies.desired.mds.rbegin()->second.mas.rbegin()->second.meps.rbegin()->second;
  CreateMep(added);
  TopDown(copies.desired, UpdateMd, UpdateMa, [&](const cfm::hierarchy_mep& mep) {
    if (&mep != &added) {
      UpdateMep(mep);
    }
  });
  copies.applied = copies.desired;
}

}  // namespace cfm_bench
