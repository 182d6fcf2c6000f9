/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_ENGINE_RELAY_TABLE_H
#define CFM_TESTS_ENGINE_RELAY_TABLE_H

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "engine/surroundings.h"

namespace cfm_mgr::engine {

/** What a bridge's relay has learnt. */
class RelayTable {
 public:
  void Learn(std::uint16_t vid, const Mac& source, PortId port) {
    if (learning_) ports_[{vid, source}] = port;
  }
  std::optional<PortId> Find(std::uint16_t vid, const Mac& destination) const {
    const auto found = ports_.find({vid, destination});
    if (found == ports_.end()) return std::nullopt;
    return found->second;
  }

  /** Forgets all, and learns nothing any more. */
  void StopLearning() {
    learning_ = false;
    ports_.clear();
  }

  /** Takes a port out of all VLANs. */
  void Exclude(PortId port) { excluded_.insert(port); }
  bool IsMember(PortId port) const { return excluded_.count(port) == 0; }

 private:
  bool learning_ = true;
  std::map<std::pair<std::uint16_t, Mac>, PortId> ports_;
  std::set<PortId> excluded_;
};

}  // namespace cfm_mgr::engine

#endif
