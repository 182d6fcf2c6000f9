// SPDX-License-Identifier: Apache-2.0
// Configurations while memory runs out: a call that fails leaves the configuration that was desired
// before or the new one, and what was applied before counts as applied until all was sent.
#include "failure_configurations.h"
#include "failure_sweep.h"

namespace cfm_test {
namespace {

Operation UpdateTo(const ClientState& before, const cfm::hierarchy& config) {
  Operation update;
  update.before = before;
  update.run = Call([config](cfm::Client& client) { client.UpdateConfig(config); });
  ClientState stored = before;
  stored.desired = config;
  update.stages = {{stored, before.in_step ? "" : "log 10 UpdateConfig:", "log 10 Apply:"}};
  return update;
}

Operation UpdateTo(const ClientState& before, const cfm::probe& probes) {
  Operation update;
  update.before = before;
  update.run = Call([probes](cfm::Client& client) { client.UpdateConfigProbe(probes); });
  ClientState stored = before;
  stored.desired_probes = probes;
  update.stages = {{stored, before.in_step ? "" : "log 10 UpdateConfigProbe:",
                    "log 10 ApplyDelayMeasurementProbe:"}};
  return update;
}

ClientState Waiting(bool server_present) {
  ClientState state = ClientState::InStep(OtherConfiguration(), OtherProbes());
  state.in_step = false;
  state.server_present = server_present;
  state.desired = FirstConfiguration();
  state.desired_probes = FirstProbes();
  return state;
}

TEST(ConfigurationFailure, CreatingEverythingFailsCleanly) {
  FailEverything(UpdateTo(ClientState::InStep({}, {}), FirstConfiguration()));
}

TEST(ConfigurationFailure, UpdatingEverythingFailsCleanly) {
  FailEverything(
      UpdateTo(ClientState::InStep(FirstConfiguration(), FirstProbes()), FirstConfiguration()));
}

TEST(ConfigurationFailure, DeletingEverythingFailsCleanly) {
  FailEverything(
      UpdateTo(ClientState::InStep(FirstConfiguration(), FirstProbes()), cfm::hierarchy()));
}

TEST(ConfigurationFailure, ChangesOfEveryKindFailCleanly) {
  FailEverything(
      UpdateTo(ClientState::InStep(FirstConfiguration(), FirstProbes()), SecondConfiguration()));
}

TEST(ConfigurationFailure, AConfigurationThatWaitsIsReplacedWholeOrNotAtAll) {
  for (const bool server_present : {false, true}) {
    FailEverything(UpdateTo(Waiting(server_present), SecondConfiguration()));
  }
}

TEST(ProbeFailure, CreatingEverythingFailsCleanly) {
  FailEverything(UpdateTo(ClientState::InStep({}, {}), FirstProbes()));
}

TEST(ProbeFailure, SendingNothingNewFailsCleanly) {
  FailEverything(UpdateTo(ClientState::InStep(FirstConfiguration(), FirstProbes()), FirstProbes()));
}

TEST(ProbeFailure, DeletingEverythingFailsCleanly) {
  FailEverything(UpdateTo(ClientState::InStep(FirstConfiguration(), FirstProbes()), cfm::probe()));
}

TEST(ProbeFailure, ChangesOfEveryKindFailCleanly) {
  FailEverything(
      UpdateTo(ClientState::InStep(FirstConfiguration(), FirstProbes()), SecondProbes()));
}

TEST(ProbeFailure, ProbesThatWaitAreReplacedWholeOrNotAtAll) {
  for (const bool server_present : {false, true}) {
    FailEverything(UpdateTo(Waiting(server_present), SecondProbes()));
  }
}

}  // namespace
}  // namespace cfm_test
