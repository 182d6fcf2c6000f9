// Two ordered maps, walked together.
#ifndef CFM_SRC_CORE_IN_STEP_H
#define CFM_SRC_CORE_IN_STEP_H

namespace cfm::core {

/// Visits the entries of two maps in the order of their keys: visit(a, b) with the two entries of
/// a key, either of them null where only the other map has the key.
///
/// Takes time linear in the size of both, where looking each key up would take a logarithm more,
/// and much of that in cache misses.
template <typename Map, typename Visit>
void WalkInStep(const Map& a, const Map& b, Visit&& visit) {
  auto in_a = a.begin();
  auto in_b = b.begin();
  while (in_a != a.end() || in_b != b.end()) {
    if (in_b == b.end() || (in_a != a.end() && in_a->first < in_b->first)) {
      visit(&*in_a++, nullptr);
    } else if (in_a == a.end() || in_b->first < in_a->first) {
      visit(nullptr, &*in_b++);
    } else {
      visit(&*in_a++, &*in_b++);
    }
  }
}

}  // namespace cfm::core

#endif
