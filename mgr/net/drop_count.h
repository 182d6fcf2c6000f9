/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_DROP_COUNT_H
#define CFM_MGR_NET_DROP_COUNT_H

#include <cstdint>
#include <string>
#include <vector>

#include "engine/drops.h"

namespace cfm_mgr::net {

/** Frames of one interface that were dropped for one reason. */
struct DropCount {
  std::string interface;
  std::string reason;  ///< In words for an operator.
  std::uint64_t frames = 0;
};

inline bool operator==(const DropCount& a, const DropCount& b) {
  return a.interface == b.interface && a.reason == b.reason && a.frames == b.frames;
}

/** Appends a count, unless it is 0. */
void AppendDrop(std::vector<DropCount>& counts, const std::string& interface, std::string reason,
                std::uint64_t frames);

/** Appends what the engine dropped at an interface. */
void AppendDrops(std::vector<DropCount>& counts, const std::string& interface,
                 const engine::DropCounters& counters);

}  // namespace cfm_mgr::net

#endif
