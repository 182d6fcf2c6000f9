#include "core/monitor.h"

#include "core/status_text.h"
#include "core/text.h"

namespace cfm_agent {
namespace {

std::string DescribeRemote(const MepKey& mep, std::uint16_t remote) {
  return Describe(mep) + " remote " + std::to_string(remote);
}

}  // namespace

std::optional<std::uint32_t> Monitor::Begin(TestKind kind, const MepKey& mep,
                                            std::uint16_t remote) {
  const std::uint32_t request_id = tracker_.Begin(kind, mep, remote, environment_.now());
  if (server_ != ServerState::Absent) {
    return request_id;
  }
  Finish(tracker_.ServerLost());
  return std::nullopt;
}

void Monitor::Expire() { Finish(tracker_.Expire(environment_.now())); }

void Monitor::PrintReport(const Test* test, const std::string& report) const {
  if (test != nullptr) {
    Print(Describe(*test) + ": " + report);
  }
}

void Monitor::Finish(const std::vector<TestEnd>& ends, const std::string& result) const {
  for (const TestEnd& end : ends) {
    if (end.test.kind != TestKind::Refresh) {
      Print(Describe(end.test) + ": " + Describe(end) + (result.empty() ? "" : ", " + result));
    }
    environment_.ended(end);
  }
}

void Monitor::ServerFound() {
  server_ = ServerState::Found;
  Report("server found; asking what it holds");
}

void Monitor::ServerInStep() {
  if (server_ != ServerState::InStep) {
    server_ = ServerState::InStep;
    Report("server in step");
  }
}

void Monitor::ServerLost() {
  server_ = ServerState::Absent;
  table_.Forget();
  Report("server lost; waiting for it to come back");
  Finish(tracker_.ServerLost());
}

// To a test it is the same whether the server goes or the agent turns away from it.
void Monitor::GiveUp() { Finish(tracker_.ServerLost(), "the agent stopped before its end"); }

void Monitor::LocalStatus(const MepKey& mep, const cfm::local_mep_status& status) {
  if (table_.Local(mep, status)) {
    Report(Describe(mep) + ": " + Describe(status));
  }
}

void Monitor::RemoteStatus(const MepKey& mep, std::uint16_t remote,
                           const cfm::remote_mep_status& status) {
  if (table_.Remote(mep, remote, status)) {
    Report(DescribeRemote(mep, remote) + ": " + Describe(status));
  }
}

void Monitor::LocalRemoved(const MepKey& mep) {
  table_.LocalRemoved(mep);
  Report(Describe(mep) + ": removed by the server");
  Finish(tracker_.LocalMepRemoved(mep));
}

void Monitor::RemoteRemoved(const MepKey& mep, std::uint16_t remote) {
  table_.RemoteRemoved(mep, remote);
  Report(Describe(mep) + " remote " + std::to_string(remote) + ": removed by the server");
  Finish(tracker_.RemoteMepRemoved(mep, remote));
}

void Monitor::SessionEnded(const cfm::DelayMeasurementSessionResult& result) {
  Report("delay measurement session ended: " + Describe(result));
}

bool Monitor::StatisticsWanted() {
  const Test* test = tracker_.StatisticsArrived(environment_.now());
  return test != nullptr && test->kind == TestKind::Statistics;
}

void Monitor::LocalStatistics(const MepKey& mep, const cfm::local_mep_stats& stats) {
  if (StatisticsWanted()) {
    Print(Describe(mep) + ": " + Describe(stats));
  }
}

void Monitor::RemoteStatistics(const MepKey& mep, std::uint16_t remote,
                               const cfm::remote_mep_stats& stats) {
  if (StatisticsWanted()) {
    Print(DescribeRemote(mep, remote) + ": " + Describe(stats));
  }
}

void Monitor::StatisticsComplete() { Finish(tracker_.StatisticsComplete()); }

void Monitor::LinktraceStarted(const MepKey& mep, std::uint16_t remote, std::uint32_t transaction,
                               const cfm::st_mac& target,
                               std::optional<std::uint32_t> started_value) {
  PrintReport(tracker_.LinktraceStarted(mep, remote, transaction, environment_.now()),
              "started towards " + target.to_string() +
                  (started_value ? ", value " + std::to_string(*started_value) : ""));
}

void Monitor::LinktraceReply(const MepKey& mep, const cfm::LinktraceReplyEntry& reply) {
  const Test* test = tracker_.LinktraceReplied(mep, reply.transaction_id, environment_.now());
  PrintReport(test, "reply " + Describe(reply));
}

void Monitor::LinktraceEnded(const MepKey& mep, std::uint32_t transaction) {
  const auto ends = tracker_.LinktraceComplete(mep, transaction);
  Finish(ends, ends.empty() ? "" : Count(ends.front().test.replies, "reply", "replies"));
}

void Monitor::Started(TestKind kind, std::uint32_t request_id, const cfm::st_mac& target) {
  PrintReport(tracker_.Started(kind, request_id, environment_.now()),
              "started towards " + target.to_string());
}

void Monitor::Replied(TestKind kind, std::uint32_t request_id, const cfm::st_mac& from,
                      std::optional<std::uint32_t> transaction) {
  PrintReport(tracker_.Replied(kind, request_id, environment_.now()),
              "reply from " + from.to_string() +
                  (transaction ? ", transaction " + std::to_string(*transaction) : ""));
}

void Monitor::Ended(std::uint32_t request_id, const LoopbackResult& result) {
  Finish(tracker_.Complete(TestKind::Loopback, request_id),
         std::to_string(result.in_order) + " of " +
             Count(result.expected, "expected reply", "expected replies") + " in order, " +
             std::to_string(result.out_of_order) + " out of order, " +
             std::to_string(result.wrong_payload) + " with a wrong payload");
}

void Monitor::Ended(std::uint32_t request_id, const DelayResult& result) {
  std::string text = std::to_string(result.tx_count) + " sent, " + std::to_string(result.rx_count) +
                     " received, results";
  for (const double number : result.results) {
    text += ' ' + Decimal(number);
  }
  Finish(tracker_.Complete(TestKind::Delay, request_id),
         text + ", extra count " + std::to_string(result.extra_count));
}

void Monitor::Refused(TestKind kind, std::uint32_t request_id, std::uint32_t error_code) {
  Finish(tracker_.Refused(kind, request_id, error_code));
}

}  // namespace cfm_agent
