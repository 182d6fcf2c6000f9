// SPDX-License-Identifier: Apache-2.0
// The reconciliation of the hierarchy.
#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>

#include "client_model.h"
#include "dump_model.h"
#include "request_messages.h"

namespace cfm_test {

void ClientModel::Apply() {
  Log("Applying CFM config...");
  Log(DumpOf(desired_));
  to_delete_ = {};
  to_create_ = {};
  to_update_ = {};
  added_mas_.clear();
  PassOverApplied();
  PassOverDesired();
  ApplyDelete();
  ApplyCreate();
  ApplyUpdate();
  applied_ = desired_;
}

void ClientModel::PassOverApplied() {
  for (const auto& [md_name, old_md] : applied_.mds) {
    if (desired_.mds.count(md_name) == 0) {
      rules_.Add(Rule::MdRemoved);
      to_delete_.mds.insert({md_name, old_md});
      continue;
    }
    const cfm::hierarchy_md& md = desired_.mds.at(md_name);
    bool recreated = false;
    if (old_md.cfg.level == md.cfg.level) {
      rules_.Add(Rule::MdKept);
      to_update_.mds.insert({md_name, md});
    } else {
      rules_.Add(Rule::MdLevelChanged);
      to_delete_.mds.insert({md_name, old_md});
      to_create_.mds.insert({md_name, md});
      recreated = true;
    }
    for (const auto& [ma_name, old_ma] : old_md.mas) {
      CompareMa(md_name, ma_name, old_ma, md, recreated);
    }
  }
}

void ClientModel::CompareMa(const std::string& md_name, const std::string& ma_name,
                            const cfm::hierarchy_ma& old_ma, const cfm::hierarchy_md& md,
                            bool md_recreated) {
  if (md.mas.count(ma_name) == 0) {
    rules_.Add(Rule::MaRemoved);
    to_delete_.mas.insert({{md_name, ma_name}, old_ma});
    return;
  }
  const cfm::hierarchy_ma& ma = md.mas.at(ma_name);
  bool recreated = false;
  if (!md_recreated && old_ma.cfg.vids == ma.cfg.vids) {
    rules_.Add(Rule::MaKept);
    to_update_.mas.insert({{md_name, ma_name}, ma});
  } else {
    rules_.Add(md_recreated ? Rule::MaOfRecreatedMd : Rule::MaVidsChanged);
    to_delete_.mas.insert({{md_name, ma_name}, old_ma});
    to_create_.mas.insert({{md_name, ma_name}, ma});
    recreated = true;
  }
  for (const auto& [key, old_mep] : old_ma.meps) {
    CompareMep(key, old_mep, ma, recreated);
  }
}

void ClientModel::CompareMep(std::uint16_t key, const cfm::hierarchy_mep& old_mep,
                             const cfm::hierarchy_ma& ma, bool ma_recreated) {
  if (ma.meps.count(key) == 0) {
    rules_.Add(Rule::MepRemoved);
    to_delete_.meps.push_back(old_mep);
    return;
  }
  const cfm::hierarchy_mep& mep = ma.meps.at(key);
  if (ma_recreated) {
    rules_.Add(Rule::MepOfRecreatedMa);
  }
  if (!ma_recreated && MepSettingsAgree(old_mep.cfg, mep.cfg)) {
    rules_.Add(Rule::MepKept);
    to_update_.meps.push_back(mep);
  } else {
    to_delete_.meps.push_back(old_mep);
    to_create_.meps.push_back(mep);
  }
}

bool ClientModel::MepSettingsAgree(const cfm::st_maintenance_endpoint_cfg& old_cfg,
                                   const cfm::st_maintenance_endpoint_cfg& cfg) {
  return !AnyDiffers({{old_cfg.port != cfg.port, Rule::MepPortChanged},
                      {old_cfg.direction != cfg.direction, Rule::MepDirectionChanged},
                      {old_cfg.primary_vid != cfg.primary_vid, Rule::MepPrimaryVidChanged},
                      {old_cfg.inner_vid != cfg.inner_vid, Rule::MepInnerVidChanged}});
}

void ClientModel::PassOverDesired() {
  for (const auto& [md_name, md] : desired_.mds) {
    const bool md_new = applied_.mds.count(md_name) == 0;
    if (md_new) {
      rules_.Add(Rule::MdNew);
      to_create_.mds.insert({md_name, md});
    }
    for (const auto& [ma_name, ma] : md.mas) {
      const bool ma_new = md_new || applied_.mds.at(md_name).mas.count(ma_name) == 0;
      if (ma_new) {
        rules_.Add(md_new ? Rule::MaOfNewMd : Rule::MaNew);
        to_create_.mas.insert({{md_name, ma_name}, ma});
      } else if (added_mas_.count({md_name, ma_name}) != 0) {
        rules_.Add(Rule::MaStoodInFor);
      }
      for (const auto& [key, mep] : ma.meps) {
        if (ma_new) {
          rules_.Add(Rule::MepOfNewMa);
          to_create_.meps.push_back(mep);
        } else {
          LookUpMep(md_name, key, mep);
        }
      }
    }
  }
}

void ClientModel::LookUpMep(const std::string& md_name, std::uint16_t key,
                            const cfm::hierarchy_mep& mep) {
  cfm::hierarchy_md& old_md = applied_.mds.at(md_name);
  if (old_md.mas.count(mep.ma_name) == 0) {
    rules_.Add(Rule::MaAddedForMep);
    added_mas_.insert({md_name, mep.ma_name});
    old_md.mas.insert({mep.ma_name, cfm::hierarchy_ma()});
  }
  const cfm::hierarchy_ma& named_ma = old_md.mas.at(mep.ma_name);
  if (named_ma.meps.count(key) == 0) {
    rules_.Add(Rule::MepMissedByItsMaName);
    to_create_.meps.push_back(mep);
  } else {
    rules_.Add(Rule::MepFoundByItsMaName);
  }
}

void ClientModel::ApplyDelete() {
  for (const cfm::hierarchy_mep& mep : to_delete_.meps) {
    Send(CFM_MGR_C2S_SIG_MEP_DELETE, DeleteMepMessage(mep));
  }
  for (const auto& [key, ma] : to_delete_.mas) {
    Send(CFM_MGR_C2S_SIG_MA_DELETE, DeleteMaMessage(ma.md_name, key.second));
  }
  for (const auto& [name, md] : to_delete_.mds) {
    Send(CFM_MGR_C2S_SIG_MD_DELETE, DeleteMdMessage(name));
  }
}

void ClientModel::ApplyCreate() {
  for (const auto& [name, md] : to_create_.mds) {
    Send(CFM_MGR_C2S_SIG_MD_CREATE, CreateMdMessage(name, md.cfg));
  }
  for (const auto& [key, ma] : to_create_.mas) {
    Send(CFM_MGR_C2S_SIG_MA_CREATE, CreateMaMessage(ma.md_name, key.second, ma.cfg));
  }
  for (const cfm::hierarchy_mep& mep : to_create_.meps) {
    Send(CFM_MGR_C2S_SIG_MEP_CREATE, CreateMepMessage(mep));
  }
}

void ClientModel::ApplyUpdate() {
  for (const auto& [name, md] : to_update_.mds) {
    Send(CFM_MGR_C2S_SIG_MD_UPDATE, UpdateMdMessage(name, md.cfg));
  }
  for (const auto& [key, ma] : to_update_.mas) {
    Send(CFM_MGR_C2S_SIG_MA_UPDATE, UpdateMaMessage(ma.md_name, key.second, ma.cfg));
  }
  for (const cfm::hierarchy_mep& mep : to_update_.meps) {
    Send(CFM_MGR_C2S_SIG_MEP_UPDATE, UpdateMepMessage(mep));
  }
}

}  // namespace cfm_test
