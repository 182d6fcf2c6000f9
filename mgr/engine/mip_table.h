/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_MIP_TABLE_H
#define CFM_MGR_ENGINE_MIP_TABLE_H

#include <cstdint>
#include <unordered_map>

#include "engine/mep_table.h"
#include "engine/mip_creation.h"

namespace cfm_mgr::engine {

/** The MIPs that the associations of an engine ask for, on all of its ports. */
class MipTable {
 public:
  explicit MipTable(const MepTable& meps) : meps_(meps) {}

  /** Ports or associations have changed. The MIPs are found anew when they are asked for next. */
  void Invalidate() { valid_ = false; }

  /** Null when a port has no MIP for frames of this VID, which have no other tag. */
  const Mip* Find(PortId port, std::uint16_t vid);

 private:
  void Rebuild();

  const MepTable& meps_;
  bool valid_ = false;
  std::unordered_map<PortId, Mips> mips_;  ///< Only ports that have any.
};

}  // namespace cfm_mgr::engine

#endif
