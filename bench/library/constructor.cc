// SPDX-License-Identifier: Apache-2.0
// How long it takes to construct and to destroy a client, on the host that records everything.
// Exits with status 1 if constructing takes 50 microseconds or more.
#include <cfm/client.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

#include "recording_host.h"

namespace {

double Microseconds(std::chrono::steady_clock::duration duration) {
  return std::chrono::duration<double, std::micro>(duration).count();
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

}  // namespace

int main() {
  constexpr int kRounds = 2000;
  constexpr double kGoal = 50;
  cfm_test::RecordingHost host;
  std::vector<double> constructing;
  std::vector<double> destroying;
  for (int i = 0; i < kRounds; ++i) {
    std::optional<cfm::Client> client;
    const auto start = std::chrono::steady_clock::now();
    client.emplace(host.handle());
    const auto constructed = std::chrono::steady_clock::now();
    client.reset();
    destroying.push_back(Microseconds(std::chrono::steady_clock::now() - constructed));
    constructing.push_back(Microseconds(constructed - start));
    host.Take();
  }
  const double median = Median(constructing);
  std::printf("constructor %.2f us, destructor %.2f us (medians of %d)  %s\n", median,
              Median(destroying), kRounds, median < kGoal ? "met" : "MISSED");
  return median < kGoal ? EXIT_SUCCESS : EXIT_FAILURE;
}
