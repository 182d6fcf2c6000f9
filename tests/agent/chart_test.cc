// SPDX-License-Identifier: Apache-2.0
#include "core/chart.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <numeric>

namespace cfm_agent {
namespace {

using std::chrono::microseconds;

TEST(RangeBar, MarksTheMean) {
  EXPECT_EQ(RangeBar(0, 0, 39, {}), "|o" + std::string(39, '-') + '|');
  EXPECT_EQ(RangeBar(0, 39, 39, {}), '|' + std::string(39, '-') + "o|");
  EXPECT_EQ(RangeBar(0, 10, 39, {}), '|' + std::string(10, '-') + 'o' + std::string(29, '-') + '|');
  EXPECT_EQ(RangeBar(0, 0, 39, {false, true}).substr(0, 6), "\u251C\u25CF");
}

TEST(RangeBar, IsNotDrawnOfNumbersThatMakeNone) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinite = std::numeric_limits<double>::infinity();
  EXPECT_EQ(RangeBar(1, 1, 1, {}), "");
  EXPECT_EQ(RangeBar(2, 1, 0, {}), "");
  EXPECT_EQ(RangeBar(0, 5, 1, {}), "");
  EXPECT_EQ(RangeBar(0, nan, 1, {}), "");
  EXPECT_EQ(RangeBar(0, 1, infinite, {}), "");
}

TEST(Histogram, CountsEveryTimeOnce) {
  std::vector<microseconds> times;
  for (const int time : {20100, 20150, 20320, 24999, 41000}) {
    times.emplace_back(time);
  }
  const auto bins = Histogram(times);
  ASSERT_EQ(bins.size(), 5U);
  EXPECT_EQ(bins[0].from, microseconds(20000));
  EXPECT_EQ(bins[0].to, microseconds(25000));
  EXPECT_EQ(bins[0].count, 4U);
  EXPECT_EQ(bins[4].to, microseconds(45000));
  EXPECT_EQ(bins[4].count, 1U);
}

TEST(Histogram, IsSmallWhateverTheTimes) {
  for (const std::int64_t length : {0, 1, 7, 8, 9, 10, 99, 100, 12345, 1000000, 86400000}) {
    for (const std::int64_t from : {0, 3, 999, 5000000}) {
      const auto bins = Histogram(
          {microseconds(from + length), microseconds(from), microseconds(from + length / 2)});
      EXPECT_GE(bins.size(), 1U);
      EXPECT_LE(bins.size(), 9U) << from << ' ' << length;
      EXPECT_EQ(std::accumulate(bins.begin(), bins.end(), std::uint64_t{0},
                                [](std::uint64_t sum, const Bin& bin) { return sum + bin.count; }),
                3U);
      EXPECT_GT(bins.front().count, 0U);
      EXPECT_GT(bins.back().count, 0U);
    }
  }
}

TEST(Histogram, IsEmptyWithoutTimes) { EXPECT_TRUE(Histogram({}).empty()); }

TEST(Bar, IsLongestForTheGreatestAndNeverMissing) {
  EXPECT_EQ(Bar(0, 100, {}), "");
  EXPECT_EQ(Bar(1, 100, {}), "#");
  EXPECT_EQ(Bar(100, 100, {}), std::string(30, '#'));
  EXPECT_EQ(Bar(0, 0, {}), "");
  EXPECT_EQ(Bar(1, 30, {false, true}), "\u2588");
}

}  // namespace
}  // namespace cfm_agent
