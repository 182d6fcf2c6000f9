/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_BENCH_BUS_PROVISIONING_H
#define CFM_BENCH_BUS_PROVISIONING_H

#include <cfm/hierarchy.h>

#include <string>
#include <vector>

#include "bare.h"

namespace cfm_bench {

/** A configuration of this many endpoints: ten to an association, a hundred associations to a
 * domain, and one remote endpoint that they all watch. */
cfm::hierarchy ConfigurationOf(int endpoints);

/** The requests by which the client library provisions an empty server. */
std::vector<Request> RecordRequests(const cfm_test::PrivateBus& bus,
                                    const cfm::hierarchy& configuration);

/** Times handing it in up to the arrival of the last request at a receiver that only counts. */
Timing TimeToReceiver(const cfm_test::PrivateBus& bus, const cfm::hierarchy& configuration,
                      std::size_t requests);

/**
 * The same until cfm-mgr has carried out the last request, by the times in its log, which are to
 * the millisecond.
 */
Timing TimeToServer(const cfm_test::PrivateBus& bus, const cfm::hierarchy& configuration,
                    std::size_t requests);

}  // namespace cfm_bench

#endif
