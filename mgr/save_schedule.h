/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_SAVE_SCHEDULE_H
#define CFM_MGR_SAVE_SCHEDULE_H

#include <algorithm>
#include <chrono>
#include <optional>

namespace cfm_mgr {

/**
 * When to save a store that changes. Changes wait a moment for others, and the longer the last save
 * took, the longer they wait, so that saving takes a tenth of the time at most.
 */
class SaveSchedule {
 public:
  using Clock = std::chrono::steady_clock;

  static constexpr std::chrono::milliseconds kDelay{100};
  static constexpr std::chrono::seconds kRetryDelay{5};

  /** The store has changed. */
  void Change(Clock::time_point now) {
    if (!due_) due_ = now + std::max<Clock::duration>(kDelay, 10 * cost_);
  }

  /** A save has been done. */
  void Saved(Clock::time_point start, Clock::time_point end) {
    cost_ = end - start;
    due_.reset();
  }

  /** A save has failed: try again, but not at once. */
  void Failed(Clock::time_point now) { due_ = now + kRetryDelay; }

  /** When to save next; nothing while all is saved. */
  std::optional<Clock::time_point> due() const { return due_; }

 private:
  std::optional<Clock::time_point> due_;
  Clock::duration cost_{};
};

}  // namespace cfm_mgr

#endif
