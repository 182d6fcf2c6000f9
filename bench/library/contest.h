/* SPDX-License-Identifier: Apache-2.0 */
// The library against a floor: two ways to the same end, measured in turns, and what their ratio
// may be at most.
#ifndef CFM_BENCH_LIBRARY_CONTEST_H
#define CFM_BENCH_LIBRARY_CONTEST_H

#include <cstddef>
#include <functional>
#include <string>

namespace cfm_bench {

/// One timed pass. What has to be set up or put back before and after it is not timed.
using Pass = std::function<double()>;

/// Sets up whatever the passes of one side share.
using Side = std::function<Pass()>;

/// Registers a contest.
///
/// @param work  what is measured, such as "update_config/first"
/// @param size  how much of it, such as the number of endpoints
/// @param goal  what the library's time divided by the floor's may be at most
void Contest(const std::string& work, std::size_t size, double goal, Side library, Side floor);

/// Runs all contests and prints a line for each, then how the library's time per entity grows.
/// Whether every goal was met.
bool RunContests(int argc, char** argv);

/// Processor time of this thread, in seconds. Neither side waits for anything, and unlike time on
/// the wall it does not count what else the machine does.
double ProcessorSeconds();

/// How much processor time a call takes, in seconds.
template <typename Call>
double Seconds(Call&& call) {
  const double start = ProcessorSeconds();
  call();
  return ProcessorSeconds() - start;
}

/// How often work of this size is repeated within a pass, so that reading the clock, which takes
/// the better part of a microsecond, does not count.
inline std::size_t RepeatsOf(std::size_t size) { return size < 1000 ? 2000 / size : 1; }

/// Processor time of one call among many, each told its number, from 0 on.
template <typename Call>
double SecondsOfOne(std::size_t calls, Call&& call) {
  const double seconds = Seconds([&] {
    for (std::size_t i = 0; i < calls; ++i) {
      call(i);
    }
  });
  return seconds / static_cast<double>(calls);
}

/// Processor time of a call per object.
template <typename Objects, typename Call>
double SecondsOfEach(Objects&& objects, Call&& call) {
  const double seconds = Seconds([&] {
    for (auto& object : objects) {
      call(object);
    }
  });
  return seconds / static_cast<double>(objects.size());
}

}  // namespace cfm_bench

#endif
