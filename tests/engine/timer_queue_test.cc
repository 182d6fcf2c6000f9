// SPDX-License-Identifier: Apache-2.0
#include "engine/timer_queue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>

namespace cfm_mgr::engine {
namespace {

using testing::ElementsAre;
using Order = std::vector<int>;

TEST(TimerQueue, RunsTimersInOrderOfTheirDeadlines) {
  TimerQueue queue;
  Order order;
  Timer late(queue, [&](Time) { order.push_back(3); });
  Timer early(queue, [&](Time) { order.push_back(1); });
  Timer middle(queue, [&](Time) { order.push_back(2); });
  late.Arm(Time(30));
  early.Arm(Time(10));
  middle.Arm(Time(20));
  EXPECT_EQ(Time(10), queue.Next());
  queue.RunDue(Time(20));
  EXPECT_THAT(order, ElementsAre(1, 2));
  EXPECT_EQ(Time(30), queue.Next());
}

TEST(TimerQueue, RunsTimersOfOneMomentInOrderOfArming) {
  TimerQueue queue;
  Order order;
  Timer a(queue, [&](Time) { order.push_back(1); });
  Timer b(queue, [&](Time) { order.push_back(2); });
  Timer c(queue, [&](Time) { order.push_back(3); });
  a.Arm(Time(5));
  b.Arm(Time(5));
  c.Arm(Time(5));
  a.Arm(Time(5));
  queue.RunDue(Time(5));
  EXPECT_THAT(order, ElementsAre(2, 3, 1));
}

TEST(TimerQueue, ForgetsTimersThatWereStoppedOrAreGone) {
  TimerQueue queue;
  int runs = 0;
  Timer stopped(queue, [&](Time) { ++runs; });
  stopped.Arm(Time(1));
  stopped.Stop();
  EXPECT_FALSE(stopped.due());
  auto gone = std::make_unique<Timer>(queue, [&](Time) { ++runs; });
  gone->Arm(Time(1));
  gone.reset();
  EXPECT_FALSE(queue.Next());
  queue.RunDue(Time(100));
  EXPECT_EQ(0, runs);
}

TEST(TimerQueue, TellsTheDeadlineOfATimerThatWasPutOff) {
  TimerQueue queue;
  int runs = 0;
  Timer timer(queue, [&](Time) { ++runs; });
  timer.Arm(Time(10));
  timer.Arm(Time(50));
  EXPECT_EQ(Time(50), timer.due());
  EXPECT_EQ(Time(50), queue.Next());
  queue.RunDue(Time(49));
  EXPECT_EQ(0, runs);
  queue.RunDue(Time(50));
  EXPECT_EQ(1, runs);
  EXPECT_FALSE(timer.due());
}

TEST(TimerQueue, LetsActionsArmAndStopTimers) {
  TimerQueue queue;
  Order order;
  Timer never(queue, [&](Time) { order.push_back(9); });
  Timer next(queue, [&](Time) { order.push_back(2); });
  Timer first(queue, [&](Time now) {
    order.push_back(1);
    never.Stop();
    next.Arm(now);
  });
  first.Arm(Time(1));
  never.Arm(Time(2));
  queue.RunDue(Time(2));
  EXPECT_THAT(order, ElementsAre(1, 2));
}

TEST(TimerQueue, KeepsTheOrderThroughManyChanges) {
  std::mt19937 random(1);
  TimerQueue queue;
  std::vector<std::unique_ptr<Timer>> timers;
  std::vector<Time> due(200);
  Time last{};
  std::size_t runs = 0;
  for (std::size_t i = 0; i < due.size(); ++i) {
    timers.push_back(std::make_unique<Timer>(queue, [&, i](Time) {
      EXPECT_LE(last, due[i]);
      last = due[i];
      ++runs;
    }));
  }
  std::size_t armed = 0;
  for (int change = 0; change < 5000; ++change) {
    const std::size_t i = random() % due.size();
    if (random() % 4 == 0) {
      timers[i]->Stop();
    } else {
      due[i] = Time(random() % 1000);
      timers[i]->Arm(due[i]);
    }
  }
  for (const auto& timer : timers) armed += timer->due() ? 1U : 0U;
  queue.RunDue(Time(1000));
  EXPECT_EQ(armed, runs);
  EXPECT_GT(runs, 100U);
}

}  // namespace
}  // namespace cfm_mgr::engine
