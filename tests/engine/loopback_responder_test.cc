// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/addresses.h"
#include "line.h"
#include "pdu/loopback.h"

namespace cfm_mgr::engine {
namespace {

using pdu::Opcode;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/** A bridge between two others, with a MIP on either port. */
class LoopbackResponderTest : public ::testing::Test {
 protected:
  LoopbackResponderTest() { line_.Settle(); }

  Frame Lbm(const Mac& destination, std::uint8_t level = 3) {
    pdu::Loopback lbm;
    lbm.level = level;
    lbm.transaction_id = 99;
    Frame frame = TaggedFrame({100}, pdu::EncodeLbm(lbm));
    frame.destination = destination;
    return frame;
  }
  Bridge& middle() { return line_.At(1); }

  Line line_{3};
};

TEST_F(LoopbackResponderTest, AnswersAtAMipOnTheSideOfTheRequest) {
  for (const Side side : {Side::Wire, Side::Relay}) {
    middle().sent.clear();
    const Frame lbm = Lbm(middle().MacOf(kLeft));
    EXPECT_EQ(Verdict::Stop, middle().Receive(kLeft, side, lbm));
    ASSERT_THAT(middle().sent, SizeIs(1));
    const SentFrame& sent = middle().sent[0];
    EXPECT_EQ(kLeft, sent.port);
    EXPECT_EQ(side, sent.side);
    EXPECT_EQ(middle().MacOf(kLeft), sent.frame.source);
    EXPECT_EQ(lbm.source, sent.frame.destination);
    EXPECT_EQ(100, sent.frame.tags.at(0).vid);
    EXPECT_EQ(pdu::LbrTo(lbm.pdu), sent.frame.pdu);
  }
}

TEST_F(LoopbackResponderTest, LetsPassAtAMipWhatIsNotForIt) {
  Frame other_vid = Lbm(middle().MacOf(kLeft));
  other_vid.tags[0].vid = 101;
  Frame inner_tag = Lbm(middle().MacOf(kLeft));
  inner_tag.tags.push_back({});
  const Frame frames[] = {Lbm(line_.LastMepMac()),
                          Lbm(middle().MacOf(kLeft), 4),
                          Lbm(middle().MacOf(kLeft), 2),
                          Lbm(CcmGroupAddress(3)),
                          other_vid,
                          inner_tag};
  for (const Frame& frame : frames) {
    EXPECT_EQ(Verdict::Pass, middle().Receive(kLeft, Side::Wire, frame));
  }
  line_.network.Run(seconds(2));
  EXPECT_THAT(SentBy(middle(), Opcode::Lbr), IsEmpty());
}

TEST_F(LoopbackResponderTest, AnswersAMulticastLbmAtAMepWithinASecond) {
  const Time asked = line_.network.now();
  line_.First().Receive(kRight, Side::Wire, Lbm(CcmGroupAddress(3)));
  EXPECT_THAT(SentBy(line_.First(), Opcode::Lbr), IsEmpty());
  line_.network.Run(seconds(1));
  const auto replies = SentBy(line_.First(), Opcode::Lbr);
  ASSERT_THAT(replies, SizeIs(1));
  EXPECT_GT(replies[0].time, asked);
  EXPECT_EQ(line_.FirstMepMac(), replies[0].frame.source);
}

TEST_F(LoopbackResponderTest, SpreadsItsAnswersToMulticastLbms) {
  for (int i = 0; i < 100; ++i) {
    line_.First().Receive(kRight, Side::Wire, Lbm(CcmGroupAddress(3)));
  }
  const Time asked = line_.network.now();
  line_.network.Run(seconds(2));
  const auto replies = SentBy(line_.First(), Opcode::Lbr);
  ASSERT_THAT(replies, SizeIs(100));
  int early = 0;
  for (const SentFrame& reply : replies) {
    EXPECT_LE(reply.time - asked, seconds(1));
    if (reply.time - asked < milliseconds(500)) ++early;
  }
  EXPECT_GT(early, 25);
  EXPECT_LT(early, 75);
}

TEST_F(LoopbackResponderTest, AnswersNoGroup) {
  Frame lbm = Lbm(line_.FirstMepMac());
  lbm.source = CcmGroupAddress(3);
  EXPECT_EQ(Verdict::Stop, line_.First().Receive(kRight, Side::Wire, lbm));
  EXPECT_THAT(SentBy(line_.First(), Opcode::Lbr), IsEmpty());
}

TEST_F(LoopbackResponderTest, IsSilentOnAPortThatHasGoneMeanwhile) {
  line_.First().Receive(kRight, Side::Wire, Lbm(CcmGroupAddress(3)));
  line_.engine().RemovePort(line_.network.now(), kRight);
  line_.network.Run(seconds(2));
  EXPECT_THAT(SentBy(line_.First(), Opcode::Lbr), IsEmpty());
}

}  // namespace
}  // namespace cfm_mgr::engine
