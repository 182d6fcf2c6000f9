// SPDX-License-Identifier: Apache-2.0
#include "contest.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace cfm_bench {
namespace {

struct Entry {
  std::string name;
  std::string work;
  std::size_t size;
  double goal;
};

std::vector<Entry>& Entries() {
  static std::vector<Entry> entries;
  return entries;
}

std::string NameOf(const std::string& work, std::size_t size) {
  return work + "/" + std::to_string(size);
}

void Register(const std::string& name, Side side) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [side = std::move(side)](benchmark::State& state) {
                                 const Pass pass = side();
                                 pass();
                                 for ([[maybe_unused]] auto _ : state) {
                                   state.SetIterationTime(pass());
                                 }
                               })
      ->UseManualTime()
      ->Iterations(1);
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

// Keeps the time of every repetition, by the benchmark's name.
class Times : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Iteration) {
        seconds_[run.run_name.function_name].push_back(run.real_accumulated_time /
                                                       static_cast<double>(run.iterations));
      }
    }
  }

  // The repetitions of one benchmark; none if it was filtered out.
  std::vector<double> Of(const std::string& name) const {
    const auto found = seconds_.find(name);
    return found == seconds_.end() ? std::vector<double>{} : found->second;
  }

 private:
  std::map<std::string, std::vector<double>> seconds_;
};

double Microseconds(double seconds) { return seconds * 1e6; }

// Prints one contest.
bool Judge(const Entry& entry, const Times& times) {
  const std::vector<double> library = times.Of(entry.name + "/library");
  const std::vector<double> floor = times.Of(entry.name + "/floor");
  if (library.empty() || floor.empty()) {
    return true;
  }
  const double ratio = Median(library) / Median(floor);
  const double best = *std::min_element(library.begin(), library.end()) /
                      *std::min_element(floor.begin(), floor.end());
  const bool met = ratio <= entry.goal;
  std::printf("%-34s %7zu %12.3f %12.3f %7.2f %7.2f %6.2f  %s\n", entry.work.c_str(), entry.size,
              Microseconds(Median(floor)), Microseconds(Median(library)), ratio, best, entry.goal,
              met ? "met" : "MISSED");
  return met;
}

// The library's time per entity in this work; nothing if it did not run.
std::optional<double> SecondsPerEntity(const std::string& work, std::size_t size,
                                       const Times& times) {
  const std::vector<double> seconds = times.Of(NameOf(work, size) + "/library");
  if (seconds.empty()) {
    return std::nullopt;
  }
  return Median(seconds) / static_cast<double>(size);
}

// Prints by how much the time per entity of one work grows with the size, if it ran at both sizes.
bool JudgeGrowth(const std::string& work, const Times& times) {
  constexpr std::size_t kFew = 1000;
  constexpr std::size_t kMany = 100000;
  constexpr double kGoal = 1.5;
  const std::optional<double> few = SecondsPerEntity(work, kFew, times);
  const std::optional<double> many = SecondsPerEntity(work, kMany, times);
  if (!few || !many) {
    return true;
  }
  const bool met = *many <= kGoal * *few;
  std::printf("%-34s %zu to %zu: time of each grows to %.2f times; goal: %.2f  %s\n", work.c_str(),
              kFew, kMany, *many / *few, kGoal, met ? "met" : "MISSED");
  return met;
}

}  // namespace

double ProcessorSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void Contest(const std::string& work, std::size_t size, double goal, Side library, Side floor) {
  const std::string name = NameOf(work, size);
  Entries().push_back({name, work, size, goal});
  Register(name + "/library", std::move(library));
  Register(name + "/floor", std::move(floor));
}

bool RunContests(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return false;
  }
  Times times;
  if (benchmark::RunSpecifiedBenchmarks(&times) == 0) {
    return false;  // a filter that nothing passes
  }
  std::printf("%-34s %7s %12s %12s %7s %7s %6s\n", "work", "size", "floor us", "library us",
              "ratio", "of best", "goal");
  bool all_met = true;
  std::set<std::string> works;
  for (const Entry& entry : Entries()) {
    all_met = Judge(entry, times) && all_met;
    works.insert(entry.work);
  }
  for (const std::string& work : works) {
    all_met = JudgeGrowth(work, times) && all_met;
  }
  return all_met;
}

}  // namespace cfm_bench
