// SPDX-License-Identifier: Apache-2.0
#include "net/simulated/link.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace cfm_mgr::net {
namespace {

using engine::Time;
using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr std::size_t kFrames = 10000;

// One frame each 100 us from end 0: when each one arrives, none for a lost one.
std::vector<std::optional<Time>> SendMany(Link& link, std::uint64_t seed) {
  Random random(seed);
  std::vector<std::optional<Time>> arrivals;
  for (std::size_t i = 0; i < kFrames; ++i) {
    arrivals.push_back(link.Carry(i * microseconds(100), 0, random));
  }
  return arrivals;
}

TEST(Link, TakesTheDelayAndNoMoreWithoutJitter) {
  Link link({milliseconds(5)});
  Random random(1);
  EXPECT_EQ(link.Carry(milliseconds(1), 0, random), milliseconds(6));
  EXPECT_EQ(link.Carry(milliseconds(1), 1, random), milliseconds(6));
}

TEST(Link, JitterStaysInItsBoundsAndKeepsTheOrder) {
  Link link({milliseconds(5), milliseconds(1)});
  const auto arrivals = SendMany(link, 1);
  Time most{};
  for (std::size_t i = 0; i < kFrames; ++i) {
    const Time delay = *arrivals[i] - i * microseconds(100);
    most = std::max(most, delay);
    EXPECT_GE(delay, milliseconds(5));
    EXPECT_LE(delay, milliseconds(6));
    EXPECT_GE(*arrivals[i], *arrivals[i == 0 ? 0 : i - 1]);
  }
  EXPECT_GT(most, microseconds(5990));
}

TEST(Link, LosesTheShareOfFramesThatItIsToldTo) {
  LinkQuality quality;
  quality.loss = 0.1;
  Link link(quality);
  const auto arrivals = SendMany(link, 1);
  const auto lost = std::count(arrivals.begin(), arrivals.end(), std::nullopt);
  // Ten standard deviations of a binomial distribution.
  EXPECT_NEAR(static_cast<double>(lost), 1000, 300);
}

TEST(Link, LosesNothingAtNoLossAndAllAtFullLoss) {
  LinkQuality quality;
  Link faithful(quality);
  quality.loss = 1;
  Link hopeless(quality);
  const auto kept = SendMany(faithful, 1);
  const auto lost = SendMany(hopeless, 1);
  EXPECT_EQ(std::count(kept.begin(), kept.end(), std::nullopt), 0);
  EXPECT_EQ(std::count(lost.begin(), lost.end(), std::nullopt), kFrames);
}

TEST(Link, HoldsBackTheShareOfFramesThatOthersOvertake) {
  LinkQuality quality;
  quality.reorder = 0.1;
  quality.reorder_by = milliseconds(1);
  Link link(quality);
  const auto arrivals = SendMany(link, 1);
  int overtaken = 0;
  for (std::size_t i = 0; i + 1 < kFrames; ++i) {
    if (*arrivals[i] > *arrivals[i + 1]) ++overtaken;
  }
  // Held back, and the next one not: 0.1 * 0.9 of them.
  EXPECT_NEAR(overtaken, 900, 300);
}

TEST(Link, CarriesNothingWhileItIsDown) {
  Link link({});
  Random random(1);
  link.SetUp(false);
  EXPECT_EQ(link.Carry(milliseconds(1), 0, random), std::nullopt);
  EXPECT_EQ(link.cuts(), 1U);
  link.SetUp(false);
  EXPECT_EQ(link.cuts(), 1U);
  link.SetUp(true);
  EXPECT_EQ(link.Carry(milliseconds(1), 0, random), milliseconds(1));
}

TEST(Link, RepeatsItselfWithTheSameSeedOnly) {
  const LinkQuality quality{milliseconds(5), milliseconds(1), 0.1, 0.1};
  Link first(quality);
  Link second(quality);
  Link third(quality);
  const auto arrivals = SendMany(first, 1);
  EXPECT_EQ(arrivals, SendMany(second, 1));
  EXPECT_NE(arrivals, SendMany(third, 2));
}

}  // namespace
}  // namespace cfm_mgr::net
