/* SPDX-License-Identifier: Apache-2.0 */
// The configuration that a server's cache reply describes, put together entry by entry.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_CACHE_MODEL_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_CACHE_MODEL_H

#include <cfm/client_server.pb.h>
#include <cfm/hierarchy.h>
#include <cfm/probe.h>

#include <cstdint>
#include <map>
#include <string>

#include "rules.h"

namespace cfm_test {

std::map<std::string, cfm::hierarchy_md> HierarchyIn(const client_server::OpCacheSync& cache,
                                                     RuleCounts& rules);
std::map<std::uint16_t, cfm::probe_cfg> ProbesIn(const client_server::OpCacheSync& cache,
                                                 RuleCounts& rules);

}  // namespace cfm_test

#endif
