/* SPDX-License-Identifier: Apache-2.0 */
// Configurations of the sizes that are measured.
#ifndef CFM_BENCH_LIBRARY_SAMPLES_H
#define CFM_BENCH_LIBRARY_SAMPLES_H

#include <cfm/client_server.pb.h>
#include <cfm/hierarchy.h>
#include <cfm/probe.h>

#include <cstddef>

namespace cfm_bench {

// Ten endpoints to an association, a hundred associations to a domain.
cfm::hierarchy HierarchyOf(std::size_t meps, std::uint8_t level = 4);

// Sixty sessions to a probe at most; at least two probes.
cfm::probe ProbesOf(std::size_t sessions);

// The cache of a server that holds this configuration.
client_server::OpCacheSync CacheOf(const cfm::hierarchy& config);

}  // namespace cfm_bench

#endif
