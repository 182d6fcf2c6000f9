/* SPDX-License-Identifier: Apache-2.0 */
// The server's copy of the configuration, back in the application's shape.
#ifndef CFM_SRC_CORE_HIERARCHY_CACHE_H
#define CFM_SRC_CORE_HIERARCHY_CACHE_H

#include <cfm/client_server.pb.h>
#include <cfm/hierarchy.h>

#include <cstdint>

namespace cfm::core {

/// Finds the port of an interface index.
using PortOfIfindex = sepan_port_t (*)(std::uint32_t ifindex);

/// Rebuilds a configuration from the server's lists. Of entries with the same names the last
/// counts; an entry whose parent is not listed creates it with default settings.
hierarchy HierarchyFromCache(const client_server::OpCacheSync& cache, PortOfIfindex port_of);

}  // namespace cfm::core

#endif
