/* SPDX-License-Identifier: Apache-2.0 */
// Tells when a file that was written has come to rest.
#ifndef CFM_AGENT_CORE_SETTLE_TIMER_H
#define CFM_AGENT_CORE_SETTLE_TIMER_H

#include <algorithm>
#include <chrono>
#include <optional>

namespace cfm_agent {

using TimePoint = std::chrono::steady_clock::time_point;
using Duration = std::chrono::steady_clock::duration;

// Due once nothing has happened to the file for `quiet` after it was completely written, and at
// the latest `patience` after that.
class SettleTimer {
 public:
  SettleTimer(Duration quiet, Duration patience) : quiet_(quiet), patience_(patience) {}

  // The file was written and closed, replaced, or removed.
  void Finished(TimePoint now) {
    if (!deadline_) {
      deadline_ = now + patience_;
    }
    due_ = std::min(now + quiet_, *deadline_);
  }

  // The file is being written. By itself no reason to look at it.
  void Busy(TimePoint now) {
    if (deadline_) {
      Finished(now);
    }
  }

  std::optional<TimePoint> due() const { return due_; }

  // Whether the time has come; it comes once.
  bool Take(TimePoint now) {
    if (!due_ || now < *due_) {
      return false;
    }
    due_.reset();
    deadline_.reset();
    return true;
  }

 private:
  Duration quiet_;
  Duration patience_;
  std::optional<TimePoint> due_;
  std::optional<TimePoint> deadline_;
};

}  // namespace cfm_agent

#endif
