/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The recurring sessions of probes.
 *
 * Units and ranges, which the configuration leaves open:
 *   - a probe's interval: seconds from the start of one run of a session to that of the next; 0:
 *     each run begins where the last one has ended. A run that takes longer delays the next one.
 *   - a session's count: DMMs of a run, up to 65535; 0 is 10.
 *   - its interval: milliseconds between them, 10 to 60000; 0 is 100.
 *   - its size: octets of the frame, tags and FCS left out, 64 to 1514; 0 is 64.
 *   - its PCP: 0 to 7.
 * What is out of range counts as the nearest value within.
 *
 * A run begins as soon as it is due, the endpoint is running and the remote one's address is known;
 * until then it is tried once a second. It ends kReplyWait after its last DMM, and is reported.
 */
#ifndef CFM_MGR_ENGINE_PROBE_RUNNER_H
#define CFM_MGR_ENGINE_PROBE_RUNNER_H

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "engine/delay_runs.h"
#include "engine/mep_table.h"

namespace cfm_mgr::engine {

class ProbeRunner {
 public:
  static constexpr Time kRetry = std::chrono::seconds(1);

  ProbeRunner(Context& context, const MepTable& table, DelayRuns& runs)
      : context_(context), table_(table), runs_(runs) {}

  /** Sessions that stay as they were go on; others end, and begin anew with run 1. */
  void SetProbe(Time now, std::uint32_t probe_id, const Probe& probe);
  void RemoveProbe(Time now, std::uint32_t probe_id);

 private:
  struct SessionState {
    SessionState(TimerQueue& timers, Timer::Action action) : timer(timers, std::move(action)) {}

    SessionResult report;  ///< Of the run that is under way, or was last.
    std::optional<std::uint64_t> run;
    Timer timer;
  };
  struct ProbeState {
    Probe probe;
    std::map<std::uint32_t, std::unique_ptr<SessionState>> sessions;
  };

  void BeginSession(Time now, ProbeState& state, std::uint32_t probe_id, std::uint32_t session_id);
  void EndSession(Time now, SessionState& session);
  void BeginRun(Time now, const ProbeState& state, std::uint32_t session_id);
  void OnRunEnded(Time now, const ProbeSettings& settings, SessionState& session, RunEnd end,
                  const DelayResult& result);
  void Report(Time now, SessionState& session, SessionEnd end, const DelayResult& result);

  Context& context_;
  const MepTable& table_;
  DelayRuns& runs_;
  std::map<std::uint32_t, ProbeState> probes_;
};

}  // namespace cfm_mgr::engine

#endif
