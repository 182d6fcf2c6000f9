// SPDX-License-Identifier: Apache-2.0
// What the server sends, while memory runs out: the exception goes to the host, whoever was called
// until then was called as ever, and the next report is taken as if nothing had happened. That
// holds for the linktrace events too: a report that there is no memory to read is not one that
// cannot be read, and does not end the process.
#include <algorithm>

#include "failure_configurations.h"
#include "failure_sweep.h"
#include "sample_reports.h"

namespace cfm_test {
namespace {

// A field that nobody knows, too long to be kept inside a std::string.
const std::string kUnknownField = "\xc2\x3e\x20" + std::string(32, 'x');

void MakeNamesLong(client_server::OpLinktraceTriggerKey& key) {
  key.set_md_name("a domain with a long enough name");
  key.set_ma_name("an association with a long enough name");
}

template <typename Message>
std::string LongNames(Message message) {
  message.set_md_name("a domain with a long enough name");
  message.set_ma_name("an association with a long enough name");
  return message.SerializeAsString();
}

std::string RichStatistics() {
  client_server::OpReplyAllStats message = Statistics();
  for (auto& entry : *message.mutable_local_mep_stats()) {
    entry.set_md_name("a domain with a long enough name");
  }
  // More entries than protobuf makes room for at first.
  for (int i = 0; i < 9; ++i) {
    message.add_local_mep_stats()->set_ma_name("an association with a long enough name");
    message.add_remote_mep_stats()->set_md_name("a domain with a long enough name");
  }
  return message.SerializeAsString();
}

std::string RichLinktraceRefusal() {
  client_server::OpLinktraceTriggerError message = LinktraceRefusal();
  MakeNamesLong(*message.mutable_key());
  return message.SerializeAsString();
}

std::string RichLinktraceReply() {
  client_server::OpLinktraceReplyRx message = LinktraceReply();
  for (auto* const port : {message.mutable_reply()->mutable_reply_ingress(),
                           message.mutable_reply()->mutable_reply_egress()}) {
    port->mutable_port_id()->set_value(std::string(40, 'p'));
  }
  return LongNames(message);
}

std::string RichRemoteStatus() {
  client_server::StatusRemoteMaintenanceEndpoint message = RemoteStatus();
  message.set_sender_id("a bridge with a long enough name");
  return LongNames(message);
}

// The sample with everything in it that takes memory.
std::string Rich(const Report& report) {
  static const std::map<std::string, std::string> payloads = {
      {"STATS_REPLY", RichStatistics()},
      {"LT_TRIGGER_ERROR", RichLinktraceRefusal()},
      {"LB_TRIGGER_ERROR", LongNames(LoopbackRefusal())},
      {"DM_TRIGGER_ERROR", LongNames(DelayRefusal())},
      {"STATUS_LOCAL_MEP", LongNames(LocalStatus())},
      {"STATUS_REMOTE_MEP", RichRemoteStatus()},
      {"REMOVED_LOCAL_MEP", LongNames(RemovedLocal())},
      {"REMOVED_REMOTE_MEP", LongNames(RemovedRemote())},
      {"LINKTRACE_STARTED", LongNames(LinktraceStarted())},
      {"LINKTRACE_ENDED", LongNames(LinktraceEnded())},
      {"LINKTRACE_REPLY_RX", RichLinktraceReply()},
  };
  const auto rich = payloads.find(report.name);
  return kUnknownField + (rich == payloads.end() ? report.bytes : rich->second);
}

// Once for each combination of handlers registered or not, and dumps logged or not.
void ExpectHarmless(const Report& report, const std::string& payload) {
  std::size_t allocations = 0;
  std::size_t call_outs = 0;
  Operation delivery;
  delivery.before = ClientState::InStep(SecondConfiguration(), SecondProbes());
  delivery.run = [&](World& world) { report.Deliver(world.host, payload); };
  for (const bool with_handlers : {true, false}) {
    for (const bool with_dumps : {true, false}) {
      delivery.with_handlers = with_handlers;
      delivery.with_dumps = with_dumps;
      allocations += FailEachAllocation(delivery);
      call_outs += FailEachCallOut(delivery);
    }
  }
  EXPECT_GT(allocations, 0U);
  EXPECT_GT(call_outs, 0U);
}

std::vector<Report> ReportsThatMayBeCutOff() {
  std::vector<Report> reports = ReportsForHandlers();
  reports.erase(std::remove_if(reports.begin(), reports.end(), IsLinktraceEvent), reports.end());
  return reports;
}

const auto kName = [](const auto& report) { return report.param.name; };

// All but the one that changes what the client knows.
class ReportFailure : public testing::TestWithParam<Report> {};

TEST_P(ReportFailure, IsTheHostsToCatchAndHarmsNoLaterReport) {
  ExpectHarmless(GetParam(), Rich(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(All, ReportFailure, testing::ValuesIn(ReportsForHandlers()), kName);

// All that need not be whole.
class CutOffReportFailure : public testing::TestWithParam<Report> {};

TEST_P(CutOffReportFailure, IsTheHostsToCatchAndHarmsNoLaterReport) {
  const std::string payload = Rich(GetParam());
  ExpectHarmless(GetParam(), payload.substr(0, payload.size() - 1));
}

INSTANTIATE_TEST_SUITE_P(All, CutOffReportFailure, testing::ValuesIn(ReportsThatMayBeCutOff()),
                         kName);

}  // namespace
}  // namespace cfm_test
