/* SPDX-License-Identifier: Apache-2.0 */
// Takes all that comes from the server, keeps what is to be known of it and says what happened.
#ifndef CFM_AGENT_CORE_MONITOR_H
#define CFM_AGENT_CORE_MONITOR_H

#include <cfm/delay_measurement.h>
#include <cfm/linktrace.h>
#include <cfm/statistics.h>
#include <cfm/status.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/findings.h"
#include "core/record.h"
#include "core/status_table.h"
#include "core/test_tracker.h"

namespace cfm_agent {

class Monitor {
 public:
  struct Environment {
    std::function<TimePoint()> now;
    std::function<void(const Record&)> tell;
    // A test has come to its end, which has been told.
    std::function<void(const TestEnd&)> ended;
  };

  // As TestTracker's. A request identifier tells the agent's tests from those of other clients.
  Monitor(std::uint32_t base, Duration patience, Environment environment)
      : environment_(std::move(environment)), tracker_(base, patience) {}

  // Begins to follow a test, and gives the request identifier that its trigger is to carry. While
  // there is no server the test ends at once and there is nothing to send.
  std::optional<std::uint32_t> Begin(TestKind kind, const MepKey& mep = {},
                                     std::uint16_t remote = 0, const Plan& plan = {});

  ServerState server() const { return server_; }
  const StatusTable& table() const { return table_; }
  bool Idle() const { return tracker_.Idle(); }
  // How far the tests that run have come, in one line of ASCII; empty when none runs.
  std::string Progress() const;
  // When Expire() next has something to do.
  std::optional<TimePoint> Deadline() const { return tracker_.Deadline(); }
  // Ends the tests that have heard nothing for too long.
  void Expire();

  // The server's coming and going. It is in step once it has said what it holds, and the client
  // library has answered with the difference.
  void ServerFound();
  void ServerInStep();
  void ServerLost();
  // The agent stops: says of each test that still runs that it will hear no end of it.
  void GiveUp();

  void LocalStatus(const MepKey& mep, const cfm::local_mep_status& status);
  void RemoteStatus(const MepKey& mep, std::uint16_t remote, const cfm::remote_mep_status& status);
  void LocalRemoved(const MepKey& mep);
  void RemoteRemoved(const MepKey& mep, std::uint16_t remote);
  void SessionEnded(const cfm::DelayMeasurementSessionResult& result) const;

  void LocalStatistics(const MepKey& mep, const cfm::local_mep_stats& stats);
  void RemoteStatistics(const MepKey& mep, std::uint16_t remote,
                        const cfm::remote_mep_stats& stats);
  void StatisticsComplete();

  void LinktraceStarted(const MepKey& mep, std::uint16_t remote, std::uint32_t transaction,
                        const cfm::st_mac& target, std::optional<std::uint32_t> started_value);
  void LinktraceReply(const MepKey& mep, const cfm::LinktraceReplyEntry& reply);
  void LinktraceEnded(const MepKey& mep, std::uint32_t transaction);

  // Of a loopback or delay measurement.
  void Started(TestKind kind, std::uint32_t request_id, const cfm::st_mac& target);
  void Replied(TestKind kind, std::uint32_t request_id, const cfm::st_mac& from,
               std::optional<std::uint32_t> transaction = std::nullopt);
  void Ended(std::uint32_t request_id, const LoopbackResult& result);
  void Ended(std::uint32_t request_id, const DelayResult& result);

  void Refused(TestKind kind, std::uint32_t request_id, std::uint32_t error_code);

 private:
  Findings& FindingsOf(const Test& test) { return findings_[test.request_id]; }
  void TellStart(const Test* test, const cfm::st_mac& target,
                 std::optional<std::uint32_t> value = std::nullopt);
  void NoteReply(const Test& test);
  void Finish(const std::vector<TestEnd>& ends, bool stopped = false);
  // The findings that statistics which arrive belong to; null when nobody asked to see them.
  Findings* StatisticsWanted();

  Environment environment_;
  ServerState server_ = ServerState::Absent;
  StatusTable table_;
  TestTracker tracker_;
  std::map<std::uint32_t, Findings> findings_;  // of the tests that run, by request identifier
};

}  // namespace cfm_agent

#endif
