// SPDX-License-Identifier: Apache-2.0
#include "core/monitor.h"

#include <utility>

#include "core/progress.h"

namespace cfm_agent {
namespace {

// More replies than any test asks for; what comes beyond is counted only.
constexpr std::size_t kMostReplies = 4096;

template <typename Item>
void Keep(std::vector<Item>& items, Item item) {
  if (items.size() < kMostReplies) {
    items.push_back(std::move(item));
  }
}

}  // namespace

std::optional<std::uint32_t> Monitor::Begin(TestKind kind, const MepKey& mep, std::uint16_t remote,
                                            const Plan& plan) {
  const TimePoint now = environment_.now();
  const std::uint32_t request_id = tracker_.Begin(kind, mep, remote, now);
  Findings& findings = findings_[request_id];
  findings.plan = plan;
  findings.began = now;
  if (server_ != ServerState::Absent) {
    return request_id;
  }
  Finish(tracker_.ServerLost());
  return std::nullopt;
}

void Monitor::Expire() { Finish(tracker_.Expire(environment_.now())); }

std::string Monitor::Progress() const {
  const TimePoint now = environment_.now();
  std::string line;
  for (const auto& [number, test] : tracker_.tests()) {
    const Findings& findings = findings_.at(test.request_id);
    const std::string progress = ProgressOf(test, findings.plan, now - findings.began);
    line += (line.empty() || progress.empty() ? "" : "; ") + progress;
  }
  return line;
}

void Monitor::Finish(const std::vector<TestEnd>& ends, bool stopped) {
  for (const TestEnd& end : ends) {
    auto found = findings_.extract(end.test.request_id);
    Findings& findings = found.mapped();
    findings.elapsed = environment_.now() - findings.began;
    if (end.test.kind != TestKind::Refresh) {
      environment_.tell(TestResult{end, std::move(findings), stopped});
    }
    environment_.ended(end);
  }
}

void Monitor::ServerFound() {
  server_ = ServerState::Found;
  environment_.tell(ServerNews{server_});
}

void Monitor::ServerInStep() {
  if (server_ != ServerState::InStep) {
    server_ = ServerState::InStep;
    environment_.tell(ServerNews{server_});
  }
}

void Monitor::ServerLost() {
  server_ = ServerState::Absent;
  table_.Forget();
  environment_.tell(ServerNews{server_});
  Finish(tracker_.ServerLost());
}

// To a test it is the same whether the server goes or the agent turns away from it.
void Monitor::GiveUp() { Finish(tracker_.ServerLost(), true); }

void Monitor::LocalStatus(const MepKey& mep, const cfm::local_mep_status& status) {
  if (table_.Local(mep, status)) {
    environment_.tell(LocalStatusNews{mep, status});
  }
}

void Monitor::RemoteStatus(const MepKey& mep, std::uint16_t remote,
                           const cfm::remote_mep_status& status) {
  if (table_.Remote(mep, remote, status)) {
    environment_.tell(RemoteStatusNews{mep, remote, status});
  }
}

void Monitor::LocalRemoved(const MepKey& mep) {
  table_.LocalRemoved(mep);
  environment_.tell(RemovalNews{mep, std::nullopt});
  Finish(tracker_.LocalMepRemoved(mep));
}

void Monitor::RemoteRemoved(const MepKey& mep, std::uint16_t remote) {
  table_.RemoteRemoved(mep, remote);
  environment_.tell(RemovalNews{mep, remote});
  Finish(tracker_.RemoteMepRemoved(mep, remote));
}

void Monitor::SessionEnded(const cfm::DelayMeasurementSessionResult& result) const {
  environment_.tell(SessionNews{result});
}

Findings* Monitor::StatisticsWanted() {
  const Test* test = tracker_.StatisticsArrived(environment_.now());
  return test != nullptr && test->kind == TestKind::Statistics ? &FindingsOf(*test) : nullptr;
}

void Monitor::LocalStatistics(const MepKey& mep, const cfm::local_mep_stats& stats) {
  if (Findings* findings = StatisticsWanted()) {
    findings->local.push_back({mep, stats});
  }
}

void Monitor::RemoteStatistics(const MepKey& mep, std::uint16_t remote,
                               const cfm::remote_mep_stats& stats) {
  if (Findings* findings = StatisticsWanted()) {
    findings->remote.push_back({mep, remote, stats});
  }
}

void Monitor::StatisticsComplete() { Finish(tracker_.StatisticsComplete()); }

void Monitor::TellStart(const Test* test, const cfm::st_mac& target,
                        std::optional<std::uint32_t> value) {
  if (test != nullptr) {
    FindingsOf(*test).target = target;
    environment_.tell(TestStarted{*test, target, value});
  }
}

void Monitor::NoteReply(const Test& test) {
  Findings& findings = FindingsOf(test);
  Keep(findings.replies, environment_.now() - findings.began);
}

void Monitor::LinktraceStarted(const MepKey& mep, std::uint16_t remote, std::uint32_t transaction,
                               const cfm::st_mac& target,
                               std::optional<std::uint32_t> started_value) {
  TellStart(tracker_.LinktraceStarted(mep, remote, transaction, environment_.now()), target,
            started_value);
}

void Monitor::LinktraceReply(const MepKey& mep, const cfm::LinktraceReplyEntry& reply) {
  const Test* test = tracker_.LinktraceReplied(mep, reply.transaction_id, environment_.now());
  if (test != nullptr) {
    NoteReply(*test);
    const Hop hop = HopOf(reply);
    Keep(FindingsOf(*test).hops, hop);
    environment_.tell(TestReply{*test, hop.from, std::nullopt, hop});
  }
}

void Monitor::LinktraceEnded(const MepKey& mep, std::uint32_t transaction) {
  Finish(tracker_.LinktraceComplete(mep, transaction));
}

void Monitor::Started(TestKind kind, std::uint32_t request_id, const cfm::st_mac& target) {
  TellStart(tracker_.Started(kind, request_id, environment_.now()), target);
}

void Monitor::Replied(TestKind kind, std::uint32_t request_id, const cfm::st_mac& from,
                      std::optional<std::uint32_t> transaction) {
  const Test* test = tracker_.Replied(kind, request_id, environment_.now());
  if (test != nullptr) {
    NoteReply(*test);
    environment_.tell(TestReply{*test, from, transaction, std::nullopt});
  }
}

void Monitor::Ended(std::uint32_t request_id, const LoopbackResult& result) {
  const auto ends = tracker_.Complete(TestKind::Loopback, request_id);
  for (const TestEnd& end : ends) {
    FindingsOf(end.test).loopback = result;
  }
  Finish(ends);
}

void Monitor::Ended(std::uint32_t request_id, const DelayResult& result) {
  const auto ends = tracker_.Complete(TestKind::Delay, request_id);
  for (const TestEnd& end : ends) {
    FindingsOf(end.test).delay = result;
  }
  Finish(ends);
}

void Monitor::Refused(TestKind kind, std::uint32_t request_id, std::uint32_t error_code) {
  Finish(tracker_.Refused(kind, request_id, error_code));
}

}  // namespace cfm_agent
