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
  StampClock() : now_(MonotonicNow()), offset_(ReadClock(CLOCK_REALTIME) - now_) {}

  /** Not later than this clock was made, whatever was done to the real time meanwhile. */
  engine::Time ToMonotonic(engine::Time stamp) const {
    const engine::Time time = stamp - offset_;
    return time < now_ ? time : now_;
  }

  engine::Time now() const { return now_; }

 private:
  engine::Time now_;
  engine::Time offset_;
};

}  // namespace cfm_mgr::net

#endif
