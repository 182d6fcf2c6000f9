// SPDX-License-Identifier: Apache-2.0
// Prints, for each piece of work, how long the library takes and how long the floor does. Exits
// with status 1 if a goal was missed.
#include <cstdlib>
#include <string>
#include <vector>

#include "contest.h"

namespace cfm_bench {
void RegisterHierarchyContests();
void RegisterProbeContests();
void RegisterCallbackContests();
}  // namespace cfm_bench

int main(int argc, char** argv) {
  // Both sides take turns, and a disturbance counts in one repetition only.
  std::vector<std::string> options = {argv[0], "--benchmark_repetitions=25",
                                      "--benchmark_enable_random_interleaving=true"};
  options.insert(options.end(), argv + 1, argv + argc);
  std::vector<char*> arguments;
  for (std::string& option : options) {
    arguments.push_back(option.data());
  }
  arguments.push_back(nullptr);

  cfm_bench::RegisterHierarchyContests();
  cfm_bench::RegisterProbeContests();
  cfm_bench::RegisterCallbackContests();
  const bool met = cfm_bench::RunContests(static_cast<int>(arguments.size()) - 1, arguments.data());
  return met ? EXIT_SUCCESS : EXIT_FAILURE;
}
