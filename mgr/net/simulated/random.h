/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_SIMULATED_RANDOM_H
#define CFM_MGR_NET_SIMULATED_RANDOM_H

#include <cmath>
#include <cstdint>
#include <random>

#include "engine/time.h"

namespace cfm_mgr::net {

/** Chance that is the same for the same seed, whatever the standard library. */
class Random {
 public:
  explicit Random(std::uint64_t seed) : bits_(seed) {}

  /** At least 0 and below 1. */
  double Share() { return std::ldexp(static_cast<double>(bits_() >> 11U), -53); }

  bool Happens(double probability) { return Share() < probability; }

  /** At least 0 and at most @p most. */
  engine::Time UpTo(engine::Time most) {
    return engine::Time(
        static_cast<engine::Time::rep>(Share() * (static_cast<double>(most.count()) + 1)));
  }

  std::uint64_t Seed() { return bits_(); }

 private:
  std::mt19937_64 bits_;
};

}  // namespace cfm_mgr::net

#endif
