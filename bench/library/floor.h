/* SPDX-License-Identifier: Apache-2.0 */
// What the work costs when it is done by hand, the plainest fast way: the same messages built,
// serialised and sent, the same two copies of the configuration, the same text for the log. There
// is no comparison: each function knows what is to be sent.
#ifndef CFM_BENCH_LIBRARY_FLOOR_H
#define CFM_BENCH_LIBRARY_FLOOR_H

#include <cfm/client_server.pb.h>
#include <cfm/hierarchy.h>
#include <cfm/probe.h>

#include <string>

namespace cfm_bench {

struct Copies {
  cfm::hierarchy desired;
  cfm::hierarchy applied;
};

void FloorCreateAll(Copies& copies, const cfm::hierarchy& config);
void FloorUpdateAll(Copies& copies, const cfm::hierarchy& config);
void FloorRecreateAll(Copies& copies, const cfm::hierarchy& config);
// As an update of all, but the last endpoint is created.
void FloorAddLast(Copies& copies, const cfm::hierarchy& config);

struct ProbeCopies {
  cfm::probe desired;
  cfm::probe applied;
};

void FloorCreateProbes(ProbeCopies& copies, const cfm::probe& config);
void FloorKeepProbes(ProbeCopies& copies, const cfm::probe& config);
// As keeping all, but the first session is sent again.
void FloorChangeFirstSession(ProbeCopies& copies, const cfm::probe& config);

// The model that a cache holds, once its bytes are copied to a string and parsed.
cfm::hierarchy FloorAdopt(const std::string& payload);

}  // namespace cfm_bench

#endif
