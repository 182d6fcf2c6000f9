// SPDX-License-Identifier: Apache-2.0
// Provisioning over the bus beside two bare sd-bus programs that pass the same bytes on.
//
// usage: bus_speed [ENDPOINTS [ROUNDS]]
//
// Ends with status 1 when provisioning cfm-mgr takes longer than it may, with 2 when it
// cannot measure.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <numeric>

#include "bare.h"
#include "private_bus.h"
#include "provisioning.h"

namespace {

using namespace cfm_bench;  // NOLINT(google-build-using-namespace): all of it is this program
using cfm_test::PrivateBus;

/** What provisioning may take, in times of what passing the bytes on takes. */
constexpr double kMostRatio = 1.3;

/** One number of each run. */
using Values = std::vector<double>;

struct Runs {
  const char* title;
  Values elapsed;
  Values processor;

  void Add(const Timing& timing) {
    elapsed.push_back(timing.elapsed);
    processor.push_back(timing.processor);
  }
};

double Median(Values values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

double Least(const Values& values) { return *std::min_element(values.begin(), values.end()); }

/** The median of the ratios of what was measured side by side. */
double MedianRatio(const Values& values, const Values& floor) {
  Values ratios;
  for (std::size_t i = 0; i < values.size(); ++i) {
    ratios.push_back(values[i] / floor[i]);
  }
  return Median(ratios);
}

void Print(const char* title, const Values& values, const Values& floor) {
  std::printf("  %-42s %9.1f %9.1f %9.2f %9.2f\n", title, Least(values), Median(values),
              Least(values) / Least(floor), MedianRatio(values, floor));
}

/** Whether the goal was reached. */
bool Measure(int endpoints, int rounds) {
  const cfm::hierarchy configuration = ConfigurationOf(endpoints);
  const std::vector<Request> requests = RecordRequests(PrivateBus(), configuration);
  const std::size_t bytes = std::accumulate(
      requests.begin(), requests.end(), std::size_t{0},
      [](std::size_t sum, const Request& request) { return sum + request.payload.size(); });
  std::printf("%d endpoints: %zu requests, %zu bytes of payload; %d rounds\n", endpoints,
              requests.size(), bytes, rounds);
  Runs bare{"two bare sd-bus programs", {}, {}};
  Runs receiver{"client library to a receiver that counts", {}, {}};
  Runs server{"client library to cfm-mgr", {}, {}};
  for (int round = 0; round < rounds; ++round) {
    bare.Add(TimeBare(PrivateBus(), requests));
    receiver.Add(TimeToReceiver(PrivateBus(), configuration, requests.size()));
    server.Add(TimeToServer(PrivateBus(), configuration, requests.size()));
  }
  std::printf("%-44s %9s %9s %9s %9s\n", "milliseconds to the last request", "least", "median",
              "of least", "of each");
  for (const Runs* runs : {&bare, &receiver, &server}) {
    Print(runs->title, runs->elapsed, bare.elapsed);
  }
  std::printf("of processor time, sender, bus and receiver\n");
  for (const Runs* runs : {&bare, &receiver, &server}) {
    Print(runs->title, runs->processor, bare.processor);
  }
  const double ratio = Least(server.elapsed) / Least(bare.elapsed);
  std::printf("cfm-mgr: %.2f; goal: at most %.2f\n", ratio, kMostRatio);
  return ratio <= kMostRatio;
}

}  // namespace

int main(int argc, char** argv) {
  constexpr int kEndpoints = 10'000;
  constexpr int kRounds = 9;
  // The library logs as it does on a network element, but not to the table's reader.
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(nowhere, STDERR_FILENO);
  try {
    const int endpoints = argc > 1 ? std::atoi(argv[1]) : kEndpoints;
    return Measure(endpoints, argc > 2 ? std::atoi(argv[2]) : kRounds) ? 0 : 1;
  } catch (const std::exception& error) {
    std::printf("bus_speed: %s\n", error.what());
    return 2;
  }
}
