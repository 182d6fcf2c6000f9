/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_DEFECTS_H
#define CFM_MGR_ENGINE_DEFECTS_H

#include <algorithm>
#include <functional>
#include <utility>

#include "engine/mep_settings.h"
#include "engine/timer_queue.h"

namespace cfm_mgr::engine {

/** The defects of a MEP at one moment. */
struct Defects {
  bool rdi = false;
  bool mac_status = false;
  bool remote_ccm = false;
  bool error_ccm = false;
  bool xcon_ccm = false;
  bool ais = false;
};

/** Priority of the highest of these defects; AIS has none. */
inline unsigned HighestPriority(const Defects& defects) {
  if (defects.xcon_ccm) return defect_priority::kXconCcm;
  if (defects.error_ccm) return defect_priority::kErrorCcm;
  if (defects.remote_ccm) return defect_priority::kRemoteCcm;
  if (defects.mac_status) return defect_priority::kMacStatus;
  if (defects.rdi) return defect_priority::kRdi;
  return defect_priority::kNone;
}

/** A defect that a frame raises for a time. */
class HeldDefect {
 public:
  /** @param on_over Called when the time of the last frame has run out. */
  HeldDefect(TimerQueue& timers, std::function<void(Time now)> on_over)
      : timer_(timers, std::move(on_over)) {}

  /** Present until then, or longer where it was to be already. */
  void HoldUntil(Time end) { timer_.Arm(std::max(end, timer_.due().value_or(end))); }
  /** Present until then and no longer. */
  void EndAt(Time end) { timer_.Arm(end); }
  void Clear() { timer_.Stop(); }
  bool present() const { return timer_.due().has_value(); }

 private:
  Timer timer_;
};

}  // namespace cfm_mgr::engine

#endif
