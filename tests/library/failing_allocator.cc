// SPDX-License-Identifier: Apache-2.0
#include "failing_allocator.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "recording_host.h"

namespace cfm_test {
namespace {

// Nothing here may allocate.
struct {
  bool armed = false;
  std::size_t index = 0;
  std::size_t seen = 0;
} failure;

// The library's blocks: open addressing with linear probing.
class BlockTable {
 public:
  void Insert(const void* block, std::size_t size) {
    if (held_.blocks >= kCapacity / 2) {
      std::fputs("failing_allocator: the library holds more blocks than foreseen\n", stderr);
      std::abort();
    }
    std::size_t at = Home(block);
    while (slots_[at].block != nullptr) {
      at = Next(at);
    }
    slots_[at] = {block, size};
    ++held_.blocks;
    held_.bytes += size;
  }

  void Erase(const void* block) {
    std::size_t at = Home(block);
    while (slots_[at].block != block) {
      if (slots_[at].block == nullptr) {
        return;  // not the library's
      }
      at = Next(at);
    }
    --held_.blocks;
    held_.bytes -= slots_[at].size;
    CloseGap(at);
  }

  LibraryHeap held() const { return held_; }

 private:
  static constexpr std::size_t kCapacity = 1U << 15U;

  struct Slot {
    const void* block = nullptr;
    std::size_t size = 0;
  };

  static std::size_t Home(const void* block) {
    return (reinterpret_cast<std::uintptr_t>(block) / 16 * 0x9e3779b1U) % kCapacity;
  }

  static std::size_t Next(std::size_t at) { return (at + 1) % kCapacity; }

  // Whoever was pushed past the gap moves back, so that no search ends early.
  void CloseGap(std::size_t gap) {
    slots_[gap] = {};
    for (std::size_t at = Next(gap); slots_[at].block != nullptr; at = Next(at)) {
      const std::size_t pushed = (at - Home(slots_[at].block)) % kCapacity;
      if (pushed >= (at - gap) % kCapacity) {
        slots_[gap] = slots_[at];
        slots_[at] = {};
        gap = at;
      }
    }
  }

  std::array<Slot, kCapacity> slots_{};
  LibraryHeap held_;
} library_blocks;

bool FailsNow() { return failure.armed && failure.seen++ == failure.index; }

// Null when it fails.
void* Allocate(std::size_t size, std::size_t alignment) noexcept {
  const bool for_library = Running::Now() == Running::Code::Library;
  if (for_library && FailsNow()) {
    return nullptr;
  }
  void* block = nullptr;
  if (alignment <= alignof(std::max_align_t)) {
    block = std::malloc(size == 0 ? 1 : size);
  } else if (posix_memalign(&block, alignment, size) != 0) {
    block = nullptr;
  }
  if (for_library && block != nullptr) {
    library_blocks.Insert(block, size);
  }
  return block;
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment) {
  if (void* const block = Allocate(size, alignment); block != nullptr) {
    return block;
  }
  throw std::bad_alloc();
}

void Free(void* block) noexcept {
  if (block != nullptr) {
    library_blocks.Erase(block);
    std::free(block);
  }
}

}  // namespace

FailingAllocation::FailingAllocation(std::size_t index) { failure = {true, index, 0}; }

FailingAllocation::~FailingAllocation() { failure.armed = false; }

bool FailingAllocation::happened() const { return failure.seen > failure.index; }

std::size_t FailingAllocation::allocations_after() const {
  return happened() ? failure.seen - failure.index - 1 : 0;
}

LibraryHeap HeldByLibrary() { return library_blocks.held(); }

}  // namespace cfm_test

namespace {

constexpr std::size_t kDefault = alignof(std::max_align_t);

std::size_t Bytes(std::align_val_t alignment) { return static_cast<std::size_t>(alignment); }

}  // namespace

using cfm_test::Allocate;
using cfm_test::AllocateOrThrow;
using cfm_test::Free;
using std::align_val_t;
using std::nothrow_t;

void* operator new(std::size_t size) { return AllocateOrThrow(size, kDefault); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size, kDefault); }
void* operator new(std::size_t size, align_val_t alignment) {
  return AllocateOrThrow(size, Bytes(alignment));
}
void* operator new[](std::size_t size, align_val_t alignment) {
  return AllocateOrThrow(size, Bytes(alignment));
}

void* operator new(std::size_t size, const nothrow_t&) noexcept { return Allocate(size, kDefault); }
void* operator new[](std::size_t size, const nothrow_t&) noexcept {
  return Allocate(size, kDefault);
}
void* operator new(std::size_t size, align_val_t alignment, const nothrow_t&) noexcept {
  return Allocate(size, Bytes(alignment));
}
void* operator new[](std::size_t size, align_val_t alignment, const nothrow_t&) noexcept {
  return Allocate(size, Bytes(alignment));
}

void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t) noexcept { Free(block); }
void operator delete(void* block, align_val_t) noexcept { Free(block); }
void operator delete[](void* block, align_val_t) noexcept { Free(block); }
void operator delete(void* block, std::size_t, align_val_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t, align_val_t) noexcept { Free(block); }
void operator delete(void* block, const nothrow_t&) noexcept { Free(block); }
void operator delete[](void* block, const nothrow_t&) noexcept { Free(block); }
void operator delete(void* block, align_val_t, const nothrow_t&) noexcept { Free(block); }
void operator delete[](void* block, align_val_t, const nothrow_t&) noexcept { Free(block); }
