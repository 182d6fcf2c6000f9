// SPDX-License-Identifier: Apache-2.0
#include "random_hierarchy.h"

namespace cfm_test {

cfm::hierarchy RandomHierarchy::Any() {
  cfm::hierarchy config;
  for (std::size_t count = records_.FewOrNone(); count > 0; --count) {
    const std::string& name = records_.Name();
    config.mds[name] = Md(name);
  }
  return config;
}

cfm::hierarchy_md RandomHierarchy::Md(const std::string& name) {
  cfm::hierarchy_md md;
  records_.Fill(md);
  for (std::size_t count = records_.FewOrNone(); count > 0; --count) {
    const std::string& ma_name = records_.Name();
    md.mas[ma_name] = Ma(name, ma_name);
  }
  return md;
}

cfm::hierarchy_ma RandomHierarchy::Ma(const std::string& md_name, const std::string& name) {
  cfm::hierarchy_ma ma;
  records_.Fill(ma);
  ma.md_name = md_name;
  Disturb(ma);
  for (std::size_t count = records_.FewOrNone(); count > 0; --count) {
    const std::uint16_t id = records_.Number();
    ma.meps[id] = Mep(md_name, name, id);
  }
  return ma;
}

cfm::hierarchy_mep RandomHierarchy::Mep(const std::string& md_name, const std::string& ma_name,
                                        std::uint16_t id) {
  cfm::hierarchy_mep mep;
  records_.Fill(mep);
  mep.md_name = md_name;
  mep.ma_name = ma_name;
  mep.cfg.mep_id = id;
  Disturb(mep);
  return mep;
}

void RandomHierarchy::Disturb(cfm::hierarchy_ma& ma) {
  if (records_.disturbed && records_.random.OneIn(4)) {
    records_.Make(ma.md_name);
  }
}

void RandomHierarchy::Disturb(cfm::hierarchy_mep& mep) {
  if (!records_.disturbed) {
    return;
  }
  if (records_.random.OneIn(6)) {
    records_.Make(mep.md_name);
  }
  if (records_.random.OneIn(3)) {
    records_.Make(mep.ma_name);
  }
  if (records_.random.OneIn(6)) {
    records_.Make(mep.cfg.mep_id);
  }
}

cfm::hierarchy RandomHierarchy::After(const cfm::hierarchy& config) {
  switch (records_.random.Below(16)) {
    case 0:
      return config;
    case 1:
      return {};
    case 2:
    case 3:
      return Any();
    default:
      break;
  }
  cfm::hierarchy changed = config;
  for (std::size_t count = 1 + records_.random.Below(5); count > 0; --count) {
    Change(changed);
  }
  return changed;
}

void RandomHierarchy::Change(cfm::hierarchy& config) {
  if (config.mds.empty() || records_.random.OneIn(8)) {
    const std::string name = records_.Name();
    config.mds[name] = Md(name);
    return;
  }
  const auto md = records_.Entry(config.mds);
  const std::string md_name = md->first;
  const std::size_t what = records_.random.Below(8);
  if (what < 2) {
    ChangeMd(config, md_name);
  } else if (!md->second.mas.empty()) {
    const std::string ma_name = records_.Entry(md->second.mas)->first;
    if (what < 4) {
      ChangeMa(config, md_name, ma_name);
    } else {
      ChangeMep(config, md_name, ma_name);
    }
  }
}

void RandomHierarchy::ChangeMd(cfm::hierarchy& config, const std::string& name) {
  cfm::hierarchy_md& md = config.mds[name];
  const std::string other = records_.Name();
  switch (records_.random.Below(8)) {
    case 0:
      config.mds.erase(name);
      return;
    case 1:
      config.mds[other] = cfm::hierarchy_md(md);  // the names below it stay
      return;
    case 2:
      records_.EraseOne(md.mas);
      return;
    case 3:
      AddMa(name, other, md);
      return;
    case 4:
      records_.Make(md.cfg.level);
      return;
    default:
      records_.ChangeOneField(md);
  }
}

// An endpoint of another association may come to name the new one.
void RandomHierarchy::AddMa(const std::string& md_name, const std::string& name,
                            cfm::hierarchy_md& md) {
  if (records_.disturbed && !md.mas.empty()) {
    auto& meps = records_.Entry(md.mas)->second.meps;
    if (!meps.empty()) {
      records_.Entry(meps)->second.ma_name = name;
    }
  }
  md.mas[name] = Ma(md_name, name);
}

void RandomHierarchy::ChangeMa(cfm::hierarchy& config, const std::string& md_name,
                               const std::string& name) {
  std::map<std::string, cfm::hierarchy_ma>& mas = config.mds[md_name].mas;
  cfm::hierarchy_ma& ma = mas[name];
  const std::string other = records_.Name();
  const std::uint16_t id = records_.Number();
  switch (records_.random.Below(8)) {
    case 0:
      mas[other] = cfm::hierarchy_ma(ma);  // the names below it stay
      return;
    case 1:
      mas.erase(name);
      return;
    case 2:
      records_.EraseOne(ma.meps);
      return;
    case 3:
      ma.meps[id] = Mep(md_name, name, id);
      return;
    case 4:
      records_.Make(ma.cfg.vids);
      return;
    case 5:
      Disturb(ma);
      return;
    default: {
      const std::string stored = ma.md_name;
      records_.ChangeOneField(ma);
      ma.md_name = records_.disturbed ? ma.md_name : stored;
    }
  }
}

void RandomHierarchy::ChangeMep(cfm::hierarchy& config, const std::string& md_name,
                                const std::string& ma_name) {
  cfm::hierarchy_ma& ma = config.mds[md_name].mas[ma_name];
  if (ma.meps.empty()) {
    return;
  }
  auto& [id, mep] = *records_.Entry(ma.meps);
  switch (records_.random.Below(10)) {
    case 0:
      if (records_.disturbed) {
        MoveMep(config, ma);
      }
      return;
    case 1:
      records_.Make(mep.cfg.port);
      return;
    case 2:
      records_.Make(mep.cfg.direction);
      return;
    case 3:
      records_.Make(mep.cfg.primary_vid);
      return;
    case 4:
      records_.Make(mep.cfg.inner_vid);
      return;
    case 5:
      Disturb(mep);
      return;
    default: {
      const cfm::hierarchy_mep before = mep;
      records_.ChangeOneField(mep);
      if (!records_.disturbed) {
        mep.md_name = before.md_name;
        mep.ma_name = before.ma_name;
        mep.cfg.mep_id = before.cfg.mep_id;
      }
    }
  }
}

// To another association or key, or copied there, with the names and the identifier that it had.
void RandomHierarchy::MoveMep(cfm::hierarchy& config, cfm::hierarchy_ma& from) {
  const auto entry = records_.Entry(from.meps);
  const std::uint16_t key = records_.random.OneIn(2) ? entry->first : records_.Number();
  const cfm::hierarchy_mep mep = entry->second;
  if (records_.random.OneIn(2)) {
    from.meps.erase(entry);
  }
  auto& mas = records_.Entry(config.mds)->second.mas;
  if (!mas.empty()) {
    records_.Entry(mas)->second.meps[key] = mep;
  }
}

}  // namespace cfm_test
