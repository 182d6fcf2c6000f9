/* SPDX-License-Identifier: Apache-2.0 */
// Two ordered ranges, walked together.
#ifndef CFM_SRC_CORE_IN_STEP_H
#define CFM_SRC_CORE_IN_STEP_H

#include <utility>

namespace cfm::core {

/// What orders the entries of a map. Entries of other ranges have a KeyOf of their own.
template <typename Key, typename Value>
const Key& KeyOf(const std::pair<const Key, Value>& entry) {
  return entry.first;
}

/// Visits the entries of two ranges in the order of their keys: visit(a, b) with the two entries of
/// a key, either of them null where only the other range has the key.
///
/// Takes time linear in the size of both, where looking each key up would take a logarithm more,
/// and much of that in cache misses.
template <typename Range, typename Visit>
void WalkInStep(const Range& a, const Range& b, Visit&& visit) {
  auto in_a = a.begin();
  auto in_b = b.begin();
  while (in_a != a.end() || in_b != b.end()) {
    if (in_b == b.end() || (in_a != a.end() && KeyOf(*in_a) < KeyOf(*in_b))) {
      visit(&*in_a++, nullptr);
    } else if (in_a == a.end() || KeyOf(*in_b) < KeyOf(*in_a)) {
      visit(nullptr, &*in_b++);
    } else {
      visit(&*in_a++, &*in_b++);
    }
  }
}

}  // namespace cfm::core

#endif
