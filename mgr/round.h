/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ROUND_H
#define CFM_MGR_ROUND_H

#include <algorithm>
#include <chrono>
#include <optional>

namespace cfm_mgr {

/**
 * Requests that come close together. What they make new is reported once they have ceased for a
 * moment, so that the reports neither repeat themselves nor keep the bus from the requests that
 * follow; but no request waits for long.
 */
class Round {
 public:
  using Clock = std::chrono::steady_clock;

  static constexpr std::chrono::milliseconds kQuiet{100};
  static constexpr std::chrono::milliseconds kLongest{1000};

  /** A request has come. */
  void Request(Clock::time_point now) {
    start_ = start_.value_or(now);
    last_ = now;
  }

  /** When the round is over if no request comes until then; nothing when none has begun. */
  std::optional<Clock::time_point> due() const {
    if (!start_) return {};
    return std::min<Clock::time_point>(last_ + kQuiet, *start_ + kLongest);
  }

  bool IsOver(Clock::time_point now) const { return start_ && now >= *due(); }

  void End() { start_.reset(); }

 private:
  std::optional<Clock::time_point> start_;
  Clock::time_point last_;
};

}  // namespace cfm_mgr

#endif
