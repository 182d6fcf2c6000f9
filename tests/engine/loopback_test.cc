// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/loopback_initiator.h"
#include "line.h"
#include "pdu/loopback.h"

namespace cfm_mgr::engine {
namespace {

using pdu::Opcode;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/** Two bridges, a link, a Down MEP at either end. */
class LoopbackTest : public ::testing::Test {
 protected:
  LoopbackTest() { line_.Settle(); }

  StartedTest Start(const LoopbackRequest& request) {
    return line_.engine().StartLoopback(line_.network.now(), request);
  }
  RecordedTests& tests() { return line_.First().tests; }
  const LoopbackResult& Result() { return tests().loopback_ends.at(0).result; }

  Line line_{2};
};

TEST_F(LoopbackTest, TellsTheAddressOfItsTarget) {
  const StartedTest started = Start(line_.Loopback(7));
  EXPECT_FALSE(started.error);
  EXPECT_EQ(line_.LastMepMac(), started.target);
}

TEST_F(LoopbackTest, NotifiesEveryReplyAndTheCountsAfterFiveSeconds) {
  const Time start = line_.network.now();
  Start(line_.Loopback(7, 3, 100));
  line_.network.Run(seconds(10));
  ASSERT_THAT(tests().loopback_replies, SizeIs(3));
  for (std::size_t i = 0; i < 3; ++i) {
    const RecordedTests::LoopbackReply& reply = tests().loopback_replies[i];
    EXPECT_EQ(7U, reply.request_id);
    EXPECT_EQ(line_.LastMepMac(), reply.source);
    EXPECT_EQ(tests().loopback_replies[0].transaction_id + i, reply.transaction_id);
  }
  ASSERT_THAT(tests().loopback_ends, SizeIs(1));
  EXPECT_EQ(7U, tests().loopback_ends[0].request_id);
  EXPECT_EQ(start + 2 * LoopbackInitiator::kPace + seconds(5), tests().loopback_ends[0].time);
  EXPECT_EQ(3U, Result().expected);
  EXPECT_EQ(3U, Result().in_order);
  EXPECT_EQ(0U, Result().out_of_order + Result().wrong_payload);
}

TEST_F(LoopbackTest, SendsOneLbmUnlessAskedForMore) {
  Start(line_.Loopback(7, 0));
  line_.network.Run(seconds(10));
  EXPECT_EQ(1U, Result().expected);
}

TEST_F(LoopbackTest, SendsItsLbmsWithTheTagsOfTheMep) {
  Start(line_.Loopback(7, 1, 20));
  const auto lbms = SentBy(line_.First(), Opcode::Lbm);
  ASSERT_THAT(lbms, SizeIs(1));
  const Frame& frame = lbms[0].frame;
  EXPECT_EQ(kRight, lbms[0].port);
  EXPECT_EQ(Side::Wire, lbms[0].side);
  EXPECT_EQ(line_.FirstMepMac(), frame.source);
  EXPECT_EQ(line_.LastMepMac(), frame.destination);
  ASSERT_THAT(frame.tags, SizeIs(1));
  EXPECT_EQ(100, frame.tags[0].vid);
  EXPECT_EQ(6, frame.tags[0].pcp);
  EXPECT_EQ(3, pdu::DecodeLbm(frame.pdu)->level);
  EXPECT_EQ(20U, pdu::DecodeLbm(frame.pdu)->data->size());
}

TEST_F(LoopbackTest, CountsWhatIsLost) {
  int seen = 0;
  line_.network.SetLinkRule([&seen](const Frame& frame) -> std::optional<Time> {
    const bool lost = frame.pdu[1] == 3 && ++seen == 2;
    return lost ? std::nullopt : std::optional<Time>(Time{});
  });
  Start(line_.Loopback(7, 4));
  line_.network.Run(seconds(10));
  EXPECT_EQ(4U, Result().expected);
  EXPECT_EQ(2U, Result().in_order);
  EXPECT_EQ(1U, Result().out_of_order);
}

TEST_F(LoopbackTest, SeesThatRepliesOvertakeEachOther) {
  int seen = 0;
  line_.network.SetLinkRule([&seen](const Frame& frame) -> std::optional<Time> {
    if (frame.pdu[1] != 2) return Time{};
    return ++seen == 1 ? milliseconds(150) : Time{};
  });
  Start(line_.Loopback(7, 3));
  line_.network.Run(seconds(10));
  // Second, first, third: none of them follows the one before it.
  EXPECT_EQ(0U, Result().in_order);
  EXPECT_EQ(3U, Result().out_of_order);
}

TEST_F(LoopbackTest, CountsAReplyWithOtherDataAsWrongPayload) {
  line_.network.SetLinkRule([](const Frame& frame) -> std::optional<Time> {
    return frame.pdu[1] == 2 ? std::nullopt : std::optional<Time>(Time{});
  });
  Start(line_.Loopback(7, 1, 30));
  line_.network.Run(Time{});
  Frame reply = SentBy(line_.Last(), Opcode::Lbr).at(0).frame;
  reply.pdu[20] ^= 0xffU;
  line_.First().Receive(kRight, Side::Wire, reply);
  line_.network.Run(seconds(6));
  EXPECT_EQ(1U, Result().wrong_payload);
  EXPECT_EQ(0U, Result().in_order);
  EXPECT_THAT(tests().loopback_replies, SizeIs(1));
}

TEST_F(LoopbackTest, CountsRepliesToNoTest) {
  Start(line_.Loopback(7, 1));
  line_.network.Run(seconds(6));
  const Frame reply = SentBy(line_.Last(), Opcode::Lbr).at(0).frame;
  EXPECT_EQ(0U, line_.engine().DropsAt(kRight).unexpected);
  line_.First().Receive(kRight, Side::Wire, reply);
  EXPECT_EQ(1U, line_.engine().DropsAt(kRight).unexpected);
  EXPECT_THAT(tests().loopback_replies, SizeIs(1));
}

TEST_F(LoopbackTest, CountsRequestsAndRepliesToOtherStations) {
  Start(line_.Loopback(7, 1));
  line_.network.Run(Time{});
  Frame reply = SentBy(line_.Last(), Opcode::Lbr).at(0).frame;
  reply.destination[5] ^= 0x40U;
  line_.First().Receive(kRight, Side::Wire, reply);
  EXPECT_THAT(tests().loopback_replies, SizeIs(1));
  EXPECT_EQ(1U, line_.engine().DropsAt(kRight).unexpected);
  Frame request = SentBy(line_.First(), Opcode::Lbm).at(0).frame;
  request.destination[5] ^= 0x40U;
  line_.Last().Receive(kLeft, Side::Wire, request);
  EXPECT_THAT(SentBy(line_.Last(), Opcode::Lbr), SizeIs(1));
  EXPECT_EQ(1U, line_.Last().engine().DropsAt(kLeft).unexpected);
}

TEST_F(LoopbackTest, CountsMalformedRequestsAndReplies) {
  Start(line_.Loopback(7, 1));
  line_.network.Run(Time{});
  Frame lbm = SentBy(line_.First(), Opcode::Lbm).at(0).frame;
  Frame lbr = SentBy(line_.Last(), Opcode::Lbr).at(0).frame;
  lbm.pdu.pop_back();
  lbr.pdu.pop_back();
  line_.Last().Receive(kLeft, Side::Wire, lbm);
  line_.First().Receive(kRight, Side::Wire, lbr);
  EXPECT_EQ(1U, line_.Last().engine().DropsAt(kLeft).malformed());
  EXPECT_EQ(1U, line_.engine().DropsAt(kRight).malformed());
  EXPECT_THAT(SentBy(line_.Last(), Opcode::Lbr), SizeIs(1));
}

TEST_F(LoopbackTest, EndsWhenTheMepIsRemoved) {
  Start(line_.Loopback(7, 5));
  line_.network.Run(milliseconds(150));
  const Time removed = line_.network.now();
  line_.engine().RemoveAssociation(removed, SampleMa());
  ASSERT_THAT(tests().loopback_ends, SizeIs(1));
  EXPECT_EQ(removed, tests().loopback_ends[0].time);
  EXPECT_EQ(2U, Result().expected);
  EXPECT_EQ(2U, Result().in_order);
  line_.network.Run(seconds(10));
  EXPECT_THAT(SentBy(line_.First(), Opcode::Lbm), SizeIs(2));
  EXPECT_THAT(tests().loopback_ends, SizeIs(1));
}

TEST_F(LoopbackTest, EndsWhenTheMepIsNotActiveAnyMoreOrItsPortGoes) {
  Start(line_.Loopback(7, 5));
  Association inactive = line_.AssociationOf(0);
  inactive.meps[1].admin_state = false;
  line_.Configure(0, SampleDomain(), inactive);
  EXPECT_THAT(tests().loopback_ends, SizeIs(1));

  line_.Configure(0, SampleDomain(), line_.AssociationOf(0));
  line_.Settle();
  Start(line_.Loopback(8, 5));
  line_.engine().RemovePort(line_.network.now(), kRight);
  EXPECT_THAT(tests().loopback_ends, SizeIs(2));
}

TEST_F(LoopbackTest, GoesOnWhenSettingsChangeThatLeaveTheMepWhereItIs) {
  Start(line_.Loopback(7, 3));
  Association changed = line_.AssociationOf(0);
  changed.meps[1].ccm_priority = 2;
  line_.Configure(0, SampleDomain(), changed);
  EXPECT_THAT(tests().loopback_ends, IsEmpty());
  line_.network.Run(seconds(6));
  EXPECT_EQ(3U, Result().in_order);
}

struct Refusal {
  const char* what;
  LoopbackRequest request;
  TriggerError error;
};

TEST_F(LoopbackTest, IsRefusedWithTheReason) {
  const MepKey mep = SampleKey(1);
  const Refusal cases[] = {
      {"no such MEP", {1, SampleKey(9), 2, 1, 0}, TriggerError::UnknownMep},
      {"no such association", {1, {{"D1", "A2"}, 1}, 2, 1, 0}, TriggerError::UnknownMep},
      {"no such remote MEP", {1, mep, 3, 1, 0}, TriggerError::UnknownRemoteMep},
      {"itself", {1, mep, 1, 1, 0}, TriggerError::UnknownRemoteMep},
      {"too many LBMs", {1, mep, 2, 1025, 0}, TriggerError::BadParameter},
      {"too many data", {1, mep, 2, 1, 1481}, TriggerError::BadParameter},
  };
  for (const Refusal& c : cases) EXPECT_EQ(c.error, Start(c.request).error) << c.what;
  line_.network.Run(seconds(10));
  EXPECT_THAT(tests().loopback_ends, IsEmpty());
  EXPECT_THAT(SentBy(line_.First(), Opcode::Lbm), IsEmpty());
}

TEST_F(LoopbackTest, IsRefusedWithoutARunningMepOrAnAddress) {
  Association inactive = line_.AssociationOf(0);
  inactive.meps[1].admin_state = false;
  line_.Configure(0, SampleDomain(), inactive);
  EXPECT_EQ(TriggerError::NotActive, Start(line_.Loopback(7)).error);
  line_.Configure(0, SampleDomain(), line_.AssociationOf(0));
  EXPECT_EQ(TriggerError::UnknownAddress, Start(line_.Loopback(7)).error);
  line_.Settle();
  EXPECT_FALSE(Start(line_.Loopback(7)).error);
}

TEST_F(LoopbackTest, IsRefusedWhileTheMepRunsEightOthers) {
  for (std::uint32_t id = 0; id < 8; ++id) EXPECT_FALSE(Start(line_.Loopback(id)).error);
  EXPECT_EQ(TriggerError::TooMany, Start(line_.Loopback(8)).error);
  line_.network.Run(seconds(10));
  ASSERT_THAT(tests().loopback_ends, SizeIs(8));
  for (const auto& end : tests().loopback_ends) EXPECT_EQ(3U, end.result.in_order);
  EXPECT_FALSE(Start(line_.Loopback(8)).error);
}

TEST(LoopbackThroughBridges, ReachesAnUpMepBehindOthers) {
  Line line(4, Ends::Up);
  line.Settle();
  line.engine().StartLoopback(line.network.now(), line.Loopback(1, 5, 1480));
  line.network.Run(seconds(6));
  ASSERT_THAT(line.First().tests.loopback_ends, SizeIs(1));
  EXPECT_EQ(5U, line.First().tests.loopback_ends[0].result.in_order);
}

TEST(LoopbackThroughBridges, WorksInsideTwoTags) {
  Line line(2);
  for (const std::size_t end : {0U, 1U}) {
    Association association = line.AssociationOf(end);
    for (auto& entry : association.meps) entry.second.inner_vid = 7;
    line.Configure(end, SampleDomain(), association);
  }
  line.Settle();
  EXPECT_FALSE(line.engine().StartLoopback(line.network.now(), line.Loopback(1)).error);
  line.network.Run(seconds(6));
  EXPECT_EQ(3U, line.First().tests.loopback_ends.at(0).result.in_order);
  const Frame reply = SentBy(line.Last(), Opcode::Lbr).at(0).frame;
  ASSERT_THAT(reply.tags, SizeIs(2));
  EXPECT_EQ(0x88a8, reply.tags[0].tpid);
  EXPECT_EQ(7, reply.tags[1].vid);
}

}  // namespace
}  // namespace cfm_mgr::engine
