/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The intervals of CCMs, IEEE 802.1Q 21.6.1.3, by their codes:
 * 3.33 ms 1, 10 ms 2, 100 ms 3, 1 s 4, 10 s 5, 1 min 6, 10 min 7.
 */
#ifndef CFM_MGR_ENGINE_CCM_INTERVAL_H
#define CFM_MGR_ENGINE_CCM_INTERVAL_H

#include <cstdint>

#include "engine/time.h"

namespace cfm_mgr::engine {

/** Whether a code stands for an interval. */
constexpr bool IsInterval(std::uint8_t code) { return code >= 1 && code <= 7; }

/** Three intervals: the shortest one is 10/3 ms, of which only the triple is a number of ns. */
Time ThreeIntervals(std::uint8_t code);

/** An interval, rounded up to whole nanoseconds. */
Time Interval(std::uint8_t code);

/** 3.5 intervals, after which what CCMs have told is void; rounded up to whole nanoseconds. */
Time Lifetime(std::uint8_t code);

/** The moments at which CCMs are sent: they do not drift, whatever the interval and its rounding.
 */
class CcmPace {
 public:
  CcmPace() = default;
  /** The first moment is @p start. */
  CcmPace(Time start, std::uint8_t code) : triple_(ThreeIntervals(code)), base_(start) {}

  Time next() const { return base_ + triple_ * step_ / 3; }
  /** Goes on to the first moment after both next() and @p now: what was missed is left out. */
  void GoOn(Time now);

 private:
  Time triple_{3};
  Time base_{};
  int step_ = 0;  ///< 0 to 2.
};

}  // namespace cfm_mgr::engine

#endif
