// SPDX-License-Identifier: Apache-2.0
#include "core/status_table.h"

#include "core/status_text.h"

namespace cfm_agent {

bool StatusTable::Local(const MepKey& mep, const cfm::local_mep_status& status) {
  Entry& entry = entries_[mep];
  const bool news = !entry.reported || Describe(entry.status) != Describe(status);
  entry.removed = false;
  entry.reported = true;
  entry.status = status;
  return news;
}

bool StatusTable::Remote(const MepKey& mep, std::uint16_t remote,
                         const cfm::remote_mep_status& status) {
  Entry& entry = entries_[mep];
  entry.removed_remotes.erase(remote);
  const auto [place, added] = entry.remotes.try_emplace(remote, status);
  const bool news = added || Describe(place->second) != Describe(status);
  place->second = status;
  return news;
}

void StatusTable::LocalRemoved(const MepKey& mep) {
  Entry& entry = entries_[mep];
  entry = Entry{};
  entry.removed = true;
}

void StatusTable::RemoteRemoved(const MepKey& mep, std::uint16_t remote) {
  Entry& entry = entries_[mep];
  entry.remotes.erase(remote);
  entry.removed_remotes.insert(remote);
}

void StatusTable::Forget() { entries_.clear(); }

const StatusTable::Entry* StatusTable::Find(const MepKey& mep) const {
  const auto found = entries_.find(mep);
  return found == entries_.end() ? nullptr : &found->second;
}

}  // namespace cfm_agent
