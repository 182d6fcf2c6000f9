/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_ON_DEMAND_TESTS_H
#define CFM_MGR_ENGINE_ON_DEMAND_TESTS_H

#include <cstdint>
#include <map>

#include "engine/delay_runs.h"
#include "engine/linktrace_initiator.h"
#include "engine/loopback_initiator.h"
#include "engine/mep_table.h"
#include "engine/test_list.h"

namespace cfm_mgr::engine {

/** The loopback, linktrace and delay measurement tests that an owner has asked for. */
class OnDemandTests {
 public:
  /** Tests of one kind that one MEP runs at a time. */
  static constexpr std::size_t kMaxTests = 8;

  OnDemandTests(Context& context, const MepTable& table, DelayRuns& delay_runs);

  StartedTest StartLoopback(Time now, const LoopbackRequest& request);
  StartedTest StartLinktrace(Time now, const LinktraceRequest& request);
  StartedTest StartDelayMeasurement(Time now, const DelayRequest& request);

  /** @name Replies to a MEP's own address
   * @{ */
  void TakeLbr(const LocalMep& mep, const Frame& frame);
  void TakeLtr(const LocalMep& mep, const Frame& frame);
  /** @} */

  /** Ends a MEP's loopbacks and linktraces with what there is. */
  void OnMepStopped(const LocalMep& mep);

 private:
  struct Loopback {
    const LocalMep* mep = nullptr;
    std::uint32_t request_id = 0;
    LoopbackInitiator initiator;

    Time NextDeadline() const { return initiator.NextDeadline(); }
  };
  struct Linktrace {
    const LocalMep* mep = nullptr;
    LinktraceInitiator initiator;

    Time NextDeadline() const { return initiator.NextDeadline(); }
  };

  bool Step(Time now, Loopback& test);
  bool Step(Time now, Linktrace& test);
  void End(const Loopback& test);
  void End(const Linktrace& test);

  Context& context_;
  const MepTable& table_;
  DelayRuns& delay_runs_;
  TestList<Loopback> loopbacks_;
  TestList<Linktrace> linktraces_;
  std::map<const LocalMep*, std::size_t> delay_tests_;  ///< How many run.
  // Shared by all MEPs: none has to keep its own when it has nothing to do with tests.
  std::uint32_t next_loopback_id_ = 1;
  std::uint32_t next_linktrace_id_ = 1;
};

}  // namespace cfm_mgr::engine

#endif
