// SPDX-License-Identifier: Apache-2.0
// How much heap one UpdateConfig takes for a while, beside what the client keeps of the
// configurations before and after, and the text that it logs. Exits with status 1 if that is more
// than a quarter of a copy of the configuration.
#include <malloc.h>
#include <zlog.h>

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "counting_host.h"
#include "samples.h"

namespace {

// What is allocated now, and the most that has been since it was set to this.
std::size_t live_bytes = 0;
std::size_t peak_bytes = 0;

}  // namespace

void* operator new(std::size_t size) {
  void* const block = std::malloc(size);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  live_bytes += malloc_usable_size(block);
  peak_bytes = std::max(peak_bytes, live_bytes);
  return block;
}

void operator delete(void* block) noexcept {
  live_bytes -= malloc_usable_size(block);
  std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept { operator delete(block); }

namespace {

using cfm_bench::HierarchyOf;

std::size_t logged_bytes = 0;

double Megabytes(std::size_t bytes) { return static_cast<double>(bytes) / 1e6; }

std::size_t BytesOfCopy(const cfm::hierarchy& config) {
  const std::size_t before = live_bytes;
  const cfm::hierarchy copy = config;
  return live_bytes - before;
}

// Hands a configuration in. Whether the goal was met.
bool Measure(const char* work, cfm::Client& client, const cfm::hierarchy& config,
             std::size_t base) {
  const std::size_t copy = BytesOfCopy(config);
  const std::size_t kept_before = live_bytes - base;
  logged_bytes = 0;
  peak_bytes = live_bytes;
  client.UpdateConfig(config);
  const std::size_t peak = peak_bytes - base;
  const std::size_t kept = kept_before + (live_bytes - base);
  const std::size_t lasting = kept + logged_bytes;
  const std::size_t beside = peak > lasting ? peak - lasting : 0;
  const double ratio = static_cast<double>(beside) / static_cast<double>(copy);
  const bool met = ratio <= 0.25;
  std::printf(
      "%-16s %6.2f MB at most: kept before and after %.2f MB, text %.2f MB, rest %.2f MB;"
      " rest / copy of %.2f MB: %.3f  %s\n",
      work, Megabytes(peak), Megabytes(kept), Megabytes(logged_bytes), Megabytes(beside),
      Megabytes(copy), ratio, met ? "met" : "MISSED");
  return met;
}

}  // namespace

// The log only has its length taken here; the real zlog would keep a buffer of its own.
extern "C" void zlog(zlog_category_t*, const char*, size_t, const char*, size_t, long, int,
                     const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  logged_bytes = std::max(logged_bytes,
                          static_cast<std::size_t>(std::vsnprintf(nullptr, 0, format, arguments)));
  va_end(arguments);
}

int main() {
  constexpr std::size_t kMeps = 100000;
  const cfm::hierarchy config = HierarchyOf(kMeps, 4);
  const cfm::hierarchy releveled = HierarchyOf(kMeps, 5);

  cfm_bench::ClientInStep in_step;
  cfm::Client& client = in_step.client();
  const std::size_t base = live_bytes;
  std::printf("one UpdateConfig of %zu MEPs\n", kMeps);
  bool met = Measure("first", client, config, base);
  met = Measure("same", client, config, base) && met;
  met = Measure("levels changed", client, releveled, base) && met;
  std::printf("kept after it: %.2f MB\n", Megabytes(live_bytes - base));
  return met ? EXIT_SUCCESS : EXIT_FAILURE;
}
