/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_SIMULATED_DOMAINS_H
#define CFM_MGR_NET_SIMULATED_DOMAINS_H

#include <cfm/hierarchy.h>

#include <map>
#include <string>

#include "model.h"

namespace cfm_mgr::net {

/** The domains of a configuration as a server keeps them. The ports of endpoints become indices. */
std::map<std::string, Domain> ToDomains(const cfm::hierarchy& hierarchy);

}  // namespace cfm_mgr::net

#endif
