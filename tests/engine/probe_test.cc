// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "line.h"
#include "pdu/delay.h"

namespace cfm_mgr::engine {
namespace {

using pdu::Opcode;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::uint32_t kProbe = 5;

/** A probe of MEP 1 against MEP 2 with a session 1 of three DMMs, 100 ms apart. */
Probe SampleProbe(std::uint32_t interval) {
  Probe probe;
  probe.settings = {"D1", "A1", interval, 1, 2};
  probe.sessions[1] = {100, 3, 64, 4};
  return probe;
}

/** From the start of a run of that session to its end. */
constexpr Time kRunTime = milliseconds(200) + seconds(5);

class ProbeTest : public ::testing::Test {
 protected:
  ProbeTest() { line_.Settle(); }

  void Set(const Probe& probe) { line_.engine().SetProbe(line_.network.now(), kProbe, probe); }
  void Remove() { line_.engine().RemoveProbe(line_.network.now(), kProbe); }
  const std::vector<SessionResult>& Results() { return line_.First().tests.sessions; }
  std::size_t DmmsSent() { return SentBy(line_.First(), Opcode::Dmm).size(); }

  Line line_{2};
};

TEST_F(ProbeTest, RunsItsSessionAgainAndAgain) {
  const Time start = line_.network.now();
  Set(SampleProbe(30));
  line_.network.Run(minutes(5));
  ASSERT_THAT(Results(), SizeIs(10));
  for (std::size_t i = 0; i < 10; ++i) {
    const SessionResult& result = Results()[i];
    EXPECT_EQ(kProbe, result.probe_id);
    EXPECT_EQ(1U, result.session_id);
    EXPECT_EQ(SessionEnd::Complete, result.end);
    EXPECT_EQ(i + 1, result.run);
    EXPECT_EQ(start + i * seconds(30), result.start);
    EXPECT_EQ(result.start + kRunTime, result.finish);
    EXPECT_EQ(3U, result.delay.sent);
    EXPECT_EQ(3U, result.delay.received);
  }
}

TEST_F(ProbeTest, MeasuresInEveryRunAnew) {
  line_.network.SetLinkRule([this](const Frame& frame) -> std::optional<Time> {
    if (frame.pdu[1] != 47) return Time{};
    return line_.network.now() < seconds(20) ? microseconds(30) : microseconds(70);
  });
  Set(SampleProbe(30));
  line_.network.Run(minutes(1));
  ASSERT_THAT(Results(), SizeIs(2));
  EXPECT_EQ(microseconds(30), Results()[0].delay.delay.max);
  EXPECT_EQ(microseconds(70), Results()[1].delay.delay.min);
}

TEST_F(ProbeTest, RunsBackToBackWithAnIntervalOfZero) {
  Set(SampleProbe(0));
  line_.network.Run(3 * kRunTime);
  ASSERT_THAT(Results(), SizeIs(3));
  EXPECT_EQ(Results()[0].finish, Results()[1].start);
  EXPECT_EQ(Results()[1].finish, Results()[2].start);
}

TEST_F(ProbeTest, DelaysARunUntilTheLastOneHasEnded) {
  Set(SampleProbe(2));
  line_.network.Run(2 * kRunTime);
  ASSERT_THAT(Results(), SizeIs(2));
  EXPECT_EQ(Results()[0].finish, Results()[1].start);
}

TEST_F(ProbeTest, NotifiesNoSingleReplies) {
  Set(SampleProbe(30));
  line_.network.Run(seconds(10));
  EXPECT_THAT(line_.First().tests.delay_replies, IsEmpty());
  EXPECT_THAT(line_.First().tests.delay_ends, IsEmpty());
}

TEST_F(ProbeTest, RunsAllItsSessionsEachInItsOwnWay) {
  Probe probe = SampleProbe(60);
  probe.sessions[2] = {50, 7, 300, 2};
  probe.sessions[3] = {100, 3, 64, 4};
  Set(probe);
  line_.network.Run(seconds(10));
  ASSERT_THAT(Results(), SizeIs(3));
  std::map<std::uint32_t, std::uint64_t> received;
  for (const SessionResult& result : Results()) {
    received[result.session_id] = result.delay.received;
    EXPECT_EQ(0U, result.delay.rejected);
  }
  EXPECT_EQ((std::map<std::uint32_t, std::uint64_t>{{1, 3}, {2, 7}, {3, 3}}), received);
  std::size_t large = 0;
  for (const SentFrame& sent : SentBy(line_.First(), Opcode::Dmm)) {
    if (sent.frame.pdu.size() != 286) continue;
    ++large;
    EXPECT_EQ(2, sent.frame.tags.at(0).pcp);
  }
  EXPECT_EQ(7U, large);
}

TEST_F(ProbeTest, HasDefaultsAndKeepsWithinTheRanges) {
  Probe probe = SampleProbe(60);
  probe.sessions[1] = {0, 0, 0, 99};
  probe.sessions[2] = {1, 2, 5, 0};
  Set(probe);
  line_.network.Run(seconds(10));
  const auto dmms = SentBy(line_.First(), Opcode::Dmm);
  ASSERT_THAT(dmms, SizeIs(12));
  for (const SentFrame& dmm : dmms) EXPECT_EQ(50U, dmm.frame.pdu.size());
  EXPECT_EQ(7, dmms[0].frame.tags.at(0).pcp);
  ASSERT_THAT(Results(), SizeIs(2));
  EXPECT_EQ(Results()[0].start + milliseconds(10) + seconds(5), Results()[0].finish);
  EXPECT_EQ(Results()[1].start + milliseconds(900) + seconds(5), Results()[1].finish);
}

TEST_F(ProbeTest, WaitsForTheAddressOfTheRemoteMep) {
  Line line(2);
  line.engine().SetProbe(Time{}, kProbe, SampleProbe(30));
  line.network.SetLinkRule([&line](const Frame&) -> std::optional<Time> {
    if (line.network.now() < seconds(10)) return std::nullopt;
    return Time{};
  });
  line.network.Run(seconds(20));
  const auto& results = line.First().tests.sessions;
  ASSERT_THAT(results, SizeIs(1));
  EXPECT_EQ(1U, results[0].run);
  EXPECT_GE(results[0].start, seconds(10));
  EXPECT_LE(results[0].start, seconds(12));
}

TEST_F(ProbeTest, ReportsARunThatItsMepLeft) {
  Set(SampleProbe(10));
  line_.network.Run(milliseconds(150));
  const Time left = line_.network.now();
  line_.engine().RemoveAssociation(left, SampleMa());
  ASSERT_THAT(Results(), SizeIs(1));
  EXPECT_EQ(SessionEnd::MepRemoved, Results()[0].end);
  EXPECT_EQ(left, Results()[0].finish);
  EXPECT_EQ(2U, Results()[0].delay.sent);
  EXPECT_EQ(2U, Results()[0].delay.received);
}

TEST_F(ProbeTest, GoesOnWhenItsMepIsBack) {
  Set(SampleProbe(10));
  line_.engine().RemoveAssociation(line_.network.now(), SampleMa());
  line_.network.Run(minutes(1));
  EXPECT_THAT(Results(), IsEmpty()) << "no run had begun";
  line_.Configure(0, SampleDomain(), line_.AssociationOf(0));
  line_.network.Run(seconds(10));
  ASSERT_THAT(Results(), SizeIs(1));
  EXPECT_EQ(SessionEnd::Complete, Results()[0].end);
  EXPECT_EQ(1U, Results()[0].run);
}

TEST_F(ProbeTest, ReportsARunThatIsRemoved) {
  Set(SampleProbe(10));
  line_.network.Run(milliseconds(50));
  Remove();
  ASSERT_THAT(Results(), SizeIs(1));
  EXPECT_EQ(SessionEnd::Removed, Results()[0].end);
  EXPECT_EQ(1U, Results()[0].delay.sent);
  line_.network.Run(minutes(1));
  EXPECT_EQ(1U, DmmsSent());
  EXPECT_THAT(Results(), SizeIs(1));
}

TEST_F(ProbeTest, ReportsNothingWhenItIsRemovedBetweenRuns) {
  Set(SampleProbe(10));
  line_.network.Run(seconds(6));
  ASSERT_THAT(Results(), SizeIs(1));
  Remove();
  line_.network.Run(minutes(1));
  EXPECT_THAT(Results(), SizeIs(1));
}

TEST_F(ProbeTest, GoesOnWhenItIsSetAgainAsItWas) {
  Set(SampleProbe(10));
  line_.network.Run(milliseconds(50));
  Set(SampleProbe(10));
  line_.network.Run(seconds(6));
  ASSERT_THAT(Results(), SizeIs(1));
  EXPECT_EQ(SessionEnd::Complete, Results()[0].end);
  EXPECT_EQ(3U, DmmsSent());
}

TEST_F(ProbeTest, BeginsASessionAnewThatChangesAndLeavesTheOthersAlone) {
  Probe probe = SampleProbe(10);
  probe.sessions[2] = probe.sessions[1];
  Set(probe);
  line_.network.Run(milliseconds(50));
  probe.sessions[2].count = 4;
  Set(probe);
  ASSERT_THAT(Results(), SizeIs(1));
  EXPECT_EQ(2U, Results()[0].session_id);
  EXPECT_EQ(SessionEnd::Removed, Results()[0].end);
  line_.network.Run(seconds(6));
  ASSERT_THAT(Results(), SizeIs(3));
  EXPECT_EQ(1U, Results()[1].session_id);
  EXPECT_EQ(3U, Results()[1].delay.received);
  EXPECT_EQ(2U, Results()[2].session_id);
  EXPECT_EQ(4U, Results()[2].delay.received);
  EXPECT_EQ(1U, Results()[2].run);
}

TEST_F(ProbeTest, BeginsAllSessionsAnewWhenItsOwnSettingsChange) {
  Probe probe = SampleProbe(10);
  probe.sessions[2] = probe.sessions[1];
  Set(probe);
  line_.network.Run(milliseconds(50));
  probe.settings.interval = 20;
  Set(probe);
  ASSERT_THAT(Results(), SizeIs(2));
  EXPECT_EQ(SessionEnd::Removed, Results()[0].end);
  EXPECT_EQ(SessionEnd::Removed, Results()[1].end);
  line_.network.Run(seconds(6));
  EXPECT_THAT(Results(), SizeIs(4));
}

TEST_F(ProbeTest, EndsASessionThatIsNotThereAnyMore) {
  Probe probe = SampleProbe(10);
  Set(probe);
  line_.network.Run(milliseconds(50));
  probe.sessions.clear();
  Set(probe);
  ASSERT_THAT(Results(), SizeIs(1));
  EXPECT_EQ(SessionEnd::Removed, Results()[0].end);
}

TEST_F(ProbeTest, DoesNotHinderTestsOnDemand) {
  Probe probe = SampleProbe(0);
  for (std::uint32_t id = 1; id <= 20; ++id) probe.sessions[id] = probe.sessions[1];
  Set(probe);
  line_.network.Run(Time{});
  EXPECT_FALSE(line_.engine().StartDelayMeasurement(line_.network.now(), line_.Delay(1)).error);
  line_.network.Run(seconds(6));
  ASSERT_THAT(line_.First().tests.delay_ends, SizeIs(1));
  EXPECT_EQ(3U, line_.First().tests.delay_ends[0].result.received);
  EXPECT_THAT(Results(), SizeIs(20));
}

}  // namespace
}  // namespace cfm_mgr::engine
