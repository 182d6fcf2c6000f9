// SPDX-License-Identifier: Apache-2.0
#include "round.h"

#include <gtest/gtest.h>

namespace cfm_mgr_test {
namespace {

using cfm_mgr::Round;
using std::chrono::milliseconds;

const Round::Clock::time_point kStart{std::chrono::seconds(1000)};

TEST(Round, IsNotDueBeforeARequest) {
  const Round round;
  EXPECT_FALSE(round.due());
  EXPECT_FALSE(round.IsOver(kStart));
}

TEST(Round, IsOverOnceRequestsHaveCeased) {
  Round round;
  round.Request(kStart);
  round.Request(kStart + milliseconds(5));
  EXPECT_EQ(round.due(), kStart + milliseconds(5) + Round::kQuiet);
  EXPECT_FALSE(round.IsOver(kStart + Round::kQuiet));
  EXPECT_TRUE(round.IsOver(kStart + milliseconds(5) + Round::kQuiet));
}

TEST(Round, IsOverInTimeAlthoughRequestsGoOn) {
  Round round;
  for (auto now = kStart; now < kStart + Round::kLongest; now += Round::kQuiet / 2) {
    round.Request(now);
    EXPECT_FALSE(round.IsOver(now));
  }
  EXPECT_TRUE(round.IsOver(kStart + Round::kLongest));
}

TEST(Round, BeginsAnewWithTheNextRequest) {
  Round round;
  round.Request(kStart);
  round.End();
  EXPECT_FALSE(round.due());
  round.Request(kStart + Round::kLongest);
  EXPECT_EQ(round.due(), kStart + Round::kLongest + Round::kQuiet);
}

}  // namespace
}  // namespace cfm_mgr_test
