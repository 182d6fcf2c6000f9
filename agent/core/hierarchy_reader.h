/* SPDX-License-Identifier: Apache-2.0 */
// Reads the domains of a configuration file.
#ifndef CFM_AGENT_CORE_HIERARCHY_READER_H
#define CFM_AGENT_CORE_HIERARCHY_READER_H

#include <set>
#include <string>
#include <utility>

#include "core/config.h"
#include "core/value.h"

namespace cfm_agent {

// The file's domains, and what about them could not be read, so that one mistake in a domain does
// not make a second one of every probe that refers to it.
struct HierarchyDraft {
  cfm::hierarchy hierarchy;
  bool unclear = false;               // some domain is missing
  std::set<std::string> unclear_mds;  // some association of these is missing
  std::set<std::pair<std::string, std::string>> unclear_mas;  // some MEP identifier is missing
};

HierarchyDraft ReadDomains(const Value& domains, const PortOfName& port_of_name);

}  // namespace cfm_agent

#endif
