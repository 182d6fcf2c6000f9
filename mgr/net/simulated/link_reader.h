/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Reads the links and cross-connections of a network's description.
 */
#ifndef CFM_MGR_NET_SIMULATED_LINK_READER_H
#define CFM_MGR_NET_SIMULATED_LINK_READER_H

#include <vector>

#include "core/value.h"
#include "net/simulated/description.h"

namespace cfm_mgr::net {

/** Each end must be a port of a bridge, of one link only; together they must not form a loop. */
std::vector<LinkDescription> ReadLinks(const cfm_agent::Value& list,
                                       const std::vector<BridgeDescription>& bridges);

std::vector<CrossConnection> ReadCrossConnections(const cfm_agent::Value& list,
                                                  const std::vector<BridgeDescription>& bridges);

}  // namespace cfm_mgr::net

#endif
