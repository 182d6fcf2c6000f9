// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/delay_initiator.h"
#include "line.h"
#include "pdu/delay.h"

namespace cfm_mgr::engine {
namespace {

using pdu::Opcode;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/** Two bridges, a link, a Down MEP at either end. */
class DelayMeasurementTest : public ::testing::Test {
 protected:
  DelayMeasurementTest() { line_.Settle(); }

  StartedTest Start(const DelayRequest& request) {
    return line_.engine().StartDelayMeasurement(line_.network.now(), request);
  }
  /** DMMs and DMRs take these times in turn, one after the other. */
  void SetDelays(std::vector<Time> there, std::vector<Time> back) {
    line_.network.SetLinkRule([there, back, sent = std::size_t{0}, replied = std::size_t{0}](
                                  const Frame& frame) mutable -> std::optional<Time> {
      if (frame.pdu[1] == 47) return there[sent++ % there.size()];
      if (frame.pdu[1] == 46) return back[replied++ % back.size()];
      return Time{};
    });
  }
  RecordedTests& tests() { return line_.First().tests; }
  const DelayResult& Result() { return tests().delay_ends.at(0).result; }

  Line line_{2};
};

TEST_F(DelayMeasurementTest, AddsUpBothDirections) {
  SetDelays({microseconds(300)}, {microseconds(500)});
  const Time start = line_.network.now();
  const StartedTest started = Start(line_.Delay(7, 4, 50));
  EXPECT_EQ(line_.LastMepMac(), started.target);
  line_.network.Run(seconds(6));
  ASSERT_THAT(tests().delay_ends, SizeIs(1));
  EXPECT_EQ(7U, tests().delay_ends[0].request_id);
  EXPECT_EQ(start + milliseconds(150) + seconds(5), tests().delay_ends[0].time);
  EXPECT_EQ(4U, Result().sent);
  EXPECT_EQ(4U, Result().received);
  EXPECT_EQ(0U, Result().rejected);
  EXPECT_EQ(microseconds(800), Result().delay.min);
  EXPECT_EQ(microseconds(800), Result().delay.max);
  EXPECT_DOUBLE_EQ(800'000, Result().delay.mean);
  EXPECT_EQ(Time(0), Result().variation.max);
  EXPECT_DOUBLE_EQ(0, Result().deviation);
}

TEST_F(DelayMeasurementTest, NotifiesEveryReply) {
  Start(line_.Delay(7, 4));
  line_.network.Run(seconds(6));
  ASSERT_THAT(tests().delay_replies, SizeIs(4));
  for (const auto& reply : tests().delay_replies) {
    EXPECT_EQ(7U, reply.request_id);
    EXPECT_EQ(line_.LastMepMac(), reply.source);
  }
}

TEST_F(DelayMeasurementTest, MeasuresMeanAndVariation) {
  SetDelays({microseconds(100), microseconds(400), microseconds(250)}, {Time{}});
  Start(line_.Delay(7, 3));
  line_.network.Run(seconds(6));
  EXPECT_EQ(microseconds(100), Result().delay.min);
  EXPECT_EQ(microseconds(400), Result().delay.max);
  EXPECT_DOUBLE_EQ(250'000, Result().delay.mean);
  EXPECT_EQ(microseconds(150), Result().variation.min);
  EXPECT_EQ(microseconds(300), Result().variation.max);
  EXPECT_DOUBLE_EQ(225'000, Result().variation.mean);
}

TEST_F(DelayMeasurementTest, SendsWhatItWasAskedFor) {
  DelayRequest request = line_.Delay(7, 1);
  request.size = 200;
  request.pcp = 3;
  Start(request);
  const auto dmms = SentBy(line_.First(), Opcode::Dmm);
  ASSERT_THAT(dmms, SizeIs(1));
  EXPECT_EQ(186U, dmms[0].frame.pdu.size()) << "addresses and EtherType make 14 octets more";
  EXPECT_EQ(3, dmms[0].frame.tags.at(0).pcp);
  EXPECT_EQ(ToTimestamp(dmms[0].time), pdu::DecodeDmm(dmms[0].frame.pdu)->tx_f);
  line_.network.Run(Time{});
  const auto dmrs = SentBy(line_.Last(), Opcode::Dmr);
  ASSERT_THAT(dmrs, SizeIs(1));
  EXPECT_EQ(3, dmrs[0].frame.tags.at(0).pcp);
  EXPECT_EQ(186U, dmrs[0].frame.pdu.size());
}

TEST_F(DelayMeasurementTest, HasDefaultsForWhatIsNotGiven) {
  const Time start = line_.network.now();
  Start({7, SampleKey(1), 2, 0, 0, 0, 0});
  line_.network.Run(seconds(7));
  const auto dmms = SentBy(line_.First(), Opcode::Dmm);
  ASSERT_THAT(dmms, SizeIs(10));
  EXPECT_EQ(start + milliseconds(900), dmms[9].time);
  EXPECT_EQ(50U, dmms[0].frame.pdu.size());
}

TEST_F(DelayMeasurementTest, TrustsTheTimeOfArrivalThatAFrameCarries) {
  line_.network.SetLinkRule([](const Frame& frame) -> std::optional<Time> {
    if (frame.pdu[1] == 47 || frame.pdu[1] == 46) return std::nullopt;
    return Time{};
  });
  Start(line_.Delay(7, 1));
  const Time sent = line_.network.now();
  Frame dmm = SentBy(line_.First(), Opcode::Dmm).at(0).frame;
  line_.network.Run(milliseconds(10));
  // The responder came to it 4 ms after it had arrived.
  dmm.received = sent + milliseconds(6);
  line_.Last().Receive(kLeft, Side::Wire, dmm);
  Frame dmr = SentBy(line_.Last(), Opcode::Dmr).at(0).frame;
  EXPECT_EQ(ToTimestamp(sent + milliseconds(6)), pdu::DecodeDmr(dmr.pdu)->rx_f);
  EXPECT_EQ(ToTimestamp(sent + milliseconds(10)), pdu::DecodeDmr(dmr.pdu)->tx_b);
  line_.network.Run(milliseconds(10));
  // And the initiator 3 ms after the reply had.
  dmr.received = sent + milliseconds(17);
  line_.First().Receive(kRight, Side::Wire, dmr);
  line_.network.Run(seconds(6));
  EXPECT_EQ(milliseconds(17 - 4), Result().delay.min);
}

TEST_F(DelayMeasurementTest, StampsWhatItsOwnerSendsLaterWithTheTimeOfSending) {
  line_.First().behind = milliseconds(30);
  line_.Last().behind = milliseconds(4);
  Start(line_.Delay(7, 1));
  const Time start = line_.network.now();
  line_.network.Run(Time{});
  const auto dmm = pdu::DecodeDmm(SentBy(line_.First(), Opcode::Dmm).at(0).frame.pdu);
  EXPECT_EQ(ToTimestamp(start + milliseconds(30)), dmm->tx_f);
  Frame frame = SentBy(line_.Last(), Opcode::Dmr).at(0).frame;
  const auto dmr = pdu::DecodeDmr(frame.pdu);
  EXPECT_EQ(ToTimestamp(start), dmr->rx_f);
  EXPECT_EQ(ToTimestamp(start + milliseconds(4)), dmr->tx_b);
}

TEST_F(DelayMeasurementTest, MeasuresFromTheTimeOfSending) {
  line_.First().behind = milliseconds(30);
  SetDelays({milliseconds(40)}, {milliseconds(1)});
  Start(line_.Delay(7, 3));
  line_.network.Run(seconds(6));
  EXPECT_EQ(3U, Result().received);
  EXPECT_EQ(milliseconds(40 + 1 - 30), Result().delay.max) << "30 ms passed before the DMM left";
}

TEST_F(DelayMeasurementTest, MakesNoBurstWhileItsOwnerCatchesUp) {
  line_.First().behind = milliseconds(350);
  const Time start = line_.network.now();
  Start(line_.Delay(7, 10));
  line_.network.Run(milliseconds(350));
  EXPECT_THAT(SentBy(line_.First(), Opcode::Dmm), SizeIs(1))
      << "what was missed is not made up for";
  line_.First().behind = {};
  line_.network.Run(milliseconds(100));
  const auto dmms = SentBy(line_.First(), Opcode::Dmm);
  ASSERT_THAT(dmms, SizeIs(2));
  EXPECT_EQ(start + milliseconds(450), dmms[1].time);
}

TEST_F(DelayMeasurementTest, CountsLossAndRejectsWhatComesTwice) {
  int replies = 0;
  line_.network.SetLinkRule([&replies](const Frame& frame) -> std::optional<Time> {
    if (frame.pdu[1] == 46 && ++replies == 2) return std::nullopt;
    return Time{};
  });
  Start(line_.Delay(7, 3));
  line_.network.Run(seconds(1));
  line_.First().Receive(kRight, Side::Wire, SentBy(line_.Last(), Opcode::Dmr).at(0).frame);
  line_.network.Run(seconds(6));
  EXPECT_EQ(3U, Result().sent);
  EXPECT_EQ(2U, Result().received);
  EXPECT_EQ(1U, Result().rejected);
  EXPECT_THAT(tests().delay_replies, SizeIs(2));
}

TEST_F(DelayMeasurementTest, RejectsAReplyThatComesLate) {
  SetDelays({seconds(3)}, {milliseconds(2001), Time{}});
  Start(line_.Delay(7, 2, 1000));
  line_.network.Run(seconds(10));
  EXPECT_EQ(1U, Result().received);
  EXPECT_EQ(1U, Result().rejected);
}

TEST_F(DelayMeasurementTest, SurvivesReordering) {
  SetDelays({milliseconds(250), milliseconds(50), milliseconds(20)}, {Time{}});
  Start(line_.Delay(7, 9));
  line_.network.Run(seconds(7));
  EXPECT_EQ(9U, Result().received);
  EXPECT_EQ(0U, Result().rejected);
  EXPECT_EQ(milliseconds(20), Result().delay.min);
  EXPECT_EQ(milliseconds(250), Result().delay.max);
}

TEST_F(DelayMeasurementTest, KeepsTestsOfOneMomentApart) {
  SetDelays({microseconds(10)}, {Time{}});
  for (std::uint32_t id = 0; id < 8; ++id) EXPECT_FALSE(Start(line_.Delay(id, 5)).error);
  EXPECT_EQ(TriggerError::TooMany, Start(line_.Delay(8)).error);
  line_.network.Run(seconds(7));
  ASSERT_THAT(tests().delay_ends, SizeIs(8));
  for (const auto& end : tests().delay_ends) {
    EXPECT_EQ(5U, end.result.received);
    EXPECT_EQ(0U, end.result.rejected);
    EXPECT_EQ(microseconds(10), end.result.delay.min);
    EXPECT_EQ(microseconds(10), end.result.delay.max);
  }
  EXPECT_FALSE(Start(line_.Delay(8)).error);
}

TEST_F(DelayMeasurementTest, EndsWhenTheMepIsRemoved) {
  Start(line_.Delay(7, 10));
  line_.network.Run(milliseconds(250));
  line_.engine().RemoveAssociation(line_.network.now(), SampleMa());
  ASSERT_THAT(tests().delay_ends, SizeIs(1));
  EXPECT_EQ(3U, Result().sent);
  EXPECT_EQ(3U, Result().received);
  line_.network.Run(seconds(7));
  EXPECT_THAT(tests().delay_ends, SizeIs(1));
}

TEST_F(DelayMeasurementTest, CountsMalformedMessagesAndRepliesToNoTest) {
  Start(line_.Delay(7, 1));
  line_.network.Run(seconds(6));
  Frame dmm = SentBy(line_.First(), Opcode::Dmm).at(0).frame;
  Frame dmr = SentBy(line_.Last(), Opcode::Dmr).at(0).frame;
  line_.First().Receive(kRight, Side::Wire, dmr);
  EXPECT_EQ(1U, line_.engine().DropsAt(kRight).unexpected);
  dmm.pdu.resize(36);
  dmr.pdu.resize(36);
  line_.Last().Receive(kLeft, Side::Wire, dmm);
  line_.First().Receive(kRight, Side::Wire, dmr);
  EXPECT_EQ(1U, line_.Last().engine().DropsAt(kLeft).malformed());
  EXPECT_EQ(1U, line_.engine().DropsAt(kRight).malformed());
}

TEST_F(DelayMeasurementTest, IsAnsweredToAMepsOwnAddressAlone) {
  Start(line_.Delay(7, 1));
  line_.network.Run(Time{});
  Frame dmm = SentBy(line_.First(), Opcode::Dmm).at(0).frame;
  ASSERT_THAT(SentBy(line_.Last(), Opcode::Dmr), SizeIs(1));
  dmm.destination = {0x01, 0x80, 0xc2, 0, 0, 0x33};
  line_.Last().Receive(kLeft, Side::Wire, dmm);
  dmm.destination = {2, 0, 0, 0, 0, 99};
  line_.Last().Receive(kLeft, Side::Wire, dmm);
  EXPECT_EQ(2U, line_.Last().engine().DropsAt(kLeft).unexpected);
  dmm.destination = line_.LastMepMac();
  dmm.source[0] |= 1U;
  line_.Last().Receive(kLeft, Side::Wire, dmm);
  EXPECT_THAT(SentBy(line_.Last(), Opcode::Dmr), SizeIs(1));
}

struct Refusal {
  const char* what;
  DelayRequest request;
  TriggerError error;
};

TEST_F(DelayMeasurementTest, IsRefusedWithTheReason) {
  const MepKey mep = SampleKey(1);
  const Refusal cases[] = {
      {"no such MEP", {1, SampleKey(9), 2, 1, 100, 64, 0}, TriggerError::UnknownMep},
      {"no such remote MEP", {1, mep, 3, 1, 100, 64, 0}, TriggerError::UnknownRemoteMep},
      {"too many DMMs", {1, mep, 2, 1025, 100, 64, 0}, TriggerError::BadParameter},
      {"too quick", {1, mep, 2, 1, 9, 64, 0}, TriggerError::BadParameter},
      {"too slow", {1, mep, 2, 1, 60001, 64, 0}, TriggerError::BadParameter},
      {"too small", {1, mep, 2, 1, 100, 63, 0}, TriggerError::BadParameter},
      {"too large", {1, mep, 2, 1, 100, 1515, 0}, TriggerError::BadParameter},
      {"no such priority", {1, mep, 2, 1, 100, 64, 8}, TriggerError::BadParameter},
  };
  for (const Refusal& c : cases) EXPECT_EQ(c.error, Start(c.request).error) << c.what;
  EXPECT_FALSE(Start({1, mep, 2, 1024, 60000, 1514, 7}).error);
  EXPECT_FALSE(Start({1, mep, 2, 1, 10, 64, 0}).error);
}

TEST(DelayMeasurementThroughBridges, IsNotAnsweredByMips) {
  Line line(3);
  line.Settle();
  line.engine().StartDelayMeasurement(line.network.now(), line.Delay(1, 1));
  line.network.Run(Time{});
  Frame dmm = SentBy(line.First(), Opcode::Dmm).at(0).frame;
  EXPECT_THAT(SentBy(line.Last(), Opcode::Dmr), SizeIs(1));
  dmm.destination = line.At(1).MacOf(kLeft);
  EXPECT_EQ(Verdict::Pass, line.At(1).Receive(kLeft, Side::Wire, dmm));
  EXPECT_THAT(SentBy(line.At(1), Opcode::Dmr), IsEmpty());
}

}  // namespace
}  // namespace cfm_mgr::engine
