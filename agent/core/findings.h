/* SPDX-License-Identifier: Apache-2.0 */
// What a test has found so far.
#ifndef CFM_AGENT_CORE_FINDINGS_H
#define CFM_AGENT_CORE_FINDINGS_H

#include <cfm/mac.h>
#include <cfm/statistics.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "core/hop.h"
#include "core/mep.h"
#include "core/settle_timer.h"

namespace cfm_agent {

struct LoopbackResult {
  std::uint64_t expected = 0;
  std::uint64_t in_order = 0;
  std::uint64_t out_of_order = 0;
  std::uint64_t wrong_payload = 0;
};

// The reference server gives the times in microseconds.
struct DelayResult {
  struct Spread {
    double least = 0;
    double mean = 0;
    double greatest = 0;
  };

  std::uint64_t received = 0;
  std::uint64_t sent = 0;
  Spread delay;
  Spread variation;
  std::uint64_t not_counted = 0;  // replies
};

// A delay needs one reply that counts, a variation two.
inline bool HasDelay(const DelayResult& result) { return result.received > 0; }
inline bool HasVariation(const DelayResult& result) { return result.received > 1; }

struct LocalStatistics {
  MepKey mep;
  cfm::local_mep_stats stats;
};

struct RemoteStatistics {
  MepKey mep;
  std::uint16_t remote = 0;
  cfm::remote_mep_stats stats;
};

// What the trigger of a test said about its course.
struct Plan {
  std::uint64_t replies = 0;  // that are to come; 0: the server decides
  std::uint8_t ttl = 0;       // of a linktrace; 0: the server decides
};

struct Findings {
  Plan plan;
  TimePoint began;
  Duration elapsed{};
  std::optional<cfm::st_mac> target;
  std::vector<Duration> replies;  // when they came, since the test began
  std::vector<Hop> hops;
  std::vector<LocalStatistics> local;
  std::vector<RemoteStatistics> remote;
  // Once the server has said how the test ended.
  std::optional<LoopbackResult> loopback;
  std::optional<DelayResult> delay;
};

}  // namespace cfm_agent

#endif
