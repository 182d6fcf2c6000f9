// SPDX-License-Identifier: Apache-2.0
// The server's cache reply while memory runs out, in each of its decisions. It fails as far as it
// has come: each decision stands or falls as a whole, the client is in step only once both are
// made, and what was to be sent counts as applied only once all of it was.
#include <cfm/identifiers.h>

#include "failure_configurations.h"
#include "failure_sweep.h"

namespace cfm_test {
namespace {

struct Sides {
  cfm::hierarchy client;
  cfm::hierarchy server;
  cfm::probe client_probes;
  cfm::probe server_probes;
};

Operation Reply(const ClientState& before, const Sides& sides, std::size_t cut = 0) {
  Operation reply;
  reply.before = before;
  const std::string whole = CacheOf(sides.server, sides.server_probes).SerializeAsString();
  const std::string payload = whole.substr(0, whole.size() - cut);
  reply.run = [payload](World& world) { world.host.Signal(CFM_MGR_S2C_SIG_CACHE_REPLY, payload); };
  reply.depends_on_step = false;

  ClientState state = before;
  if (!sides.server.mds.empty()) {
    state.applied = sides.server;
  }
  reply.stages.push_back({state, "log 10 ReqCacheReplyHierarchy:", "log 10 ReqCacheReplyProbe:"});
  state.applied_probes = sides.server_probes;
  reply.stages.push_back({state, "log 10 ReqCacheReplyProbe:", "log 10 ReqCacheReply:719"});
  state.in_step = true;
  reply.stages.push_back({state, "log 10 ReqCacheReply:719", "log 10 Apply:340"});
  state.applied = before.desired;
  reply.stages.push_back({state, "log 10 Apply:341", "log 10 ApplyDelayMeasurementProbe:620"});
  state.applied_probes = before.desired_probes;
  reply.stages.push_back({state, "log 10 ApplyDelayMeasurementProbe:621", "send 77 STATUS_GET"});
  return reply;
}

// To a client that has something to send as soon as it is in step.
Operation FirstReply(const Sides& sides) {
  ClientState before;
  before.applied = sides.client;
  before.applied_probes = sides.client_probes;
  before.desired = SecondConfiguration();
  before.desired_probes = SecondProbes();
  before.server_present = true;
  return Reply(before, sides);
}

TEST(CacheReplyFailure, WithoutConfigurationOnEitherSide) { FailEverything(FirstReply({})); }

TEST(CacheReplyFailure, WhenTheApplicationRestarted) {
  FailEverything(FirstReply({{}, FirstConfiguration(), {}, FirstProbes()}));
}

TEST(CacheReplyFailure, WhenTheServerRestarted) {
  FailEverything(FirstReply({FirstConfiguration(), {}, FirstProbes(), {}}));
}

TEST(CacheReplyFailure, WhenBothSidesHaveConfiguration) {
  FailEverything(
      FirstReply({OtherConfiguration(), FirstConfiguration(), OtherProbes(), FirstProbes()}));
}

TEST(CacheReplyFailure, WhenOnlyTheServersProbesAreThere) {
  FailEverything(FirstReply({FirstConfiguration(), {}, {}, FirstProbes()}));
}

TEST(CacheReplyFailure, WhenOnlyTheClientsProbesAreThere) {
  FailEverything(FirstReply({{}, FirstConfiguration(), FirstProbes(), {}}));
}

TEST(CacheReplyFailure, WhenTheClientIsInStepAlready) {
  const ClientState before = ClientState::InStep(SecondConfiguration(), SecondProbes());
  FailEverything(
      Reply(before, {before.applied, FirstConfiguration(), before.applied_probes, FirstProbes()}));
}

// The octet that is missing is of a number that is zero anyway.
TEST(CacheReplyFailure, WhenTheReplyIsCutOff) {
  const ClientState before = ClientState::InStep(SecondConfiguration(), SecondProbes());
  FailEverything(Reply(before, {{}, FirstConfiguration(), {}, FirstProbes()}, 1));
}

TEST(CacheReplyFailure, WhenThereIsNoServer) {
  Operation reply = FirstReply({FirstConfiguration(), OtherConfiguration(), {}, OtherProbes()});
  reply.before.server_present = false;
  for (Stage& stage : reply.stages) {
    stage.state.server_present = false;
  }
  FailEverything(reply);
}

}  // namespace
}  // namespace cfm_test
