/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_BENCH_BUS_CPU_LOG_H
#define CFM_BENCH_BUS_CPU_LOG_H

#include <sys/types.h>

#include <cstdint>
#include <vector>

namespace cfm_bench {

/** The processor time of some processes as it grows: steadier than the clock on a busy machine. */
class CpuLog {
 public:
  explicit CpuLog(std::vector<pid_t> processes) : processes_(std::move(processes)) {}

  /** Takes note of the time that the processes have used by now. */
  void Sample();

  /** What they used from one point in time to another, in milliseconds. */
  double Milliseconds(std::int64_t start, std::int64_t end) const;

 private:
  struct Entry {
    std::int64_t at;
    double used;
  };

  double UsedAt(std::int64_t time) const;

  std::vector<pid_t> processes_;
  std::vector<Entry> entries_;
};

}  // namespace cfm_bench

#endif
