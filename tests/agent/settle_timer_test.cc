// SPDX-License-Identifier: Apache-2.0
#include "core/settle_timer.h"

#include <gtest/gtest.h>

namespace cfm_agent {
namespace {

using std::chrono::milliseconds;

class SettleTimerTest : public ::testing::Test {
 protected:
  static TimePoint At(int time) { return TimePoint(milliseconds(time)); }

  SettleTimer timer_{milliseconds(100), milliseconds(500)};
};

TEST_F(SettleTimerTest, IsNotDueByItself) {
  EXPECT_EQ(timer_.due(), std::nullopt);
  EXPECT_FALSE(timer_.Take(At(1'000'000)));
}

TEST_F(SettleTimerTest, IsDueOnceAfterTheQuietTime) {
  timer_.Finished(At(0));
  EXPECT_FALSE(timer_.Take(At(99)));
  EXPECT_TRUE(timer_.Take(At(100)));
  EXPECT_FALSE(timer_.Take(At(101)));
  EXPECT_EQ(timer_.due(), std::nullopt);
}

TEST_F(SettleTimerTest, StartsAnewWithEveryWrite) {
  timer_.Finished(At(0));
  timer_.Finished(At(90));
  EXPECT_FALSE(timer_.Take(At(189)));
  EXPECT_TRUE(timer_.Take(At(190)));
}

TEST_F(SettleTimerTest, IsPutOffByAWriteThatGoesOn) {
  timer_.Finished(At(0));
  timer_.Busy(At(90));
  EXPECT_FALSE(timer_.Take(At(189)));
  EXPECT_TRUE(timer_.Take(At(190)));
}

TEST_F(SettleTimerTest, IsNotStartedByAWriteThatGoesOn) {
  timer_.Busy(At(0));
  EXPECT_EQ(timer_.due(), std::nullopt);
}

TEST_F(SettleTimerTest, LosesPatienceWithAFileThatNeverRests) {
  for (int time = 0; time < 500; time += 50) {
    timer_.Finished(At(time));
    EXPECT_FALSE(timer_.Take(At(time + 49)));
  }
  EXPECT_TRUE(timer_.Take(At(500)));
}

TEST_F(SettleTimerTest, HasItsFullPatienceTheNextTime) {
  timer_.Finished(At(0));
  ASSERT_TRUE(timer_.Take(At(100)));
  timer_.Finished(At(450));
  EXPECT_EQ(timer_.due(), At(550));
}

}  // namespace
}  // namespace cfm_agent
