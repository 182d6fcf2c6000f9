// SPDX-License-Identifier: Apache-2.0
#include "cpu_log.h"

#include <fstream>
#include <string>

#include "rendezvous.h"

namespace cfm_bench {
namespace {

/** Milliseconds that a process has run. */
double UsedBy(pid_t process) {
  constexpr double kNanosecondsPerMillisecond = 1e6;
  std::ifstream file("/proc/" + std::to_string(process) + "/schedstat");
  double nanoseconds = 0;
  file >> nanoseconds;
  return nanoseconds / kNanosecondsPerMillisecond;
}

}  // namespace

void CpuLog::Sample() {
  double used = 0;
  for (const pid_t process : processes_) {
    used += UsedBy(process);
  }
  entries_.push_back({Now(), used});
}

double CpuLog::Milliseconds(std::int64_t start, std::int64_t end) const {
  return UsedAt(end) - UsedAt(start);
}

double CpuLog::UsedAt(std::int64_t time) const {
  const Entry* before = &entries_.front();
  for (const Entry& entry : entries_) {
    if (entry.at >= time) {
      const double passed = static_cast<double>(entry.at - before->at);
      const double part = passed > 0 ? static_cast<double>(time - before->at) / passed : 1;
      return before->used + part * (entry.used - before->used);
    }
    before = &entry;
  }
  return before->used;
}

}  // namespace cfm_bench
