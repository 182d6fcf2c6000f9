/* SPDX-License-Identifier: Apache-2.0 */
// The replies to a linktrace, and the path that they tell of.
#ifndef CFM_AGENT_CORE_HOP_H
#define CFM_AGENT_CORE_HOP_H

#include <cfm/linktrace.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace cfm_agent {

// One reply; a copy, because the library's own record cannot be kept.
struct Hop {
  cfm::st_mac from;
  std::uint8_t ttl = 0;  // that of the reply: one less than the one that came in
  std::int32_t relay_action = 0;
  bool terminal_mep = false;
  bool forwarded = false;
  bool use_fdb_only = false;
  std::uint16_t vlan = 0;
  std::uint8_t priority = 0;
  cfm::st_mac last_mac;  // who sent what this replies to
  cfm::st_mac next_mac;  // who sent it on; zero if nobody did
  std::optional<cfm::LtrReplyPort> ingress;
  std::optional<cfm::LtrReplyPort> egress;
};

Hop HopOf(const cfm::LinktraceReplyEntry& reply);

// A place on the path: who replied there, or that nobody did.
struct PathStep {
  unsigned first = 0;  // how many hops from the sender; one number but for several without replies
  unsigned last = 0;
  std::optional<Hop> hop;
};

// Whether the replier is whom the linktrace was for.
bool IsTarget(const Hop& hop);

// Whether the path leads up to the target.
bool IsReached(const std::vector<PathStep>& path);

// The steps in the order of the path, whatever the order of the replies, up to the last reply.
// `ttl` is the linktrace's own; 0 when it is not known.
std::vector<PathStep> PathOf(std::vector<Hop> hops, std::uint8_t ttl);

}  // namespace cfm_agent

#endif
