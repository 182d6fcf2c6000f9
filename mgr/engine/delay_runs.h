/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_DELAY_RUNS_H
#define CFM_MGR_ENGINE_DELAY_RUNS_H

#include <cstdint>
#include <functional>

#include "engine/context.h"
#include "engine/delay_initiator.h"
#include "engine/local_mep.h"
#include "engine/test_list.h"

namespace cfm_mgr::engine {

/** Greatest and least size of a frame with a DMM, tags and FCS left out. */
inline constexpr std::uint32_t kMinDelayFrame = 64;
inline constexpr std::uint32_t kMaxDelayFrame = 1514;
/** Least and greatest milliseconds between two DMMs. */
inline constexpr std::uint32_t kMinDelayInterval = 10;
inline constexpr std::uint32_t kMaxDelayInterval = 60000;
/** What 0 stands for in a request for a delay measurement. */
inline constexpr std::uint32_t kDefaultDelayCount = 10;
inline constexpr std::uint32_t kDefaultDelayInterval = 100;

/** The parameters of a run, each within its range. */
struct DelayParameters {
  std::uint32_t count = kDefaultDelayCount;
  std::uint32_t interval_ms = kDefaultDelayInterval;
  std::uint32_t size = kMinDelayFrame;  ///< Octets of the frame.
  std::uint8_t pcp = 0;
};

/** How a run came to its end. */
enum class RunEnd { Complete, MepStopped };

/** All runs of delay measurement in an engine, of tests on demand and of probes' sessions. */
class DelayRuns {
 public:
  struct Observer {
    std::function<void(const Mac& source)> on_reply;
    std::function<void(Time now, RunEnd end, const DelayResult& result)> on_end;
  };

  explicit DelayRuns(Context& context);

  /** @param mep It is running. */
  std::uint64_t Begin(Time now, const LocalMep& mep, const Mac& target,
                      const DelayParameters& parameters, Observer observer);
  /** Ends a run without calling its observer; none when it has ended before. */
  std::optional<DelayResult> Cancel(std::uint64_t run);

  void TakeDmr(Time now, const LocalMep& mep, const Frame& frame);
  void OnMepStopped(Time now, const LocalMep& mep);

 private:
  struct Run {
    const LocalMep* mep = nullptr;
    std::uint8_t pcp = 0;
    DelayInitiator initiator;
    Observer observer;

    Time NextDeadline() const { return initiator.NextDeadline(); }
  };

  bool Step(Time now, Run& run);

  Context& context_;
  StampClock clock_;
  TestList<Run> runs_;
};

}  // namespace cfm_mgr::engine

#endif
