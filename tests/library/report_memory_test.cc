// SPDX-License-Identifier: Apache-2.0
// What it takes to read what the server sends: a report finds the memory of the one before it, but
// a long one leaves nothing behind.
#include <cfm/identifiers.h>

#include <set>

#include "failing_allocator.h"
#include "failure_configurations.h"
#include "failure_sweep.h"
#include "sample_reports.h"

namespace cfm_test {
namespace {

class ReportMemory : public testing::Test {
 protected:
  World world{ClientState::InStep(FirstConfiguration(), FirstProbes())};
};

class ShortReport : public ReportMemory, public testing::WithParamInterface<Report> {};

TEST_P(ShortReport, IsReadIntoWhatTheOneBeforeItTook) {
  GetParam().Deliver(world.host, GetParam().bytes);
  const std::size_t held = HeldByLibrary().bytes;
  const FailingAllocation any_but_the_copy(1);
  GetParam().Deliver(world.host, GetParam().bytes);
  EXPECT_FALSE(any_but_the_copy.happened());
  EXPECT_EQ(HeldByLibrary().bytes, held);
}

// Those from which nothing is made that takes memory of its own.
std::vector<Report> ReportsOnly() {
  const std::set<std::string> others = {"CACHE_REPLY", "LT_TRIGGER_ERROR", "LINKTRACE_REPLY_RX"};
  std::vector<Report> reports;
  for (const Report& report : AllReports()) {
    if (others.count(report.name) == 0) {
      reports.push_back(report);
    }
  }
  return reports;
}

INSTANTIATE_TEST_SUITE_P(Reports, ShortReport, testing::ValuesIn(ReportsOnly()),
                         [](const auto& report) { return report.param.name; });

TEST_F(ReportMemory, OfALongOneIsGivenBack) {
  constexpr std::size_t kMegabyte = 1U << 20U;
  const std::size_t held = HeldByLibrary().bytes;
  client_server::StatusRemoteMaintenanceEndpoint status = RemoteStatus();
  status.set_sender_id(std::string(kMegabyte, 's'));
  world.host.Event(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, status.SerializeAsString());
  client_server::OpReplyAllStats statistics;
  for (int i = 0; i < 1000; ++i) {
    statistics.MergeFrom(Statistics());
  }
  world.host.Signal(CFM_MGR_S2C_SIG_STATS_REPLY, statistics.SerializeAsString());
  EXPECT_EQ(HeldByLibrary().bytes, held);
}

}  // namespace
}  // namespace cfm_test
