// SPDX-License-Identifier: Apache-2.0
#include "engine/mep_table.h"

#include <iterator>
#include <utility>

namespace cfm_mgr::engine {

void MepTable::SetPort(Time now, PortId port, const PortInfo& info) {
  ports_[port] = info;
  UpdatePort(now, port);
}

void MepTable::RemovePort(Time now, PortId port) {
  if (ports_.erase(port) > 0) UpdatePort(now, port);
}

void MepTable::UpdatePort(Time now, PortId port) {
  const PortInfo* const info = FindPort(port);
  const auto meps = meps_by_port_.find(port);
  if (meps == meps_by_port_.end()) return;
  for (const auto& entry : meps->second) {
    LocalMep& mep = *entry.second;
    Reindex(mep, [&mep, now, info] { mep.SetPort(now, info); });
  }
}

void MepTable::SetAssociation(Time now, const MaKey& key, const DomainSettings& domain,
                              const Association& association) {
  AssociationEntry& entry = associations_[key];
  entry.domain = domain;
  entry.association = association;
  for (auto it = entry.meps.begin(); it != entry.meps.end();) {
    const bool stays = association.meps.count(it->first) > 0;
    if (!stays) RemoveMep(now, *it->second);
    it = stays ? std::next(it) : entry.meps.erase(it);
  }
  for (const auto& mep : association.meps) {
    SetMep(now, entry, ResolveMep(key, domain, association, mep.first));
  }
}

void MepTable::RemoveAssociation(Time now, const MaKey& key) {
  const auto found = associations_.find(key);
  if (found == associations_.end()) return;
  for (auto& entry : found->second.meps) RemoveMep(now, *entry.second);
  associations_.erase(found);
}

void MepTable::SetMep(Time now, AssociationEntry& entry, MepSettings settings) {
  std::unique_ptr<LocalMep>& mep = entry.meps[settings.key.mep_id];
  // Of a large association, one endpoint changes at a time.
  if (mep && mep->settings() == settings) return;
  if (mep && IsSamePlace(mep->settings(), settings)) {
    return Reindex(*mep, [&] { mep->Configure(now, std::move(settings)); });
  }
  if (mep) RemoveMep(now, *mep);
  const PortInfo* const port = FindPort(settings.port);
  mep = std::make_unique<LocalMep>(context_, std::move(settings));
  meps_by_port_[mep->settings().port][mep->settings().key] = mep.get();
  Reindex(*mep, [&] { mep->SetPort(now, port); });
}

void MepTable::RemoveMep(Time now, LocalMep& mep) {
  const auto of_port = meps_by_port_.find(mep.settings().port);
  of_port->second.erase(mep.settings().key);
  if (of_port->second.empty()) meps_by_port_.erase(of_port);
  index_.Erase(mep);
  mep.Shut(now);
}

template <class Change>
void MepTable::Reindex(LocalMep& mep, Change&& change) {
  const bool was_running = mep.running();
  std::forward<Change>(change)();
  if (was_running == mep.running()) return;
  if (mep.running()) {
    index_.Insert(mep);
  } else {
    index_.Erase(mep);
  }
}

const PortInfo* MepTable::FindPort(PortId port) const {
  const auto found = ports_.find(port);
  return found == ports_.end() ? nullptr : &found->second;
}

LocalMep* MepTable::FindMep(const MepKey& key) const {
  const auto association = associations_.find(key.ma);
  if (association == associations_.end()) return nullptr;
  const auto mep = association->second.meps.find(key.mep_id);
  return mep == association->second.meps.end() ? nullptr : mep->second.get();
}

}  // namespace cfm_mgr::engine
