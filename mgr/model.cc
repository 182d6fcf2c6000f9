// SPDX-License-Identifier: Apache-2.0
#include "model.h"

namespace cfm_mgr {

const Association* FindAssociation(const Tree& tree, const MaKey& key) {
  const auto domain = tree.domains.find(key.md_name);
  if (domain == tree.domains.end()) return nullptr;
  const auto& associations = domain->second.associations;
  const auto association = associations.find(key.ma_name);
  return association == associations.end() ? nullptr : &association->second;
}

const Mep* FindMep(const Tree& tree, const MepKey& key) {
  const Association* association = FindAssociation(tree, key.ma);
  if (association == nullptr) return nullptr;
  const auto mep = association->meps.find(key.mep_id);
  return mep == association->meps.end() ? nullptr : &mep->second;
}

std::vector<std::uint32_t> RemotesOf(const Association& association, std::uint32_t mep_id) {
  const std::uint32_t ifindex = association.meps.at(mep_id).ifindex;
  std::vector<std::uint32_t> remotes;
  // Both are in order of identifiers.
  auto local = association.meps.begin();
  for (const std::uint32_t other : association.settings.mep_ids) {
    while (local != association.meps.end() && local->first < other) ++local;
    const bool is_local = local != association.meps.end() && local->first == other;
    const bool is_remote = !is_local || local->second.ifindex != ifindex;
    if (other != mep_id && is_remote) remotes.push_back(other);
  }
  return remotes;
}

TreeSize SizeOf(const Tree& tree) {
  TreeSize size;
  size.domains = tree.domains.size();
  ForEachAssociation(tree, [&size](const std::string&, const std::string&, const Association& ma) {
    ++size.associations;
    size.meps += ma.meps.size();
  });
  size.probes = tree.probes.size();
  for (const auto& entry : tree.probes) size.sessions += entry.second.sessions.size();
  return size;
}

}  // namespace cfm_mgr
