// SPDX-License-Identifier: Apache-2.0
#include "engine/loopback_initiator.h"

#include <gtest/gtest.h>

#include <set>

namespace cfm_mgr::engine {
namespace {

using Octets = std::vector<std::uint8_t>;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr Mac kTarget = {2, 0, 0, 0, 0, 2};
constexpr std::uint32_t kFirst = 0xfffffffe;  // The identifiers wrap within the test.

class LoopbackInitiatorTest : public ::testing::Test {
 protected:
  /** Sends all LBMs in their times. */
  void SendAll() {
    while (!test_.Ended(test_.NextDeadline()))
      sent_.push_back(*test_.TakeDue(test_.NextDeadline()));
  }
  bool Reply(const Octets& lbr, const Mac& source = kTarget) {
    const auto decoded = pdu::DecodeLbr(lbr);
    return decoded && test_.OnReply(source, *decoded, lbr);
  }
  void ReplyTo(std::initializer_list<std::size_t> indices) {
    for (const std::size_t index : indices) EXPECT_TRUE(Reply(pdu::LbrTo(sent_[index])));
  }

  LoopbackInitiator test_{Time(0), {5, kTarget, kFirst, 4, 40}};
  std::vector<Octets> sent_;
};

TEST_F(LoopbackInitiatorTest, SendsAsManyLbmsAsAskedForAtItsPace) {
  for (int i = 0; i < 4; ++i) {
    const Time due = i * LoopbackInitiator::kPace;
    EXPECT_EQ(due, test_.NextDeadline());
    EXPECT_FALSE(i > 0 && test_.TakeDue(due - Time(1)));
    EXPECT_TRUE(test_.TakeDue(due));
    EXPECT_FALSE(test_.TakeDue(due));
  }
}

TEST_F(LoopbackInitiatorTest, EndsFiveSecondsAfterTheLastLbm) {
  SendAll();
  const Time end = 3 * LoopbackInitiator::kPace + seconds(5);
  EXPECT_EQ(end, test_.NextDeadline());
  EXPECT_FALSE(test_.Ended(end - Time(1)));
  EXPECT_TRUE(test_.Ended(end));
}

TEST_F(LoopbackInitiatorTest, MakesNoBurstOfWhatItMissed) {
  ASSERT_TRUE(test_.TakeDue(Time(0)));
  ASSERT_TRUE(test_.TakeDue(milliseconds(950)));
  EXPECT_FALSE(test_.TakeDue(milliseconds(950)));
  EXPECT_EQ(milliseconds(1050), test_.NextDeadline());
}

TEST_F(LoopbackInitiatorTest, NumbersItsLbmsAndFillsThemWithData) {
  SendAll();
  ASSERT_EQ(4U, sent_.size());
  std::set<Octets> payloads;
  for (std::uint32_t i = 0; i < 4; ++i) {
    const auto lbm = pdu::DecodeLbm(sent_[i]);
    ASSERT_TRUE(lbm);
    EXPECT_EQ(5, lbm->level);
    EXPECT_EQ(kFirst + i, lbm->transaction_id);
    ASSERT_TRUE(lbm->data);
    EXPECT_EQ(40U, lbm->data->size());
    payloads.insert(Octets(lbm->data->begin(), lbm->data->end()));
  }
  EXPECT_EQ(4U, payloads.size());
}

TEST_F(LoopbackInitiatorTest, HasNoDataTlvForASizeOfZero) {
  LoopbackInitiator test(Time(0), {5, kTarget, 1, 1, 0});
  EXPECT_EQ(9U, test.TakeDue(Time(0))->size());
}

struct Order {
  std::initializer_list<std::size_t> replies;
  std::uint64_t in_order;
  std::uint64_t out_of_order;
};

TEST_F(LoopbackInitiatorTest, CountsTheOrderOfReplies) {
  const Order cases[] = {
      {{0, 1, 2, 3}, 4, 0},     // all
      {{}, 0, 0},               // none
      {{0, 2, 3}, 2, 1},        // a gap counts once
      {{0, 2, 1, 3}, 1, 3},     // two that changed places: nothing follows what it should
      {{0, 0, 1, 2, 3}, 4, 1},  // one came twice
      {{3}, 0, 1},
  };
  SendAll();
  for (const Order& c : cases) {
    LoopbackInitiator copy = test_;
    ReplyTo(c.replies);
    EXPECT_EQ(4U, test_.Result().expected);
    EXPECT_EQ(c.in_order, test_.Result().in_order);
    EXPECT_EQ(c.out_of_order, test_.Result().out_of_order);
    EXPECT_EQ(0U, test_.Result().wrong_payload);
    test_ = copy;
  }
}

TEST_F(LoopbackInitiatorTest, CountsAWrongPayloadOnlyAsThat) {
  SendAll();
  Octets lbr = pdu::LbrTo(sent_[0]);
  lbr[20] ^= 1U;
  EXPECT_TRUE(Reply(lbr));
  EXPECT_EQ(1U, test_.Result().wrong_payload);
  EXPECT_EQ(0U, test_.Result().in_order + test_.Result().out_of_order);
  ReplyTo({0});
  EXPECT_EQ(1U, test_.Result().in_order);
}

TEST_F(LoopbackInitiatorTest, TakesMissingDataForAWrongPayload) {
  SendAll();
  pdu::Loopback bare;
  bare.level = 5;
  bare.transaction_id = kFirst;
  EXPECT_TRUE(Reply(pdu::LbrTo(pdu::EncodeLbm(bare))));
  EXPECT_EQ(1U, test_.Result().wrong_payload);
}

TEST_F(LoopbackInitiatorTest, LeavesRepliesThatAreNotItsOwn) {
  sent_.push_back(*test_.TakeDue(Time(0)));
  EXPECT_FALSE(Reply(pdu::LbrTo(sent_[0]), {2, 0, 0, 0, 0, 9})) << "from another";
  pdu::Loopback other;
  other.transaction_id = kFirst + 1;
  EXPECT_FALSE(Reply(pdu::LbrTo(pdu::EncodeLbm(other)))) << "not sent yet";
  other.transaction_id = kFirst - 1;
  EXPECT_FALSE(Reply(pdu::LbrTo(pdu::EncodeLbm(other)))) << "of an earlier test";
  EXPECT_EQ(1U, test_.Result().expected);
  EXPECT_EQ(0U, test_.Result().wrong_payload);
}

}  // namespace
}  // namespace cfm_mgr::engine
