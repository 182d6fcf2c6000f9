/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_PACKET_CLOCK_H
#define CFM_MGR_NET_PACKET_CLOCK_H

#include <ctime>

#include "engine/time.h"

namespace cfm_mgr::net {

inline engine::Time ToTime(const timespec& time) {
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

inline engine::Time ReadClock(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return ToTime(time);
}

/** The clock that a network of real interfaces runs by. */
inline engine::Time MonotonicNow() { return ReadClock(CLOCK_MONOTONIC); }

/** Turns the kernel's receive time stamps, which follow the real time, into monotonic ones. */
class StampClock {
 public:
  using Read = engine::Time (*)(clockid_t clock);

  /**
   * Compares the two clocks. When the process was interrupted between readings, which would make
   * stamps wrong by as much, it compares them again.
   */
  explicit StampClock(Read read = ReadClock) {
    engine::Time least = engine::Time::max();
    for (int attempt = 0; attempt < kAttempts && least > kClose; ++attempt) {
      const engine::Time before = read(CLOCK_MONOTONIC);
      const engine::Time real = read(CLOCK_REALTIME);
      now_ = read(CLOCK_MONOTONIC);
      if (now_ - before >= least) continue;
      least = now_ - before;
      offset_ = real - (before + least / 2);
    }
  }

  /** Not later than this clock was made, whatever was done to the real time meanwhile. */
  engine::Time ToMonotonic(engine::Time stamp) const {
    const engine::Time time = stamp - offset_;
    return time < now_ ? time : now_;
  }

  engine::Time now() const { return now_; }

 private:
  static constexpr int kAttempts = 5;
  static constexpr engine::Time kClose = std::chrono::microseconds(10);

  engine::Time now_{};
  engine::Time offset_{};
};

}  // namespace cfm_mgr::net

#endif
