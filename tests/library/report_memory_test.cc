// SPDX-License-Identifier: Apache-2.0
// What the library holds of a report once its callback has returned: nothing.
#include <new>

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

const auto kName = [](const auto& report) { return report.param.name; };

class HeldReport : public ReportMemory, public testing::WithParamInterface<Report> {};

TEST_P(HeldReport, IsReleasedWhenItsCallbackReturns) {
  const LibraryHeap held = HeldByLibrary();
  GetParam().Deliver(world.host, GetParam().bytes);
  EXPECT_EQ(HeldByLibrary().blocks, held.blocks);
  EXPECT_EQ(HeldByLibrary().bytes, held.bytes);
}

INSTANTIATE_TEST_SUITE_P(Reports, HeldReport, testing::ValuesIn(ReportsForHandlers()), kName);

class UnreadReport : public ReportMemory, public testing::WithParamInterface<Report> {};

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

INSTANTIATE_TEST_SUITE_P(Reports, UnreadReport, testing::ValuesIn(ReportsForHandlers()), kName);

}  // namespace
}  // namespace cfm_test
