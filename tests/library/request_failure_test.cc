// SPDX-License-Identifier: Apache-2.0
// The requests that leave no trace in the client, while memory runs out: nothing was sent.
#include "failure_configurations.h"
#include "failure_sweep.h"

namespace cfm_test {
namespace {

const char* const kLongMd = "a domain with a long enough name";
const char* const kLongMa = "an association with a long enough name";

// With the server in step, and without a server.
template <typename Run>
std::vector<Operation> Requests(Run run) {
  Operation request;
  request.before = ClientState::InStep(FirstConfiguration(), FirstProbes());
  request.run = Call(run);
  Operation to_nobody = request;
  to_nobody.before.in_step = false;
  to_nobody.before.server_present = false;
  return {request, to_nobody};
}

template <typename Run>
void ExpectCleanFailures(Run run) {
  for (const Operation& request : Requests(run)) {
    FailEverything(request);
  }
}

template <typename Trigger>
Trigger Filled() {
  Trigger trigger;
  trigger.request_id = 5;
  trigger.md_name = kLongMd;
  trigger.ma_name = kLongMa;
  trigger.mep_id = 6;
  trigger.remote_mep_id = 7;
  return trigger;
}

TEST(RequestFailure, AClearOfStatisticsFailsCleanly) {
  ExpectCleanFailures([](auto& client) { client.ClearStatistics(kLongMd, kLongMa, 9); });
}

TEST(RequestFailure, AClearOfAllStatisticsTakesNoMemory) {
  for (const Operation& request :
       Requests([](auto& client) { client.ClearStatistics(nullptr, nullptr, 9); })) {
    EXPECT_EQ(FailEachAllocation(request), 0U);
    EXPECT_EQ(FailEachCallOut(request), 1U);
  }
}

TEST(RequestFailure, ALinktraceFailsCleanly) {
  const auto trigger = Filled<cfm::linktrace_trigger>();
  ExpectCleanFailures([&](auto& client) { client.LinktraceTrigger(trigger); });
}

TEST(RequestFailure, ALoopbackFailsCleanly) {
  const auto trigger = Filled<cfm::loopback_trigger>();
  ExpectCleanFailures([&](auto& client) { client.LoopbackTrigger(trigger); });
}

TEST(RequestFailure, ADelayMeasurementFailsCleanly) {
  const auto trigger = Filled<cfm::delay_measurement_trigger>();
  ExpectCleanFailures([&](auto& client) { client.DelayMeasurementTrigger(trigger); });
}

}  // namespace
}  // namespace cfm_test
