// SPDX-License-Identifier: Apache-2.0
#include "engine/mip_database.h"

namespace cfm_mgr::engine {

void MipDatabase::Learn(Time now, std::uint16_t vid, const Mac& address, PortId port) {
  const Key key{vid, address};
  const auto known = by_key_.find(key);
  if (known != by_key_.end()) {
    entries_.splice(entries_.end(), entries_, known->second);
    entries_.back().port = port;
    entries_.back().seen = now;
    return;
  }
  if (entries_.size() == kMaxEntries) {
    by_key_.erase(entries_.front().key);
    entries_.pop_front();
  }
  entries_.push_back({key, port, now});
  by_key_[key] = std::prev(entries_.end());
}

std::optional<PortId> MipDatabase::Find(Time now, std::uint16_t vid, const Mac& address) const {
  const auto known = by_key_.find({vid, address});
  if (known == by_key_.end() || now - known->second->seen > kLifetime) return std::nullopt;
  return known->second->port;
}

}  // namespace cfm_mgr::engine
