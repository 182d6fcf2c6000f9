/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_MEP_INDEX_H
#define CFM_MGR_ENGINE_MEP_INDEX_H

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "engine/local_mep.h"

namespace cfm_mgr::engine {

/** The running MEPs of one service on one port, by the side that they face, lowest level first. */
struct MepStack {
  std::vector<LocalMep*> wire;   ///< Down MEPs.
  std::vector<LocalMep*> relay;  ///< Up MEPs.

  const std::vector<LocalMep*>& Facing(Side side) const {
    return side == Side::Wire ? wire : relay;
  }
};

/** Finds the MEPs that a frame meets. It holds the MEPs that run. */
class MepIndex {
 public:
  void Insert(LocalMep& mep);
  /** @p mep may be there or not. */
  void Erase(const LocalMep& mep);

  /** Null when there is no MEP. */
  const MepStack* Find(PortId port, ServiceTags service) const;

 private:
  std::unordered_map<std::uint64_t, MepStack> stacks_;
};

}  // namespace cfm_mgr::engine

#endif
