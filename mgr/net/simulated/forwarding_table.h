/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_SIMULATED_FORWARDING_TABLE_H
#define CFM_MGR_NET_SIMULATED_FORWARDING_TABLE_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>

#include "engine/frame.h"
#include "engine/surroundings.h"
#include "engine/time.h"

namespace cfm_mgr::net {

/** Ageing time of learnt addresses, the default of IEEE 802.1Q 8.8.3. */
inline constexpr engine::Time kAgeingTime = std::chrono::seconds(300);

/** Behind which port of a bridge each address was seen last, VLAN by VLAN. */
class ForwardingTable {
 public:
  /** @param capacity Addresses to hold; one more has to wait until another has aged out. */
  explicit ForwardingTable(std::size_t capacity = 65536) : capacity_(capacity) {}

  /** Remembers the port of a source address. Group addresses are not learnt. */
  void Learn(engine::Time now, std::uint16_t vid, const engine::Mac& source, engine::PortId port);

  /** The port of an address, unless it is unknown or has aged out. */
  std::optional<engine::PortId> Find(engine::Time now, std::uint16_t vid,
                                     const engine::Mac& address) const;

  /** Forgets what was learnt from a port. */
  void Flush(engine::PortId port);

  std::size_t size() const { return entries_.size(); }

 private:
  using Key = std::pair<std::uint16_t, engine::Mac>;

  struct Entry {
    engine::PortId port = 0;
    engine::Time seen{};
  };

  void DropAged(engine::Time now);

  std::size_t capacity_;
  std::map<Key, Entry> entries_;
};

}  // namespace cfm_mgr::net

#endif
