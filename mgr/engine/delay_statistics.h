/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_DELAY_STATISTICS_H
#define CFM_MGR_ENGINE_DELAY_STATISTICS_H

#include <cstdint>
#include <optional>

#include "engine/notifications.h"
#include "engine/time.h"

namespace cfm_mgr::engine {

/** Least, mean and greatest of the durations given, and how far they spread. */
class DurationStatistics {
 public:
  void Add(Time value);

  DelaySummary Summary() const;
  /** Standard deviation of all values given, in nanoseconds; 0 without any. */
  double Deviation() const;

 private:
  std::uint64_t count_ = 0;
  Time min_{};
  Time max_{};
  // Welford's running mean and sum of squared differences: no cancellation between large sums.
  double mean_ = 0;
  double squares_ = 0;
};

/** Two-way delays in the order in which their replies came, and the variation between them. */
class DelayStatistics {
 public:
  void Add(Time delay);

  DelaySummary Delay() const { return delay_.Summary(); }
  DelaySummary Variation() const { return variation_.Summary(); }
  double Deviation() const { return delay_.Deviation(); }

 private:
  DurationStatistics delay_;
  DurationStatistics variation_;
  std::optional<Time> previous_;
};

}  // namespace cfm_mgr::engine

#endif
