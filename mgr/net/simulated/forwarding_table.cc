// SPDX-License-Identifier: Apache-2.0
#include "net/simulated/forwarding_table.h"

namespace cfm_mgr::net {
namespace {

// Drops the entries for which `drop` says so.
template <class Map, class Drop>
void EraseIf(Map& map, const Drop& drop) {
  for (auto entry = map.begin(); entry != map.end();) {
    entry = drop(entry->second) ? map.erase(entry) : std::next(entry);
  }
}

}  // namespace

void ForwardingTable::Learn(engine::Time now, std::uint16_t vid, const engine::Mac& source,
                            engine::PortId port) {
  if ((source[0] & 1U) != 0) return;
  const Key key{vid, source};
  if (entries_.size() >= capacity_ && entries_.count(key) == 0) {
    DropAged(now);
    if (entries_.size() >= capacity_) return;
  }
  entries_[key] = {port, now};
}

std::optional<engine::PortId> ForwardingTable::Find(engine::Time now, std::uint16_t vid,
                                                    const engine::Mac& address) const {
  const auto found = entries_.find({vid, address});
  if (found == entries_.end() || now - found->second.seen > kAgeingTime) return std::nullopt;
  return found->second.port;
}

void ForwardingTable::Flush(engine::PortId port) {
  EraseIf(entries_, [port](const Entry& entry) { return entry.port == port; });
}

void ForwardingTable::DropAged(engine::Time now) {
  EraseIf(entries_, [now](const Entry& entry) { return now - entry.seen > kAgeingTime; });
}

}  // namespace cfm_mgr::net
