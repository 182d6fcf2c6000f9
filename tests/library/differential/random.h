/* SPDX-License-Identifier: Apache-2.0 */
// Random numbers that come out the same for the same seed everywhere.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_RANDOM_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_RANDOM_H

#include <cstddef>
#include <cstdint>
#include <utility>

namespace cfm_test {

class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  // SplitMix64: a counter, stirred.
  std::uint64_t Next() {
    state_ += 0x9e3779b97f4a7c15U;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30U)) * 0xbf58476d1ce4e5b9U;
    z = (z ^ (z >> 27U)) * 0x94d049bb133111ebU;
    return z ^ (z >> 31U);
  }

  /// 0 to bound - 1.
  std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(Next() % bound); }

  bool OneIn(std::size_t bound) { return Below(bound) == 0; }

  template <typename Sequence>
  const auto& Pick(const Sequence& sequence) {
    return sequence[Below(sequence.size())];
  }

  template <typename Sequence>
  void Shuffle(Sequence& sequence) {
    for (std::size_t i = sequence.size(); i > 1; --i) {
      std::swap(sequence[i - 1], sequence[Below(i)]);
    }
  }

 private:
  std::uint64_t state_;
};

}  // namespace cfm_test

#endif
