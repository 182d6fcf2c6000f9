// SPDX-License-Identifier: Apache-2.0
#include "provisioner.h"

#include <string>
#include <utility>

namespace cfm_mgr {

Provisioner::Provisioner(const Tree& tree, engine::Engine& engine) : tree_(tree), engine_(engine) {
  ForEachAssociation(tree_, [this](const std::string& md_name, const std::string& ma_name,
                                   const Association& /*association*/) {
    associations_.insert({md_name, ma_name});
  });
  for (const auto& entry : tree_.probes) probes_.insert(entry.first);
}

void Provisioner::Note(const Outcome& outcome) {
  for (const MepKey& key : outcome.removed) associations_.insert(key.ma);
  if (outcome.reset_ma) associations_.insert(*outcome.reset_ma);
  if (outcome.reset_mep) associations_.insert(outcome.reset_mep->ma);
  if (outcome.reset_probe) probes_.insert(*outcome.reset_probe);
  if (outcome.reset_md) {
    const auto of_domain = given_.lower_bound({*outcome.reset_md, ""});
    for (auto it = of_domain; it != given_.end() && it->md_name == *outcome.reset_md; ++it) {
      associations_.insert(*it);
    }
  }
}

void Provisioner::Apply(engine::Time now) {
  for (const MaKey& key : std::exchange(associations_, {})) {
    if (const Association* association = FindAssociation(tree_, key)) {
      engine_.SetAssociation(now, key, tree_.domains.at(key.md_name).settings, *association);
      given_.insert(key);
    } else if (given_.erase(key) != 0) {
      engine_.RemoveAssociation(now, key);
    }
  }
  for (const std::uint32_t probe_id : std::exchange(probes_, {})) {
    const auto probe = tree_.probes.find(probe_id);
    if (probe == tree_.probes.end()) {
      engine_.RemoveProbe(now, probe_id);
    } else {
      engine_.SetProbe(now, probe_id, probe->second);
    }
  }
}

}  // namespace cfm_mgr
