// SPDX-License-Identifier: Apache-2.0
// The tests of this program fail nothing, and so prove nothing, if its allocation functions are not
// the ones in use. Valgrind puts its own in their place unless told
// --soname-synonyms=somalloc=nouserintercepts.
#include "failing_allocator.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <new>

#include "recording_host.h"

namespace cfm_test {
namespace {

constexpr std::align_val_t kWide{64};

template <typename New>
bool Throws(New allocate) {
  const FailingAllocation failing(0);
  const Running running(Running::Code::Library);
  try {
    allocate();
  } catch (const std::bad_alloc&) {
    return failing.happened();
  }
  return false;
}

TEST(FailingAllocator, FailsEveryFormOfNew) {
  EXPECT_TRUE(Throws([] { return operator new(1); }));
  EXPECT_TRUE(Throws([] { return operator new[](1); }));
  EXPECT_TRUE(Throws([] { return operator new(1, kWide); }));
  EXPECT_TRUE(Throws([] { return operator new[](1, kWide); }));
}

TEST(FailingAllocator, GivesNullWhereNothingMayBeThrown) {
  const Running running(Running::Code::Library);
  const auto fails = [](auto... arguments) {
    const FailingAllocation failing(0);
    return operator new(arguments...) == nullptr&& failing.happened();
  };
  const auto fails_for_array = [](auto... arguments) {
    const FailingAllocation failing(0);
    return operator new[](arguments...) == nullptr&& failing.happened();
  };
  EXPECT_TRUE(fails(1U, std::nothrow));
  EXPECT_TRUE(fails(1U, kWide, std::nothrow));
  EXPECT_TRUE(fails_for_array(1U, std::nothrow));
  EXPECT_TRUE(fails_for_array(1U, kWide, std::nothrow));
}

TEST(FailingAllocator, FailsOnlyTheOneAskedForAndCountsTheRest) {
  const FailingAllocation failing(1);
  const Running running(Running::Code::Library);
  operator delete(operator new(1));
  EXPECT_FALSE(failing.happened());
  EXPECT_THROW(operator delete(operator new(1)), std::bad_alloc);
  EXPECT_TRUE(failing.happened());
  EXPECT_EQ(failing.allocations_after(), 0U);
  operator delete(operator new(1));
  EXPECT_EQ(failing.allocations_after(), 1U);
}

TEST(FailingAllocator, LeavesTheHostAlone) {
  const FailingAllocation failing(0);
  operator delete(operator new(1));
  EXPECT_FALSE(failing.happened());
}

TEST(FailingAllocator, KnowsWhatTheLibraryHolds) {
  const LibraryHeap before = HeldByLibrary();
  void* block = nullptr;
  void* wide = nullptr;
  {
    const Running running(Running::Code::Library);
    block = operator new(100);
    wide = operator new[](200, kWide);
  }
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(wide) % 64, 0U);
  void* const of_host = operator new(1);
  EXPECT_EQ(HeldByLibrary().blocks, before.blocks + 2);
  EXPECT_EQ(HeldByLibrary().bytes, before.bytes + 300);
  operator delete(of_host);
  operator delete(block);
  operator delete[](wide, kWide);
  EXPECT_EQ(HeldByLibrary().blocks, before.blocks);
  EXPECT_EQ(HeldByLibrary().bytes, before.bytes);
}

TEST(FailingAllocator, KeepsTrackOfManyBlocks) {
  const LibraryHeap before = HeldByLibrary();
  std::array<void*, 10000> blocks{};
  {
    const Running running(Running::Code::Library);
    for (void*& block : blocks) {
      block = operator new(8);
    }
  }
  EXPECT_EQ(HeldByLibrary().blocks, before.blocks + blocks.size());
  // In an order that has nothing to do with theirs.
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    operator delete(blocks[i * 7919 % blocks.size()]);
  }
  EXPECT_EQ(HeldByLibrary().blocks, before.blocks);
}

}  // namespace
}  // namespace cfm_test
