/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_AIS_SENDER_H
#define CFM_MGR_ENGINE_AIS_SENDER_H

#include <functional>
#include <utility>

#include "engine/timer_queue.h"

namespace cfm_mgr::engine {

/** Sends AIS frames as long as there is a reason to: the first at once, then one each period. */
class AisSender {
 public:
  /** @param send Called for each time. */
  AisSender(TimerQueue& timers, std::function<void(Time now)> send)
      : timer_(timers, [this](Time now) { Send(now); }), send_(std::move(send)) {}

  /** @param needed Whether there is a reason now. */
  void Update(Time now, bool needed, Time period) {
    period_ = period;
    if (!needed) {
      timer_.Stop();
    } else if (!timer_.due()) {
      timer_.Arm(now);
    }
  }

 private:
  void Send(Time now) {
    timer_.Arm(now + period_);
    send_(now);
  }

  Timer timer_;
  std::function<void(Time now)> send_;
  Time period_{};
};

}  // namespace cfm_mgr::engine

#endif
