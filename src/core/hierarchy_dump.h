/* SPDX-License-Identifier: Apache-2.0 */
// The log's rendering of a configuration.
#ifndef CFM_SRC_CORE_HIERARCHY_DUMP_H
#define CFM_SRC_CORE_HIERARCHY_DUMP_H

#include <string>

#include "core/kept_hierarchy.h"

namespace cfm::core {

/// Finds the interface name of a port.
using PortName = std::string (*)(sepan_port_t port);

/// One line per domain, association and endpoint, in the order of their keys.
std::string HierarchyDump(const KeptHierarchy& config, PortName port_name);

}  // namespace cfm::core

#endif
