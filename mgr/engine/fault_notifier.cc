// SPDX-License-Identifier: Apache-2.0
#include "engine/fault_notifier.h"

#include <utility>

namespace cfm_mgr::engine {

FaultNotifier::FaultNotifier(TimerQueue& timers, std::function<void(unsigned priority)> on_alarm,
                             std::function<void(Time now)> on_timer)
    : timer_(timers, [this](Time now) { Expire(now); }),
      on_alarm_(std::move(on_alarm)),
      on_timer_(std::move(on_timer)) {}

void FaultNotifier::Update(Time now, unsigned highest) {
  highest_ = highest;
  const bool indication = highest >= settings_.lowest_priority;
  switch (state_) {
    case FaultState::Reset:
      if (indication) EnterDefect(now);
      return;
    case FaultState::Defect:
      if (!indication) Reset();
      return;
    case FaultState::ReportDefect:
      return;
    case FaultState::DefectReported:
      UpdateReported(now, indication);
      return;
    case FaultState::DefectClearing:
      if (indication) UpdateClearing(now);
      return;
  }
}

void FaultNotifier::Reset() {
  timer_.Stop();
  state_ = FaultState::Reset;
  reported_ = defect_priority::kNone;
}

void FaultNotifier::EnterDefect(Time now) {
  state_ = FaultState::Defect;
  timer_.Arm(now + settings_.alarm_time);
}

void FaultNotifier::Report() {
  state_ = FaultState::ReportDefect;
  reported_ = highest_;
  on_alarm_(reported_);
  state_ = FaultState::DefectReported;
}

void FaultNotifier::UpdateReported(Time now, bool indication) {
  if (!indication) {
    state_ = FaultState::DefectClearing;
    timer_.Arm(now + settings_.reset_time);
  } else if (highest_ > reported_) {
    Report();
  }
}

void FaultNotifier::UpdateClearing(Time now) {
  if (highest_ > reported_) {
    EnterDefect(now);
  } else {
    timer_.Stop();
    state_ = FaultState::DefectReported;
  }
}

void FaultNotifier::Expire(Time now) {
  if (state_ == FaultState::Defect) {
    Report();
  } else {
    Reset();
  }
  on_timer_(now);
}

}  // namespace cfm_mgr::engine
