// SPDX-License-Identifier: Apache-2.0
#include "rendezvous.h"

#include <sys/mman.h>

#include <cerrno>
#include <new>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace cfm_bench {

std::int64_t Now() { return std::chrono::steady_clock::now().time_since_epoch().count(); }

void Await(const char* what, const std::function<bool()>& condition) {
  constexpr std::chrono::seconds kLimit(120);
  constexpr std::chrono::milliseconds kInterval(1);
  const auto deadline = std::chrono::steady_clock::now() + kLimit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= deadline) {
      throw std::runtime_error(std::string("waited in vain for ") + what);
    }
    std::this_thread::sleep_for(kInterval);
  }
}

Rendezvous::Rendezvous() {
  void* const memory =
      mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    throw std::system_error(errno, std::generic_category(), "mmap");
  }
  shared_ = new (memory) Shared{};
}

Rendezvous::~Rendezvous() { munmap(shared_, sizeof(Shared)); }

void Rendezvous::Ready(const std::string& name) {
  name.copy(shared_->name.data(), shared_->name.size() - 1);
  shared_->ready = true;
}

Timing TimingOf(const CpuLog& log, std::int64_t start, std::int64_t end) {
  constexpr double kNanosecondsPerMillisecond = 1e6;
  return {static_cast<double>(end - start) / kNanosecondsPerMillisecond,
          log.Milliseconds(start, end)};
}

}  // namespace cfm_bench
