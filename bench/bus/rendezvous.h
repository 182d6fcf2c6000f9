/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_BENCH_BUS_RENDEZVOUS_H
#define CFM_BENCH_BUS_RENDEZVOUS_H

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "cpu_log.h"

namespace cfm_bench {

/** Nanoseconds of a clock that all processes share. */
std::int64_t Now();

/** Waits for the condition; throws std::runtime_error when it does not come to hold in time. */
void Await(const char* what, const std::function<bool()>& condition);

/** How long a run took, in milliseconds. */
struct Timing {
  double elapsed = 0;
  double processor = 0; /**< Of the sender, the bus and the receiver together. */
};

/** The timing of a run between these two points in time. */
Timing TimingOf(const CpuLog& log, std::int64_t start, std::int64_t end);

/** Where a sender and a receiver, both children of the one that made it, meet. */
class Rendezvous {
 public:
  Rendezvous();
  ~Rendezvous();
  Rendezvous(const Rendezvous&) = delete;
  Rendezvous& operator=(const Rendezvous&) = delete;

  /** The receiver is ready, under this name on the bus. */
  void Ready(const std::string& name);
  bool is_ready() const { return shared_->ready; }
  std::string name() const { return shared_->name.data(); }

  void Start() { shared_->start = Now(); }
  void End() { shared_->end = Now(); }
  bool has_started() const { return shared_->start != 0; }
  bool has_ended() const { return shared_->end != 0; }
  std::int64_t start() const { return shared_->start; }
  std::int64_t end() const { return shared_->end; }

  /** Lets the children go. */
  void Dismiss() { shared_->dismissed = true; }
  bool is_dismissed() const { return shared_->dismissed; }

 private:
  struct Shared {
    std::array<char, 64> name;
    std::atomic<bool> ready;
    std::atomic<bool> dismissed;
    std::atomic<std::int64_t> start;
    std::atomic<std::int64_t> end;
  };

  Shared* shared_;
};

}  // namespace cfm_bench

#endif
