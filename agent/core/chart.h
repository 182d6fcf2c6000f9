/* SPDX-License-Identifier: Apache-2.0 */
// Small drawings of numbers.
#ifndef CFM_AGENT_CORE_CHART_H
#define CFM_AGENT_CORE_CHART_H

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "core/style.h"

namespace cfm_agent {

// A line from the least to the greatest number with a mark where the mean is: "|-----o----|".
// Empty when there is no such line.
std::string RangeBar(double least, double mean, double greatest, const Style& style);

struct Bin {
  std::chrono::microseconds from{};  // including
  std::chrono::microseconds to{};    // excluding
  std::uint64_t count = 0;
};

// How many times fall into each of at most nine intervals of equal, round length that have no gap
// between them. Empty without times.
std::vector<Bin> Histogram(const std::vector<std::chrono::microseconds>& times);

// A bar for a number, the greatest of which is `greatest`.
std::string Bar(std::uint64_t number, std::uint64_t greatest, const Style& style);

}  // namespace cfm_agent

#endif
