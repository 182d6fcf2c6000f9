// SPDX-License-Identifier: Apache-2.0
#include "engine/delay_initiator.h"

#include <gtest/gtest.h>

#include <cmath>

namespace cfm_mgr::engine {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

constexpr Mac kTarget = {2, 0, 0, 0, 0, 2};

TEST(DelayStatistics, AreZeroWithoutReplies) {
  const DelayStatistics none;
  EXPECT_EQ(Time(0), none.Delay().min);
  EXPECT_EQ(0, none.Delay().mean);
  EXPECT_EQ(Time(0), none.Variation().max);
  EXPECT_EQ(0, none.Deviation());
}

TEST(DelayStatistics, AreThoseOfATextbook) {
  DelayStatistics statistics;
  for (const int delay : {2, 4, 4, 4, 5, 5, 7, 9}) statistics.Add(nanoseconds(delay));
  EXPECT_EQ(nanoseconds(2), statistics.Delay().min);
  EXPECT_EQ(nanoseconds(9), statistics.Delay().max);
  EXPECT_DOUBLE_EQ(5, statistics.Delay().mean);
  EXPECT_DOUBLE_EQ(2, statistics.Deviation());
  // Steps: 2 0 0 1 0 2 2.
  EXPECT_EQ(nanoseconds(0), statistics.Variation().min);
  EXPECT_EQ(nanoseconds(2), statistics.Variation().max);
  EXPECT_DOUBLE_EQ(1, statistics.Variation().mean);
}

TEST(DelayStatistics, LoseNothingNextToLargeDelays) {
  DelayStatistics statistics;
  for (int i = 0; i < 1000; ++i) statistics.Add(seconds(4) + nanoseconds(i % 2));
  EXPECT_NEAR(0.5, statistics.Deviation(), 1e-6);
}

TEST(DelayTimes, WrapWithTheSecondsOfTheWire) {
  EXPECT_EQ((pdu::Timestamp{1, 5}), ToTimestamp(seconds(1) + nanoseconds(5)));
  EXPECT_EQ((pdu::Timestamp{0, 7}), ToTimestamp(seconds(1LL << 32) + nanoseconds(7)));
  EXPECT_EQ(nanoseconds(3), Difference({0, 1}, {0xffffffff, 999'999'998}));
  EXPECT_EQ(-nanoseconds(3), Difference({0xffffffff, 999'999'998}, {0, 1}));
}

TEST(StampClock, GivesEveryDmmAnotherStamp) {
  StampClock clock;
  EXPECT_EQ((pdu::Timestamp{0, 0}), clock.Next(Time(0)));
  EXPECT_EQ((pdu::Timestamp{0, 1}), clock.Next(Time(0)));
  EXPECT_EQ((pdu::Timestamp{0, 2}), clock.Next(Time(1)));
  EXPECT_EQ((pdu::Timestamp{0, 9}), clock.Next(Time(9)));
}

class DelayInitiatorTest : public ::testing::Test {
 protected:
  /** Sends the next DMM when it is due. */
  void Send() {
    sent_at_ = test_.NextDeadline();
    sent_ = *pdu::DecodeDmm(*test_.TakeDue(sent_at_, clock_));
  }
  /** A reply after @p elapsed, of which the responder had the frame for @p held. */
  DelayInitiator::Reply Reply(Time elapsed, Time held, const Mac& source = kTarget) {
    pdu::DelayMeasurement dmr = sent_;
    dmr.rx_f = ToTimestamp(kRemoteClock);
    dmr.tx_b = ToTimestamp(kRemoteClock + held);
    return test_.OnReply(sent_at_ + elapsed, source, dmr);
  }

  static constexpr Time kRemoteClock = seconds(77777) + nanoseconds(999'999'990);
  using Outcome = DelayInitiator::Reply;

