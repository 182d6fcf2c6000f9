// SPDX-License-Identifier: Apache-2.0
#include "core/kept_hierarchy.h"

namespace cfm::core {

KeptHierarchy::KeptHierarchy(const hierarchy& config) {
  Reserve(config);
  for (const auto& [name, md] : config.mds) {
    const KeptMa* const first = mas_.data() + mas_.size();
    Add(md);
    mds_.push_back({name, md.cfg, {first, mas_.data() + mas_.size()}});
  }
}

void KeptHierarchy::Reserve(const hierarchy& config) {
  std::size_t mas = 0;
  std::size_t meps = 0;
  for (const auto& [md_name, md] : config.mds) {
    mas += md.mas.size();
    for (const auto& [ma_name, ma] : md.mas) {
      meps += ma.meps.size();
    }
  }
  mds_.reserve(config.mds.size());
  mas_.reserve(mas);
  meps_.reserve(meps);
}

void KeptHierarchy::Add(const hierarchy_md& md) {
  for (const auto& [name, ma] : md.mas) {
    const KeptMep* const first = meps_.data() + meps_.size();
    mas_.push_back({name, ma.md_name, ma.cfg, {}});
    KeptMa& kept = mas_.back();
    for (const auto& [key, mep] : ma.meps) {
      Add(key, mep, kept);
    }
    kept.meps = {first, meps_.data() + meps_.size()};
  }
}

void KeptHierarchy::Add(std::uint16_t key, const hierarchy_mep& mep, const KeptMa& ma) {
  meps_.push_back({key, Keep(mep.ma_name, ma.name), Keep(mep.md_name, ma.md_name), mep.cfg});
}

const std::string* KeptHierarchy::Keep(const std::string& name, const std::string& usual) {
  return name == usual ? &usual : &other_names_.emplace_back(name);
}

}  // namespace cfm::core
