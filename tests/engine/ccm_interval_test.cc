// SPDX-License-Identifier: Apache-2.0
#include "engine/ccm_interval.h"

#include <gtest/gtest.h>

#include "samples.h"

namespace cfm_mgr::engine {
namespace {

TEST(CcmInterval, IsThatOfItsCode) {
  EXPECT_EQ(nanoseconds(3333334), Interval(1)) << "10/3 ms, rounded up";
  EXPECT_EQ(milliseconds(10), Interval(2));
  EXPECT_EQ(milliseconds(100), Interval(3));
  EXPECT_EQ(seconds(1), Interval(4));
  EXPECT_EQ(seconds(10), Interval(5));
  EXPECT_EQ(minutes(1), Interval(6));
  EXPECT_EQ(minutes(10), Interval(7));
  EXPECT_FALSE(IsInterval(0));
  EXPECT_FALSE(IsInterval(8));
}

TEST(CcmInterval, LivesThreeAndAHalfTimes) {
  EXPECT_EQ(nanoseconds(11666667), Lifetime(1)) << "35/3 ms, rounded up";
  EXPECT_EQ(milliseconds(35), Lifetime(2));
  EXPECT_EQ(milliseconds(350), Lifetime(3));
  EXPECT_EQ(milliseconds(3500), Lifetime(4));
  EXPECT_EQ(seconds(35), Lifetime(5));
  EXPECT_EQ(seconds(210), Lifetime(6));
  EXPECT_EQ(minutes(35), Lifetime(7));
}

TEST(CcmPace, DoesNotDriftAtAnyInterval) {
  constexpr int kSteps = 3 * 100000;
  for (std::uint8_t code = 1; code <= 7; ++code) {
    CcmPace pace(Time(12345), code);
    for (int i = 0; i < kSteps; ++i) pace.GoOn(pace.next());
    EXPECT_EQ(Time(12345) + ThreeIntervals(code) * (kSteps / 3), pace.next()) << int{code};
  }
}

TEST(CcmPace, GivesThreeHundredMomentsASecondAtTheShortestInterval) {
  CcmPace pace(Time(0), 1);
  EXPECT_EQ(nanoseconds(0), pace.next());
  pace.GoOn(pace.next());
  EXPECT_EQ(nanoseconds(3333333), pace.next());
  pace.GoOn(pace.next());
  EXPECT_EQ(nanoseconds(6666666), pace.next());
  pace.GoOn(pace.next());
  EXPECT_EQ(milliseconds(10), pace.next());
}

TEST(CcmPace, LeavesOutWhatWasMissedAndKeepsItsPhase) {
  CcmPace pace(seconds(1), 2);
  pace.GoOn(seconds(1) + milliseconds(57));
  EXPECT_EQ(seconds(1) + milliseconds(60), pace.next());
  pace.GoOn(seconds(1) + milliseconds(70));
  EXPECT_EQ(seconds(1) + milliseconds(80), pace.next()) << "a moment that is now is missed too";
}

}  // namespace
}  // namespace cfm_mgr::engine
