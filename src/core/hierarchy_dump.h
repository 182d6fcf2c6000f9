// The log's rendering of a configuration.
#ifndef CFM_SRC_CORE_HIERARCHY_DUMP_H
#define CFM_SRC_CORE_HIERARCHY_DUMP_H

#include <cfm/hierarchy.h>

#include <string>

namespace cfm::core {

/// Finds the interface name of a port.
using PortName = std::string (*)(sepan_port_t port);

/// One line per domain, association and endpoint, in the order of the maps.
std::string HierarchyDump(const hierarchy& config, PortName port_name);

}  // namespace cfm::core

#endif
