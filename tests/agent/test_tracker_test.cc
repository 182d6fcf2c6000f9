// SPDX-License-Identifier: Apache-2.0
#include "core/test_tracker.h"

#include <gmock/gmock.h>

namespace cfm_agent {
namespace {

using std::chrono::seconds;
using ::testing::IsEmpty;

constexpr std::uint32_t kBase = 0x70000;
const MepKey kMep = {"d", "a", 1};
const MepKey kOtherMep = {"d", "a", 2};

TimePoint At(int time) { return TimePoint(seconds(time)); }

class TestTrackerTest : public ::testing::Test {
 protected:
  std::uint32_t Begin(TestKind kind, int time = 0) {
    return tracker_.Begin(kind, kMep, 9, At(time));
  }

  // The reasons for which tests ended, by their numbers.
  static std::vector<std::pair<std::uint32_t, EndReason>> Reasons(
      const std::vector<TestEnd>& ends) {
    std::vector<std::pair<std::uint32_t, EndReason>> reasons;
    reasons.reserve(ends.size());
    for (const TestEnd& end : ends) {
      reasons.emplace_back(end.test.number, end.reason);
    }
    return reasons;
  }
  using Ends = std::vector<std::pair<std::uint32_t, EndReason>>;

  TestTracker tracker_{kBase, seconds(10)};
};

TEST_F(TestTrackerTest, NumbersTestsAndGivesEachItsOwnRequestIdentifier) {
  EXPECT_TRUE(tracker_.Idle());
  EXPECT_EQ(Begin(TestKind::Loopback), kBase + 1);
  EXPECT_EQ(Begin(TestKind::Refresh), kBase + 2);
  EXPECT_EQ(Begin(TestKind::Delay), kBase + 3);
  EXPECT_EQ(Reasons(tracker_.Complete(TestKind::Delay, kBase + 3)),
            (Ends{{2, EndReason::Complete}}));
  EXPECT_FALSE(tracker_.Idle());
}

TEST_F(TestTrackerTest, CountsReplies) {
  const auto id = Begin(TestKind::Loopback);
  EXPECT_NE(tracker_.Started(TestKind::Loopback, id, At(1)), nullptr);
  tracker_.Replied(TestKind::Loopback, id, At(2));
  tracker_.Replied(TestKind::Loopback, id, At(3));
  const auto ends = tracker_.Complete(TestKind::Loopback, id);
  ASSERT_EQ(Reasons(ends), (Ends{{1, EndReason::Complete}}));
  EXPECT_EQ(ends[0].test.replies, 2U);
}

TEST_F(TestTrackerTest, EndsARefusedTestWithTheServersCode) {
  const auto ends = tracker_.Refused(TestKind::Delay, Begin(TestKind::Delay), 42);
  ASSERT_EQ(Reasons(ends), (Ends{{1, EndReason::Refused}}));
  EXPECT_EQ(Describe(ends[0]), "refused with error code 42");
  EXPECT_EQ(Describe(ends[0].test), "delay measurement 1 from MEP d a 1 to 9");
}

TEST_F(TestTrackerTest, EndsEachTestOnce) {
  const auto id = Begin(TestKind::Loopback);
  EXPECT_EQ(tracker_.Refused(TestKind::Loopback, id, 1).size(), 1U);
  EXPECT_THAT(tracker_.Refused(TestKind::Loopback, id, 1), IsEmpty());
  EXPECT_THAT(tracker_.Complete(TestKind::Loopback, id), IsEmpty());
  EXPECT_THAT(tracker_.LocalMepRemoved(kMep), IsEmpty());
  EXPECT_THAT(tracker_.ServerLost(), IsEmpty());
  EXPECT_THAT(tracker_.Expire(At(1000)), IsEmpty());
  EXPECT_EQ(tracker_.Started(TestKind::Loopback, id, At(1)), nullptr);
  EXPECT_TRUE(tracker_.Idle());
}

TEST_F(TestTrackerTest, HeedsNoReportsOfOtherClients) {
  const auto id = Begin(TestKind::Loopback);
  for (const std::uint32_t other : {id + 1, id - 1, 0U, 1U}) {
    EXPECT_EQ(tracker_.Started(TestKind::Loopback, other, At(1)), nullptr);
    EXPECT_THAT(tracker_.Complete(TestKind::Loopback, other), IsEmpty());
    EXPECT_THAT(tracker_.Refused(TestKind::Loopback, other, 1), IsEmpty());
  }
  EXPECT_FALSE(tracker_.Idle());
}

TEST_F(TestTrackerTest, HeedsNoReportsOfAnotherKind) {
  const auto id = Begin(TestKind::Loopback);
  EXPECT_EQ(tracker_.Started(TestKind::Delay, id, At(1)), nullptr);
  EXPECT_THAT(tracker_.Complete(TestKind::Delay, id), IsEmpty());
  EXPECT_THAT(tracker_.Refused(TestKind::Linktrace, id, 1), IsEmpty());
}

TEST_F(TestTrackerTest, TimesOutAfterSilence) {
  Begin(TestKind::Loopback);
  EXPECT_EQ(tracker_.Deadline(), At(10));
  EXPECT_THAT(tracker_.Expire(At(9)), IsEmpty());
  EXPECT_EQ(Reasons(tracker_.Expire(At(10))), (Ends{{1, EndReason::TimedOut}}));
  EXPECT_EQ(tracker_.Deadline(), std::nullopt);
}

TEST_F(TestTrackerTest, IsPatientAgainWithEveryReport) {
  const auto id = Begin(TestKind::Loopback);
  tracker_.Started(TestKind::Loopback, id, At(5));
  EXPECT_EQ(tracker_.Deadline(), At(15));
  tracker_.Replied(TestKind::Loopback, id, At(8));
  EXPECT_EQ(tracker_.Deadline(), At(18));
}

TEST_F(TestTrackerTest, WaitsForTheEarliestDeadline) {
  const auto id = Begin(TestKind::Loopback, 0);
  Begin(TestKind::Delay, 3);
  tracker_.Started(TestKind::Loopback, id, At(4));
  EXPECT_EQ(tracker_.Deadline(), At(13));
}

TEST_F(TestTrackerTest, EndsTestsOfARemovedEndpoint) {
  Begin(TestKind::Loopback);
  Begin(TestKind::Linktrace);
  tracker_.Begin(TestKind::Delay, kOtherMep, 9, At(0));
  Begin(TestKind::Statistics);
  EXPECT_EQ(Reasons(tracker_.LocalMepRemoved(kMep)),
            (Ends{{1, EndReason::EndpointRemoved}, {2, EndReason::EndpointRemoved}}));
}

TEST_F(TestTrackerTest, EndsTestsTowardsARemovedRemote) {
  Begin(TestKind::Loopback);
  EXPECT_THAT(tracker_.RemoteMepRemoved(kMep, 8), IsEmpty());
  EXPECT_THAT(tracker_.RemoteMepRemoved(kOtherMep, 9), IsEmpty());
  EXPECT_EQ(Reasons(tracker_.RemoteMepRemoved(kMep, 9)), (Ends{{1, EndReason::EndpointRemoved}}));
}

TEST_F(TestTrackerTest, EndsEverythingWithTheServer) {
  Begin(TestKind::Loopback);
  Begin(TestKind::Statistics);
  EXPECT_EQ(Reasons(tracker_.ServerLost()),
            (Ends{{1, EndReason::ServerLost}, {2, EndReason::ServerLost}}));
}

TEST_F(TestTrackerTest, FollowsALinktraceByItsTransaction) {
  Begin(TestKind::Linktrace);
  EXPECT_EQ(tracker_.LinktraceReplied(kMep, 77, At(1)), nullptr);
  EXPECT_NE(tracker_.LinktraceStarted(kMep, 9, 77, At(1)), nullptr);
  EXPECT_NE(tracker_.LinktraceReplied(kMep, 77, At(2)), nullptr);
  EXPECT_EQ(tracker_.LinktraceReplied(kMep, 78, At(2)), nullptr);
  EXPECT_EQ(tracker_.LinktraceReplied(kOtherMep, 77, At(2)), nullptr);
  EXPECT_THAT(tracker_.LinktraceComplete(kMep, 78), IsEmpty());
  const auto ends = tracker_.LinktraceComplete(kMep, 77);
  ASSERT_EQ(Reasons(ends), (Ends{{1, EndReason::Complete}}));
  EXPECT_EQ(ends[0].test.replies, 1U);
}

TEST_F(TestTrackerTest, TakesLinktracesBetweenTheSameEndsInTheirOrder) {
  Begin(TestKind::Linktrace);
  Begin(TestKind::Linktrace);
  EXPECT_EQ(tracker_.LinktraceStarted(kMep, 8, 70, At(1)), nullptr);
  EXPECT_EQ(tracker_.LinktraceStarted(kMep, 9, 71, At(1))->number, 1U);
  EXPECT_EQ(tracker_.LinktraceStarted(kMep, 9, 72, At(1))->number, 2U);
  EXPECT_EQ(tracker_.LinktraceStarted(kMep, 9, 73, At(1)), nullptr);
  EXPECT_EQ(Reasons(tracker_.LinktraceComplete(kMep, 72)), (Ends{{2, EndReason::Complete}}));
}

TEST_F(TestTrackerTest, TakesStatisticsInTheOrderTheyWereAskedFor) {
  EXPECT_EQ(tracker_.StatisticsArrived(At(0)), nullptr);
  Begin(TestKind::Refresh);
  Begin(TestKind::Statistics);
  EXPECT_EQ(tracker_.StatisticsArrived(At(1))->kind, TestKind::Refresh);
  EXPECT_EQ(tracker_.StatisticsComplete()[0].test.kind, TestKind::Refresh);
  EXPECT_EQ(tracker_.StatisticsComplete()[0].test.kind, TestKind::Statistics);
  EXPECT_THAT(tracker_.StatisticsComplete(), IsEmpty());
}

TEST(TestEndText, NamesEveryReason) {
  const auto text = [](EndReason reason) { return Describe(TestEnd{{}, reason, 3}); };
  EXPECT_EQ(text(EndReason::Complete), "complete");
  EXPECT_EQ(text(EndReason::Refused),
            "refused with error code 3 (the server does not run this test)");
  EXPECT_EQ(text(EndReason::TimedOut), "timed out");
  EXPECT_EQ(text(EndReason::EndpointRemoved), "endpoint removed");
  EXPECT_EQ(text(EndReason::ServerLost), "server lost");
}

}  // namespace
}  // namespace cfm_agent
