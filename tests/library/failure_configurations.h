/* SPDX-License-Identifier: Apache-2.0 */
// Configurations small enough to fail every allocation of what is done with them, and large enough
// to need every kind of request. Names are too long to be kept inside a std::string.
#ifndef CFM_TESTS_LIBRARY_FAILURE_CONFIGURATIONS_H
#define CFM_TESTS_LIBRARY_FAILURE_CONFIGURATIONS_H

#include <cfm/client_server.pb.h>
#include <cfm/hierarchy.h>
#include <cfm/probe.h>

namespace cfm_test {

/// From the first to the second, entities of each kind are created, updated, deleted and created
/// again.
cfm::hierarchy FirstConfiguration();
cfm::hierarchy SecondConfiguration();
/// Has something in common with both.
cfm::hierarchy OtherConfiguration();

cfm::probe FirstProbes();
cfm::probe SecondProbes();
cfm::probe OtherProbes();

/// The answer of a server to which these were sent.
client_server::OpCacheSync CacheOf(const cfm::hierarchy& config, const cfm::probe& probes);

}  // namespace cfm_test

#endif
