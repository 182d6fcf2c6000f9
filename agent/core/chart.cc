// SPDX-License-Identifier: Apache-2.0
#include "core/chart.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace cfm_agent {
namespace {

constexpr std::size_t kRangeCells = 40;
constexpr std::uint64_t kBarCells = 30;
constexpr std::int64_t kMostBins = 8;

std::string Repeat(std::string_view text, std::size_t times) {
  std::string line;
  for (std::size_t i = 0; i < times; ++i) {
    line += text;
  }
  return line;
}

// The least of 1, 2, 5, 10, 20, ... that is not less.
std::int64_t RoundUp(std::int64_t number) {
  for (std::int64_t power = 1;; power *= 10) {
    for (const std::int64_t digit : {1, 2, 5}) {
      if (digit * power >= number) {
        return digit * power;
      }
    }
  }
}

}  // namespace

std::string RangeBar(double least, double mean, double greatest, const Style& style) {
  const double length = greatest - least;
  if (!std::isfinite(length) || length <= 0 || !(mean >= least && mean <= greatest)) {
    return "";
  }
  const auto before =
      static_cast<std::size_t>(std::lround((mean - least) / length * (kRangeCells - 1)));
  const std::string_view line = style.utf8 ? "\u2500" : "-";
  return (style.utf8 ? "\u251C" : "|") + Repeat(line, before) + (style.utf8 ? "\u25CF" : "o") +
         Repeat(line, kRangeCells - 1 - before) + (style.utf8 ? "\u2524" : "|");
}

std::vector<Bin> Histogram(const std::vector<std::chrono::microseconds>& times) {
  using std::chrono::microseconds;
  if (times.empty()) {
    return {};
  }
  const auto [least, greatest] = std::minmax_element(times.begin(), times.end());
  // One more, because the greatest time has to be inside.
  const std::int64_t length = (greatest->count() - least->count()) / kMostBins + 1;
  const microseconds width(RoundUp(length));
  std::vector<Bin> bins;
  for (microseconds from = *least - *least % width; from <= *greatest; from += width) {
    bins.push_back({from, from + width, 0});
  }
  for (const microseconds time : times) {
    ++bins[static_cast<std::size_t>((time - bins.front().from) / width)].count;
  }
  return bins;
}

std::string Bar(std::uint64_t number, std::uint64_t greatest, const Style& style) {
  const std::uint64_t most = std::max<std::uint64_t>(greatest, 1);
  const std::uint64_t cells = (number * kBarCells + most - 1) / most;
  return Repeat(style.utf8 ? "\u2588" : "#", cells);
}

}  // namespace cfm_agent
