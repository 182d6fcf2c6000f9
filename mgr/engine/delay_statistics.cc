// SPDX-License-Identifier: Apache-2.0
#include "engine/delay_statistics.h"

#include <algorithm>
#include <cmath>

namespace cfm_mgr::engine {

void DurationStatistics::Add(Time value) {
  min_ = count_ == 0 ? value : std::min(min_, value);
  max_ = count_ == 0 ? value : std::max(max_, value);
  ++count_;
  const auto sample = static_cast<double>(value.count());
  const double difference = sample - mean_;
  mean_ += difference / static_cast<double>(count_);
  squares_ += difference * (sample - mean_);
}

DelaySummary DurationStatistics::Summary() const { return {min_, mean_, max_}; }

double DurationStatistics::Deviation() const {
  return count_ == 0 ? 0 : std::sqrt(squares_ / static_cast<double>(count_));
}

void DelayStatistics::Add(Time delay) {
  delay_.Add(delay);
  if (previous_) variation_.Add(std::chrono::abs(delay - *previous_));
  previous_ = delay;
}

}  // namespace cfm_mgr::engine