  StampClock clock_;
  DelayInitiator test_{seconds(10), {5, kTarget, 3, milliseconds(100), 50}};
  pdu::DelayMeasurement sent_;
  Time sent_at_{};
};

TEST_F(DelayInitiatorTest, SendsItsDmmsAtTheInterval) {
  for (int i = 0; i < 3; ++i) {
    const Time due = seconds(10) + i * milliseconds(100);
    EXPECT_FALSE(test_.TakeDue(due - Time(1), clock_));
    const auto dmm = test_.TakeDue(due, clock_);
    ASSERT_TRUE(dmm);
    EXPECT_EQ(50U, dmm->size());
    EXPECT_EQ(ToTimestamp(due), pdu::DecodeDmm(*dmm)->tx_f);
    EXPECT_EQ(5, pdu::DecodeDmm(*dmm)->level);
  }
  const Time end = seconds(10) + milliseconds(200) + seconds(5);
  EXPECT_FALSE(test_.Ended(end - Time(1)));
  EXPECT_TRUE(test_.Ended(end));
  EXPECT_EQ(end, test_.NextDeadline());
}

TEST_F(DelayInitiatorTest, LeavesOutTheTimeAtTheResponder) {
  Send();
  EXPECT_EQ(Outcome::Counted, Reply(microseconds(900), microseconds(400)));
  EXPECT_EQ(microseconds(500), test_.Result().delay.min);
  EXPECT_EQ(microseconds(500), test_.Result().delay.max);
}

TEST_F(DelayInitiatorTest, MeasuresVariationBetweenConsecutiveReplies) {
  for (const int delay : {500, 800, 600}) {
    Send();
    EXPECT_EQ(Outcome::Counted, Reply(microseconds(delay), Time(0)));
  }
  const DelayResult result = test_.Result();
  EXPECT_EQ(3U, result.sent);
  EXPECT_EQ(3U, result.received);
  EXPECT_EQ(microseconds(200), result.variation.min);
  EXPECT_EQ(microseconds(300), result.variation.max);
  EXPECT_DOUBLE_EQ(250'000, result.variation.mean);
  EXPECT_NEAR(std::sqrt(140'000.0 / 9) * 1000, result.deviation, 1e-3);
}

TEST_F(DelayInitiatorTest, RejectsTheSecondReplyToADmm) {
  Send();
  EXPECT_EQ(Outcome::Counted, Reply(microseconds(1), Time(0)));
  EXPECT_EQ(Outcome::Rejected, Reply(microseconds(2), Time(0)));
  EXPECT_EQ(1U, test_.Result().received);
  EXPECT_EQ(1U, test_.Result().rejected);
}

TEST_F(DelayInitiatorTest, RejectsALateReply) {
  Send();
  EXPECT_EQ(Outcome::Rejected, Reply(kReplyWait + Time(1), Time(0)));
  EXPECT_EQ(Outcome::Counted, Reply(kReplyWait, Time(0)));
  EXPECT_EQ(1U, test_.Result().received);
}

TEST_F(DelayInitiatorTest, RejectsTimesThatCannotBe) {
  Send();
  EXPECT_EQ(Outcome::Rejected, Reply(microseconds(5), microseconds(6))) << "held for too long";
  EXPECT_EQ(Outcome::Rejected, Reply(microseconds(5), -microseconds(1))) << "sent before it came";
  pdu::DelayMeasurement dmr = sent_;
  dmr.rx_f = {1, 1'000'000'000};
  dmr.tx_b = {2, 0};
  EXPECT_EQ(Outcome::Rejected, test_.OnReply(seconds(13), kTarget, dmr)) << "no such nanosecond";
  EXPECT_EQ(3U, test_.Result().rejected);
  EXPECT_EQ(0U, test_.Result().received);
}

TEST_F(DelayInitiatorTest, LeavesRepliesThatAreNotItsOwn) {
  Send();
  EXPECT_EQ(Outcome::NotOurs, Reply(microseconds(5), Time(0), {2, 0, 0, 0, 0, 9}));
  ++sent_.tx_f.nanoseconds;
  EXPECT_EQ(Outcome::NotOurs, Reply(microseconds(5), Time(0)));
  EXPECT_EQ(0U, test_.Result().rejected);
}

}  // namespace
}  // namespace cfm_mgr::engine
