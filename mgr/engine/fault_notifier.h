/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_FAULT_NOTIFIER_H
#define CFM_MGR_ENGINE_FAULT_NOTIFIER_H

#include <cstdint>
#include <functional>

#include "engine/mep_settings.h"
#include "engine/timer_queue.h"

namespace cfm_mgr::engine {

/** States of the fault notification generator, IEEE 802.1Q 20.37; the codes of the MIB. */
enum class FaultState : std::uint8_t {
  Reset = 1,
  Defect = 2,
  ReportDefect = 3,  ///< Left as soon as it is entered.
  DefectReported = 4,
  DefectClearing = 5,
};

/**
 * The fault notification generator of a MEP.
 *
 * An alarm is raised when defects of the lowest priority that alarms, or above, have been there for
 * the alarm time, and again at once when a defect of higher priority than the one reported comes.
 * All is forgotten when there has been none for the reset time.
 */
class FaultNotifier {
 public:
  /**
   * @param on_alarm Called with the priority of the defect that an alarm is raised for.
   * @param on_timer Called when a deadline has changed the state, after any alarm.
   */
  FaultNotifier(TimerQueue& timers, std::function<void(unsigned priority)> on_alarm,
                std::function<void(Time now)> on_timer);

  /** Holds from the next Update() on; a time that is running stays as it is. */
  void Configure(const AlarmSettings& settings) { settings_ = settings; }
  /** @param highest Priority of the highest defect there is; 0 for none. */
  void Update(Time now, unsigned highest);
  void Reset();

  FaultState state() const { return state_; }
  /** Whether an alarm was raised and the fault that it was for is not over. */
  bool HasReported() const {
    return state_ == FaultState::DefectReported || state_ == FaultState::DefectClearing;
  }

 private:
  void EnterDefect(Time now);
  void Report();
  void Expire(Time now);
  void UpdateReported(Time now, bool indication);
  void UpdateClearing(Time now);

  Timer timer_;
  std::function<void(unsigned priority)> on_alarm_;
  std::function<void(Time now)> on_timer_;
  AlarmSettings settings_;
  FaultState state_ = FaultState::Reset;
  unsigned highest_ = defect_priority::kNone;
  unsigned reported_ = defect_priority::kNone;  ///< Of the last alarm.
};

}  // namespace cfm_mgr::engine

#endif
