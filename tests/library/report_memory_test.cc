// SPDX-License-Identifier: Apache-2.0
// What it takes to read what the server sends: a report finds the memory of the one before it, but
// long ones, lists, and those for which memory ran out leave nothing behind.
#include <cfm/identifiers.h>

#include <new>
#include <set>

#include "failing_allocator.h"
#include "failure_configurations.h"
#include "failure_sweep.h"
#include "sample_reports.h"

namespace cfm_test {
namespace {

// A field that nobody knows, too long to be kept inside a std::string.
const std::string kLongUnknownField = "\xc2\x3e\x20" + std::string(32, 'x');

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

std::vector<Report> AllReportsBut(const std::set<std::string>& others) {
  std::vector<Report> reports;
  for (const Report& report : AllReports()) {
    if (others.count(report.name) == 0) {
      reports.push_back(report);
    }
  }
  return reports;
}

const auto kName = [](const auto& report) { return report.param.name; };

// Without those with lists, and those from which something is made that takes memory of its own.
INSTANTIATE_TEST_SUITE_P(Reports, ShortReport,
                         testing::ValuesIn(AllReportsBut({"CACHE_REPLY", "STATS_REPLY",
                                                          "LT_TRIGGER_ERROR",
                                                          "LINKTRACE_REPLY_RX"})),
                         kName);

class UnreadReport : public ReportMemory, public testing::WithParamInterface<Report> {};

// The empty report before each failure leaves a message to read into.
TEST_P(UnreadReport, LeavesNothingForTheNext) {
  const Report& report = GetParam();
  report.Deliver(world.host, "");
  const auto empty = world.host.Take();
  bool failed = true;
  for (std::size_t index = 0; failed; ++index) {
    SCOPED_TRACE(index);
    {
      const FailingAllocation failing(index);
      try {
        report.Deliver(world.host, report.bytes + kLongUnknownField);
      } catch (const std::bad_alloc&) {
      }
      failed = failing.happened();
    }
    world.host.Take();
    report.Deliver(world.host, "");
    EXPECT_EQ(world.host.Take(), empty);
    EXPECT_TRUE(failed || index > 0);
  }
}

// The cache reply changes what the client does next.
INSTANTIATE_TEST_SUITE_P(Reports, UnreadReport, testing::ValuesIn(AllReportsBut({"CACHE_REPLY"})),
                         kName);

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

// Each of these has a long name in another entry.
TEST_F(ReportMemory, OfListsIsGivenBack) {
  const std::string name(1000, 'n');
  const std::size_t held = HeldByLibrary().bytes;
  client_server::OpReplyAllStats statistics;
  client_server::OpCacheSync cache;
  for (int i = 0; i < 100; ++i) {
    const auto deliver = [&] {
      world.host.Signal(CFM_MGR_S2C_SIG_STATS_REPLY, statistics.SerializeAsString());
      world.host.Signal(CFM_MGR_S2C_SIG_CACHE_REPLY, cache.SerializeAsString());
    };
    auto& local = *statistics.add_local_mep_stats();
    auto& remote = *statistics.add_remote_mep_stats();
    auto& domain = *cache.add_mds();
    local.set_md_name(name);
    remote.set_md_name(name);
    domain.set_md_name(name);
    deliver();
    local.clear_md_name();
    remote.clear_md_name();
    domain.clear_md_name();
  }
  EXPECT_EQ(HeldByLibrary().bytes, held);
}

}  // namespace
}  // namespace cfm_test
