/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_MIP_DATABASE_H
#define CFM_MGR_ENGINE_MIP_DATABASE_H

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <optional>
#include <utility>

#include "engine/surroundings.h"

namespace cfm_mgr::engine {

/**
 * The MIP CCM Database, IEEE 802.1Q 19.4.4: behind which port the CCMs of an address were seen by
 * an MHF. It outlives the entries of the filtering database, so that a linktrace can be answered
 * after a fault too.
 */
class MipDatabase {
 public:
  /** Entries are kept for a day after the last CCM, as the standard asks for at least. */
  static constexpr Time kLifetime = std::chrono::hours(24);
  /** When there would be more, the one that was not seen for longest goes. */
  static constexpr std::size_t kMaxEntries = 16384;

  void Learn(Time now, std::uint16_t vid, const Mac& address, PortId port);
  std::optional<PortId> Find(Time now, std::uint16_t vid, const Mac& address) const;
  std::size_t size() const { return entries_.size(); }

 private:
  using Key = std::pair<std::uint16_t, Mac>;
  struct Entry {
    Key key;
    PortId port = 0;
    Time seen{};
  };

  std::list<Entry> entries_;  ///< The one seen last at the end.
  std::map<Key, std::list<Entry>::iterator> by_key_;
};

}  // namespace cfm_mgr::engine

#endif
