/* SPDX-License-Identifier: Apache-2.0 */
// The allocation functions of the whole program, on top of malloc: they can fail any one allocation
// of the library, and know what the library allocated and has not freed. What the host and the
// tests allocate never fails and is not counted; what protobuf and the standard library allocate on
// the library's behalf is the library's.
#ifndef CFM_TESTS_LIBRARY_FAILING_ALLOCATOR_H
#define CFM_TESTS_LIBRARY_FAILING_ALLOCATOR_H

#include <cstddef>

namespace cfm_test {

/// As long as it lives, one allocation of the library fails; there is one of these at a time.
class FailingAllocation {
 public:
  /// The allocation to fail, counted from 0.
  explicit FailingAllocation(std::size_t index);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  bool happened() const;

  /// How many more the library asked for once it had failed.
  std::size_t allocations_after() const;
};

struct LibraryHeap {
  std::size_t blocks = 0;
  std::size_t bytes = 0;
};

/// What the library holds.
LibraryHeap HeldByLibrary();

}  // namespace cfm_test

#endif
