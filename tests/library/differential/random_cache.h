/* SPDX-License-Identifier: Apache-2.0 */
// Cache replies of servers that hold much, little or nothing of what the client knows, and that
// may list it oddly.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_RANDOM_CACHE_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_RANDOM_CACHE_H

#include <cfm/client_server.pb.h>
#include <cfm/hierarchy.h>
#include <cfm/probe.h>

#include "random_records.h"

namespace cfm_test {

/// A server that holds these. Half of the replies list them as they are; in the others entries are
/// missing, listed again in another form and out of order, fields are missing, and numbers are
/// wider than the configuration's.
client_server::OpCacheSync RandomCache(RandomRecords& records, const cfm::hierarchy& hierarchy,
                                       const cfm::probe& probes);

}  // namespace cfm_test

#endif
