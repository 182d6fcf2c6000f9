// SPDX-License-Identifier: Apache-2.0
#include "engine/fault_notifier.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "samples.h"

namespace cfm_mgr::engine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FaultNotifierTest : public testing::Test {
 protected:
  FaultNotifierTest() {
    AlarmSettings settings;
    settings.lowest_priority = 2;
    settings.alarm_time = milliseconds(2500);
    settings.reset_time = seconds(10);
    notifier_.Configure(settings);
  }

  void See(unsigned highest) { notifier_.Update(now_, highest); }
  void Pass(Time duration) {
    now_ += duration;
    timers_.RunDue(now_);
  }
  /** Leads to this state with defect 3, the last one reported where one was. */
  void Bring(FaultState state) {
    if (state == FaultState::Reset) return;
    See(3);
    if (state == FaultState::Defect) return;
    Pass(milliseconds(2500));
    if (state == FaultState::DefectReported) return;
    See(0);
  }

  Time now_{};
  TimerQueue timers_;
  std::vector<unsigned> alarms_;
  int timer_changes_ = 0;
  FaultNotifier notifier_{timers_, [this](unsigned priority) { alarms_.push_back(priority); },
                          [this](Time) { ++timer_changes_; }};
};

struct Transition {
  FaultState from;
  const char* event;  ///< "time", or nothing but what is seen.
  unsigned seen;      ///< Priority of the highest defect.
  FaultState to;
  bool alarm;
};

constexpr FaultState kReset = FaultState::Reset;
constexpr FaultState kDefect = FaultState::Defect;
constexpr FaultState kReported = FaultState::DefectReported;
constexpr FaultState kClearing = FaultState::DefectClearing;

// The state machine of IEEE 802.1Q 20.37; the lowest priority that alarms is 2, 3 was reported.
constexpr Transition kTransitions[] = {
    {kReset, "sees", 0, kReset, false},       {kReset, "sees", 1, kReset, false},
    {kReset, "sees", 2, kDefect, false},      {kReset, "time", 0, kReset, false},
    {kDefect, "sees", 0, kReset, false},      {kDefect, "sees", 1, kReset, false},
    {kDefect, "sees", 5, kDefect, false},     {kDefect, "time", 0, kReported, true},
    {kReported, "sees", 0, kClearing, false}, {kReported, "sees", 1, kClearing, false},
    {kReported, "sees", 2, kReported, false}, {kReported, "sees", 3, kReported, false},
    {kReported, "sees", 4, kReported, true},  {kReported, "time", 0, kReported, false},
    {kClearing, "sees", 0, kClearing, false}, {kClearing, "sees", 1, kClearing, false},
    {kClearing, "sees", 3, kReported, false}, {kClearing, "sees", 4, kDefect, false},
    {kClearing, "time", 0, kReset, false},
};

class FaultNotifierTransitions : public FaultNotifierTest,
                                 public testing::WithParamInterface<Transition> {};

TEST_P(FaultNotifierTransitions, AreThoseOfTheStandard) {
  const Transition& transition = GetParam();
  Bring(transition.from);
  ASSERT_EQ(transition.from, notifier_.state());
  alarms_.clear();
  if (std::string(transition.event) == "time") {
    Pass(seconds(10));
  } else {
    See(transition.seen);
  }
  EXPECT_EQ(transition.to, notifier_.state());
  EXPECT_EQ(transition.alarm, !alarms_.empty());
}

INSTANTIATE_TEST_SUITE_P(Table, FaultNotifierTransitions, testing::ValuesIn(kTransitions));

TEST_F(FaultNotifierTest, RaisesTheAlarmAtTheAlarmTimeAndNoSooner) {
  See(3);
  Pass(milliseconds(2499));
  EXPECT_THAT(alarms_, IsEmpty());
  Pass(milliseconds(1));
  EXPECT_THAT(alarms_, ElementsAre(3));
  EXPECT_EQ(1, timer_changes_);
  Pass(hours(1));
  EXPECT_THAT(alarms_, ElementsAre(3)) << "one alarm for one fault";
}

TEST_F(FaultNotifierTest, NamesTheHighestDefectAtThatMoment) {
  See(3);
  Pass(seconds(1));
  See(5);
  See(4);
  Pass(milliseconds(1500));
  EXPECT_THAT(alarms_, ElementsAre(4));
}

TEST_F(FaultNotifierTest, CountsTheAlarmTimeAnewAfterAPause) {
  See(3);
  Pass(seconds(2));
  See(0);
  See(3);
  Pass(milliseconds(2499));
  EXPECT_THAT(alarms_, IsEmpty());
  Pass(milliseconds(1));
  EXPECT_THAT(alarms_, ElementsAre(3));
}

TEST_F(FaultNotifierTest, IsQuietAboutAFaultThatComesBackWithinTheResetTime) {
  Bring(FaultState::DefectClearing);
  Pass(milliseconds(9999));
  See(3);
  Pass(hours(1));
  EXPECT_THAT(alarms_, ElementsAre(3));
  See(0);
  Pass(seconds(10));
  EXPECT_EQ(FaultState::Reset, notifier_.state());
  See(3);
  Pass(milliseconds(2500));
  EXPECT_THAT(alarms_, ElementsAre(3, 3));
}

TEST_F(FaultNotifierTest, RaisesAnotherAlarmForAHigherDefectOnly) {
  See(2);
  Pass(milliseconds(2500));
  See(4);
  See(3);
  See(4);
  EXPECT_THAT(alarms_, ElementsAre(2, 4));
  See(5);
  EXPECT_THAT(alarms_, ElementsAre(2, 4, 5));
}

TEST_F(FaultNotifierTest, AlarmsFromTheLowestPriorityUpwards) {
  for (unsigned lowest = 1; lowest <= 6; ++lowest) {
    AlarmSettings settings;
    settings.lowest_priority = lowest;
    notifier_.Configure(settings);
    for (unsigned priority = 1; priority <= 5; ++priority) {
      alarms_.clear();
      notifier_.Reset();
      See(priority);
      Pass(Time{});
      EXPECT_EQ(priority >= lowest, !alarms_.empty()) << lowest << ' ' << priority;
    }
  }
}

TEST_F(FaultNotifierTest, ForgetsAllWhenReset) {
  Bring(FaultState::Defect);
  notifier_.Reset();
  Pass(hours(1));
  EXPECT_EQ(FaultState::Reset, notifier_.state());
  EXPECT_THAT(alarms_, IsEmpty());
}

}  // namespace
}  // namespace cfm_mgr::engine
