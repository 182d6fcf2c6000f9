/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * When a test sends its messages.
 */
#ifndef CFM_MGR_ENGINE_PACER_H
#define CFM_MGR_ENGINE_PACER_H

#include <cstdint>

#include "engine/time.h"

namespace cfm_mgr::engine {

/**
 * A number of messages at a fixed pace, the first at once, then a wait for the replies to the last.
 *
 * A message that could not be sent in its time is sent when the owner comes to it. Those after it
 * keep to the pace from the moment they were due, or from that one when a whole interval was
 * missed, so that a busy owner never makes a burst.
 */
class Pacer {
 public:
  Pacer(Time start, std::uint32_t count, Time interval, Time wait)
      : count_(count), interval_(interval), wait_(wait), next_(start) {}

  /** Whether a message is to be sent now; it counts as sent. */
  bool TakeDue(Time now) {
    if (sent_ == count_ || now < next_) return false;
    ++sent_;
    if (sent_ == count_) {
      next_ = now + wait_;
    } else {
      next_ += interval_;
      if (next_ <= now) next_ = now + interval_;
    }
    return true;
  }

  std::uint32_t sent() const { return sent_; }

  /** Whether all was sent and waited for. */
  bool Ended(Time now) const { return sent_ == count_ && now >= next_; }

  /** When the next message is due, or the end. */
  Time NextDeadline() const { return next_; }

 private:
  std::uint32_t count_;
  Time interval_;
  Time wait_;
  Time next_;
  std::uint32_t sent_ = 0;
};

/** How long a test waits for replies after its last message. */
inline constexpr Time kReplyWait = std::chrono::seconds(5);

}  // namespace cfm_mgr::engine

#endif
