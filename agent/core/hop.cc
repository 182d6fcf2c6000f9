// SPDX-License-Identifier: Apache-2.0
#include "core/hop.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace cfm_agent {
namespace {

constexpr std::int32_t kRelayHit = 1;

std::optional<cfm::LtrReplyPort> PortOf(const std::unique_ptr<cfm::LtrReplyPort>& port) {
  return port ? std::optional(*port) : std::nullopt;
}

}  // namespace

Hop HopOf(const cfm::LinktraceReplyEntry& reply) {
  Hop hop;
  hop.from = reply.source_mac;
  hop.ttl = reply.ttl;
  hop.relay_action = reply.relay_action;
  hop.terminal_mep = reply.terminal_mep;
  hop.forwarded = reply.forwarded;
  hop.use_fdb_only = reply.use_fdb_only;
  hop.vlan = reply.vlan;
  hop.priority = reply.priority;
  if (reply.egress_id) {
    hop.last_mac = reply.egress_id->last_mac;
    hop.next_mac = reply.egress_id->next_mac;
  }
  hop.ingress = PortOf(reply.reply_ingress);
  hop.egress = PortOf(reply.reply_egress);
  return hop;
}

bool IsTarget(const Hop& hop) { return hop.terminal_mep || hop.relay_action == kRelayHit; }

bool IsReached(const std::vector<PathStep>& path) {
  return std::any_of(path.begin(), path.end(),
                     [](const PathStep& step) { return step.hop && IsTarget(*step.hop); });
}

std::vector<PathStep> PathOf(std::vector<Hop> hops, std::uint8_t ttl) {
  // Those of the same hop stay as they came.
  std::stable_sort(hops.begin(), hops.end(),
                   [](const Hop& a, const Hop& b) { return a.ttl > b.ttl; });
  std::vector<PathStep> path;
  // A reply with more than what was sent says that the server took another one.
  const bool known = ttl != 0 && !hops.empty() && hops.front().ttl < ttl;
  const unsigned sent = hops.empty() ? 0 : known ? ttl : hops.front().ttl + 1U;
  unsigned done = 0;
  for (Hop& hop : hops) {
    const unsigned number = sent - hop.ttl;
    if (number > done + 1) {
      path.push_back({done + 1, number - 1, std::nullopt});
    }
    path.push_back({number, number, std::move(hop)});
    done = number;
  }
  return path;
}

}  // namespace cfm_agent
