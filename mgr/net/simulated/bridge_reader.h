/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Reads the bridges of a network's description.
 */
#ifndef CFM_MGR_NET_SIMULATED_BRIDGE_READER_H
#define CFM_MGR_NET_SIMULATED_BRIDGE_READER_H

#include <vector>

#include "core/value.h"
#include "net/simulated/description_reader.h"

namespace cfm_mgr::net {

/** What the bridges of a file are read with. */
struct BridgeContext {
  const IndexOfInterface& index_of_interface;
  std::string local;
};

std::vector<BridgeDescription> ReadBridges(const cfm_agent::Value& list,
                                           const BridgeContext& context);

}  // namespace cfm_mgr::net

#endif
