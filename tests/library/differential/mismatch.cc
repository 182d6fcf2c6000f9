// SPDX-License-Identifier: Apache-2.0
#include "mismatch.h"

#include <algorithm>
#include <cstddef>

#include "shrink.h"

namespace cfm_test {

std::string Mismatch(const Script& script, const Player& expected, const Player& actual) {
  const auto differ = [&](const Script& candidate) {
    return expected(candidate) != actual(candidate);
  };
  if (!differ(script)) {
    return "";
  }
  const Script small = Shrink(script, differ);
  const Traces expected_traces = expected(small);
  const Traces actual_traces = actual(small);
  const std::size_t step = static_cast<std::size_t>(
      std::mismatch(expected_traces.begin(), expected_traces.end(), actual_traces.begin()).first -
      expected_traces.begin());
  return "smallest script:\n" + Describe(small) + "differs in step " + std::to_string(step) +
         " (- expected, + actual):\n" + Diff(expected_traces[step], actual_traces[step]);
}

}  // namespace cfm_test
