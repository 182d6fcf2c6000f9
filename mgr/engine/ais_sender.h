/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_AIS_SENDER_H
#define CFM_MGR_ENGINE_AIS_SENDER_H

#include <algorithm>
#include <functional>
#include <utility>

#include "engine/context.h"

namespace cfm_mgr::engine {

/** Sends AIS frames as long as there is a reason to: the first at once, then one each period. */
class AisSender {
 public:
  /** @param send Called for each time. */
  AisSender(Context& context, std::function<void(Time now)> send)
      : context_(context),
        timer_(context.timers, [this](Time now) { Send(now); }),
        send_(std::move(send)) {}

  /**
   * @param needed Whether there is a reason now.
   * @param period A shorter one than before holds from now on, a longer one from the next frame on.
   */
  void Update(Time now, bool needed, Time period) {
    const bool changes = period != period_;
    period_ = period;
    if (!needed) {
      timer_.Stop();
    } else if (!timer_.due()) {
      timer_.Arm(now);
    } else if (changes) {
      timer_.Arm(std::min(*timer_.due(), now + period));
    }
  }

 private:
  void Send(Time now) {
    timer_.Arm(context_.surroundings.TimeOfSending(now) + period_);
    send_(now);
  }

  Context& context_;
  Timer timer_;
  std::function<void(Time now)> send_;
  Time period_{};
};

}  // namespace cfm_mgr::engine

#endif
