/* SPDX-License-Identifier: Apache-2.0 */
// The server's copy of the probes, back in the application's shape.
#ifndef CFM_SRC_CORE_PROBE_CACHE_H
#define CFM_SRC_CORE_PROBE_CACHE_H

#include <cfm/client_server.pb.h>
#include <cfm/probe.h>

namespace cfm::core {

/// Rebuilds the probes from the server's lists. Of entries with the same identifiers the last
/// counts; a session whose probe is not listed creates an empty probe.
probe ProbesFromCache(const client_server::OpCacheSync& cache);

}  // namespace cfm::core

#endif
