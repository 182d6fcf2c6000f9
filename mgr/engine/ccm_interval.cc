// SPDX-License-Identifier: Apache-2.0
#include "engine/ccm_interval.h"

#include <array>

namespace cfm_mgr::engine {

Time ThreeIntervals(std::uint8_t code) {
  using std::chrono::milliseconds;
  using std::chrono::minutes;
  using std::chrono::seconds;
  constexpr std::array<Time, 7> kTriples{milliseconds(10), milliseconds(30), milliseconds(300),
                                         seconds(3),       seconds(30),      minutes(3),
                                         minutes(30)};
  return kTriples.at(code - std::size_t{1});
}

Time Interval(std::uint8_t code) { return (ThreeIntervals(code) + Time(2)) / 3; }

Time Lifetime(std::uint8_t code) { return (ThreeIntervals(code) * 7 + Time(5)) / 6; }

void CcmPace::GoOn(Time now) {
  const auto step = [this] {
    if (++step_ < 3) return;
    step_ = 0;
    base_ += triple_;
  };
  step();
  if (next() > now) return;
  base_ += (now - base_) / triple_ * triple_;
  while (next() <= now) step();
}

}  // namespace cfm_mgr::engine
