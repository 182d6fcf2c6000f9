// SPDX-License-Identifier: Apache-2.0
#include "core/script.h"

#include <gtest/gtest.h>

namespace cfm_agent {
namespace {

using std::chrono::seconds;

TimePoint At(int time) { return TimePoint(seconds(time)); }

class ScriptTest : public ::testing::Test {
 protected:
  Script script_{At(10)};
};

TEST_F(ScriptTest, WaitsForAServerInStep) {
  script_.Add(StatisticsCommand{});
  EXPECT_FALSE(script_.Next(At(0), false, true).has_value());
  EXPECT_EQ(script_.Deadline(), At(10));
  EXPECT_TRUE(script_.Next(At(1), true, true).has_value());
  EXPECT_EQ(script_.Deadline(), std::nullopt);
}

TEST_F(ScriptTest, DoesNotWaitForEver) {
  script_.Add(StatisticsCommand{});
  EXPECT_FALSE(script_.Next(At(9), false, true).has_value());
  EXPECT_TRUE(script_.Next(At(10), false, true).has_value());
}

TEST_F(ScriptTest, GoesOnWhenTheServerIsLostOnTheWay) {
  script_.Add(StatisticsCommand{});
  script_.Add(StatisticsCommand{});
  EXPECT_TRUE(script_.Next(At(1), true, true).has_value());
  EXPECT_TRUE(script_.Next(At(2), false, true).has_value());
}

TEST_F(ScriptTest, RunsOneCommandAfterTheOther) {
  script_.Add(StatisticsCommand{});
  script_.Add(ShowCommand{});
  script_.Close();
  EXPECT_TRUE(std::holds_alternative<StatisticsCommand>(*script_.Next(At(0), true, true)));
  EXPECT_FALSE(script_.Next(At(1), true, false).has_value());
  EXPECT_FALSE(script_.Done(false));
  EXPECT_TRUE(std::holds_alternative<ShowCommand>(*script_.Next(At(2), true, true)));
  EXPECT_FALSE(script_.Done(false));
  EXPECT_TRUE(script_.Done(true));
}

TEST_F(ScriptTest, IsNotDoneBeforeItIsClosed) {
  EXPECT_FALSE(script_.Done(true));
  script_.Close();
  EXPECT_TRUE(script_.Done(true));
}

TEST_F(ScriptTest, KeepsTheFirstFailure) {
  script_.Note(EndReason::Complete);
  EXPECT_EQ(script_.failure(), std::nullopt);
  script_.Note(EndReason::Refused);
  script_.Note(EndReason::TimedOut);
  script_.Note(EndReason::Complete);
  EXPECT_EQ(script_.failure(), EndReason::Refused);
}

}  // namespace
}  // namespace cfm_agent
