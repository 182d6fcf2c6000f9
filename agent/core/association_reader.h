/* SPDX-License-Identifier: Apache-2.0 */
// Reads the maintenance associations of a configuration file.
#ifndef CFM_AGENT_CORE_ASSOCIATION_READER_H
#define CFM_AGENT_CORE_ASSOCIATION_READER_H

#include <cfm/hierarchy.h>

#include <optional>
#include <string>

#include "core/config.h"
#include "core/value.h"

namespace cfm_agent {

struct AssociationDraft {
  explicit AssociationDraft(const PortOfName& ports) : port_of_name(ports) {}

  const PortOfName& port_of_name;
  std::optional<std::string> name;  // when it could be read
  bool format_is_known = true;
  bool vids_are_known = true;
  bool mep_list_is_known = true;
  bool endpoints_are_known = true;
  cfm::hierarchy_ma ma;  // without the names of its owners
};

AssociationDraft ReadAssociation(const Value& association, const PortOfName& port_of_name);

}  // namespace cfm_agent

#endif
