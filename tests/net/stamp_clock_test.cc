// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <vector>

#include "net/packet/clock.h"

namespace cfm_mgr::net {
namespace {

using engine::Time;
using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

/** A process that is interrupted before some of its readings of the clocks. */
struct Interrupted {
  static Time Read(clockid_t clock) {
    now += nanoseconds(20);
    if (reading < pauses.size()) now += pauses[reading];
    ++reading;
    return clock == CLOCK_REALTIME ? now + hours(1000) : now;
  }
  static void Begin(std::vector<Time> before_readings) {
    now = hours(5);
    reading = 0;
    pauses = std::move(before_readings);
  }

  static Time now;
  static std::size_t reading;
  static std::vector<Time> pauses;
};
Time Interrupted::now{};
std::size_t Interrupted::reading = 0;
std::vector<Time> Interrupted::pauses;

/** How much later than it was a stamp of one second ago is taken to have been. */
Time Error() {
  const StampClock clock(Interrupted::Read);
  const Time stamp = Interrupted::now - std::chrono::seconds(1);
  return clock.ToMonotonic(stamp + hours(1000)) - stamp;
}

TEST(StampClock, TurnsRealTimesIntoMonotonicOnes) {
  Interrupted::Begin({});
  EXPECT_LE(std::chrono::abs(Error()), nanoseconds(20));
}

TEST(StampClock, IsRightWhenTheProcessIsInterruptedBetweenTwoReadings) {
  Interrupted::Begin({Time{}, milliseconds(20)});
  EXPECT_LE(std::chrono::abs(Error()), nanoseconds(20)) << "before the real time was read";
  Interrupted::Begin({Time{}, Time{}, milliseconds(20)});
  EXPECT_LE(std::chrono::abs(Error()), nanoseconds(20)) << "after the real time was read";
}

TEST(StampClock, TakesTheBestOfItsReadingsWhenItIsAlwaysInterrupted) {
  std::vector<Time> pauses(60, milliseconds(30));
  pauses[7] = pauses[8] = microseconds(30);
  Interrupted::Begin(pauses);
  EXPECT_LE(std::chrono::abs(Error()), microseconds(31));
}

TEST(StampClock, GivesNoTimeThatIsYetToCome) {
  Interrupted::Begin({});
  const StampClock clock(Interrupted::Read);
  EXPECT_EQ(clock.now(), clock.ToMonotonic(Interrupted::now + hours(2000)));
}

}  // namespace
}  // namespace cfm_mgr::net
