// How much heap one UpdateConfig takes for a while, beside two copies of the configuration, the
// desired and the applied one, and the text that it logs. Exits with status 1 if that is more than
// a quarter of a copy.
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

// The most that is allocated during a call, beyond what was allocated before there was anything.
template <typename Call>
std::size_t PeakBytes(std::size_t base, Call&& call) {
  peak_bytes = live_bytes;
  call();
  return peak_bytes - base;
}

std::size_t BytesOfCopy(const cfm::hierarchy& config) {
  const std::size_t before = live_bytes;
  const cfm::hierarchy copy = config;
  return live_bytes - before;
}

struct Measured {
  std::size_t peak;
  std::size_t text;
};

bool Judge(const char* work, std::size_t copies, const Measured& measured, std::size_t copy) {
  const std::size_t demanded = copies * copy + measured.text;
  const std::size_t beside = measured.peak > demanded ? measured.peak - demanded : 0;
  const double ratio = static_cast<double>(beside) / static_cast<double>(copy);
  const bool met = ratio <= 0.25;
  std::printf(
      "%-16s %8.2f MB at most: text %.2f MB, configurations %.2f MB, rest / copy %.3f  %s\n", work,
      Megabytes(measured.peak), Megabytes(measured.text), Megabytes(copies * copy), ratio,
      met ? "met" : "MISSED");
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
  const std::size_t copy = BytesOfCopy(config);

  cfm_bench::ClientInStep in_step;
  cfm::Client& client = in_step.client();
  const std::size_t base = live_bytes;
  const auto measure = [&](const cfm::hierarchy& next) {
    logged_bytes = 0;
    const std::size_t peak = PeakBytes(base, [&] { client.UpdateConfig(next); });
    return Measured{peak, logged_bytes};
  };
  std::printf("one UpdateConfig of %zu MEPs\n", kMeps);
  bool met = Judge("first", 1, measure(config), copy);
  met = Judge("same", 2, measure(config), copy) && met;
  met = Judge("levels changed", 2, measure(releveled), copy) && met;
  std::printf("kept after it: %.2f MB\n", Megabytes(live_bytes - base));
  return met ? EXIT_SUCCESS : EXIT_FAILURE;
}
