// SPDX-License-Identifier: Apache-2.0
#include "core/script.h"

namespace cfm_agent {

std::optional<Command> Script::Next(TimePoint now, bool in_step, bool idle) {
  started_ = started_ || in_step || now >= give_up_;
  if (!started_ || !idle || commands_.empty()) {
    return std::nullopt;
  }
  Command next = std::move(commands_.front());
  commands_.pop_front();
  return next;
}

std::optional<TimePoint> Script::Deadline() const {
  return started_ || commands_.empty() ? std::nullopt : std::optional(give_up_);
}

void Script::Note(EndReason reason) {
  if (!failure_ && reason != EndReason::Complete) {
    failure_ = reason;
  }
}

}  // namespace cfm_agent
