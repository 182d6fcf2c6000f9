// SPDX-License-Identifier: Apache-2.0
// Many tests at once, networks that lose and reorder, and that a run can be repeated.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "line.h"

namespace cfm_mgr::engine {
namespace {

using pdu::Opcode;
using ::testing::SizeIs;

constexpr std::uint32_t kMeps = 60;

MaKey NumberedMa(std::uint32_t number) { return {"D1", "A" + std::to_string(number)}; }

/** Two bridges joined by a link, with a pair of Down MEPs for each of many associations. */
class ManyTests : public ::testing::Test {
 protected:
  ManyTests() {
    for (std::uint32_t i = 0; i < kMeps; ++i) {
      for (const std::size_t end : {0U, 1U}) {
        Association association = line_.AssociationOf(end);
        association.settings.vids = {200 + i};
        line_.At(end).engine().SetAssociation(Time{}, NumberedMa(i), SampleDomain(), association);
      }
    }
    line_.Settle();
  }

  Line line_{2};
};

TEST_F(ManyTests, RunOfAllKindsAtATimeWithoutMixingThemUp) {
  const Time now = line_.network.now();
  for (std::uint32_t i = 0; i < kMeps; ++i) {
    const MepKey mep{NumberedMa(i), 1};
    EXPECT_FALSE(line_.engine().StartLoopback(now, {i, mep, 2, 1 + i % 5, i}).error);
    EXPECT_FALSE(line_.engine().StartLinktrace(now, {i, mep, 2, 64}).error);
    EXPECT_FALSE(line_.engine().StartDelayMeasurement(now, {i, mep, 2, 1 + i % 7, 10, 0, 0}).error);
  }
  line_.network.Run(seconds(7));
  const RecordedTests& tests = line_.First().tests;
  ASSERT_THAT(tests.loopback_ends, SizeIs(kMeps));
  for (const auto& end : tests.loopback_ends) {
    EXPECT_EQ(1 + end.request_id % 5, end.result.in_order);
    EXPECT_EQ(0U, end.result.out_of_order + end.result.wrong_payload);
  }
  EXPECT_THAT(tests.trace_replies, SizeIs(kMeps));
  EXPECT_THAT(tests.trace_ends, SizeIs(kMeps));
  ASSERT_THAT(tests.delay_ends, SizeIs(kMeps));
  for (const auto& end : tests.delay_ends) {
    EXPECT_EQ(1 + end.request_id % 7, end.result.received);
    EXPECT_EQ(0U, end.result.rejected);
  }
  EXPECT_EQ(0U, line_.engine().DropsAt(kRight).unexpected);
}

TEST_F(ManyTests, EndOfHalfOfThemLeavesTheOthersAlone) {
  const Time now = line_.network.now();
  for (std::uint32_t i = 0; i < kMeps; ++i) {
    line_.engine().StartLoopback(now, {i, {NumberedMa(i), 1}, 2, 4, 0});
    line_.engine().StartDelayMeasurement(now, {i, {NumberedMa(i), 1}, 2, 4, 100, 0, 0});
  }
  line_.network.Run(milliseconds(150));
  for (std::uint32_t i = 0; i < kMeps; i += 2) {
    line_.engine().RemoveAssociation(line_.network.now(), NumberedMa(i));
  }
  line_.network.Run(seconds(7));
  const RecordedTests& tests = line_.First().tests;
  ASSERT_THAT(tests.loopback_ends, SizeIs(kMeps));
  for (const auto& end : tests.loopback_ends) {
    EXPECT_EQ(end.request_id % 2 == 0 ? 2U : 4U, end.result.in_order);
  }
  ASSERT_THAT(tests.delay_ends, SizeIs(kMeps));
  for (const auto& end : tests.delay_ends) {
    EXPECT_EQ(end.request_id % 2 == 0 ? 2U : 4U, end.result.received);
  }
}

/** Loses one test frame in five and delays the others by up to 300 ms. */
LinkRule BadLink(std::uint64_t seed) {
  return [random = std::mt19937_64(seed)](const Frame& frame) mutable -> std::optional<Time> {
    if (frame.pdu[1] == static_cast<std::uint8_t>(Opcode::Ccm)) return Time{};
    if (random() % 5 == 0) return std::nullopt;
    return milliseconds(random() % 300);
  };
}

class BadNetwork : public ::testing::TestWithParam<std::uint64_t> {};

TEST_P(BadNetwork, CountsEveryReplyOnceAndNoneTooMany) {
  Line line(2);
  line.Settle();
  std::uint64_t lbrs = 0;
  std::uint64_t dmrs = 0;
  line.network.SetLinkRule([&, bad = BadLink(GetParam())](const Frame& frame) mutable {
    const std::optional<Time> delay = bad(frame);
    if (delay && frame.pdu[1] == static_cast<std::uint8_t>(Opcode::Lbr)) ++lbrs;
    if (delay && frame.pdu[1] == static_cast<std::uint8_t>(Opcode::Dmr)) ++dmrs;
    return delay;
  });
  line.engine().StartLoopback(line.network.now(), line.Loopback(1, 100, 10));
  line.engine().StartDelayMeasurement(line.network.now(), line.Delay(2, 100, 50));
  line.network.Run(seconds(20));
  const LoopbackResult& loopback = line.First().tests.loopback_ends.at(0).result;
  EXPECT_EQ(100U, loopback.expected);
  EXPECT_EQ(lbrs, loopback.in_order + loopback.out_of_order);
  EXPECT_EQ(0U, loopback.wrong_payload);
  EXPECT_GT(loopback.out_of_order, 0U);
  EXPECT_EQ(lbrs, line.First().tests.loopback_replies.size());
  const DelayResult& delay = line.First().tests.delay_ends.at(0).result;
  EXPECT_EQ(100U, delay.sent);
  EXPECT_EQ(dmrs, delay.received);
  EXPECT_EQ(0U, delay.rejected);
  EXPECT_LE(delay.delay.min, delay.delay.max);
  EXPECT_LT(delay.delay.max, milliseconds(600));
  EXPECT_GE(delay.delay.mean, static_cast<double>(delay.delay.min.count()));
  EXPECT_LE(delay.delay.mean, static_cast<double>(delay.delay.max.count()));
}

INSTANTIATE_TEST_SUITE_P(Seeds, BadNetwork, ::testing::Range<std::uint64_t>(1, 11));

/** Everything that a network of this seed sent, as text. */
std::string Transcript(std::uint64_t seed) {
  Line line(4, Ends::Up, seed);
  line.network.SetLinkRule(BadLink(7));
  line.Settle();
  Probe probe;
  probe.settings = {"D1", "A1", 2, 1, 2};
  probe.sessions[1] = {10, 5, 64, 4};
  line.engine().SetProbe(line.network.now(), 1, probe);
  line.engine().StartLoopback(line.network.now(), line.Loopback(1, 10, 10));
  line.engine().StartLinktrace(line.network.now(), line.Linktrace());
  line.network.Run(seconds(20));
  std::string text;
  for (std::size_t i = 0; i < 4; ++i) {
    for (const SentFrame& sent : line.At(i).sent) {
      text += std::to_string(i) + ' ' + std::to_string(sent.time.count()) + ' ' +
              std::to_string(sent.port) + ' ';
      for (const std::uint8_t octet : sent.frame.pdu) text += std::to_string(octet) + ',';
      text += '\n';
    }
  }
  return text;
}

TEST(Repeatability, GivesTheSameFramesAtTheSameTimesFromTheSameSeed) {
  const std::string first = Transcript(42);
  EXPECT_GT(first.size(), 10'000U);
  EXPECT_EQ(first, Transcript(42));
  EXPECT_NE(first, Transcript(43));
}

}  // namespace
}  // namespace cfm_mgr::engine
