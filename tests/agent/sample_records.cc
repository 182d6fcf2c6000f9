// SPDX-License-Identifier: Apache-2.0
#include "sample_records.h"

#include <limits>

namespace cfm_agent::testing {
namespace {

constexpr cfm::st_mac kMac = {{{2, 0, 0x5e, 0, 1, 2}}};
constexpr std::uint16_t kRemote = 9;

cfm::local_mep_status LocalStatus(bool defects) {
  cfm::local_mep_status status;
  status.mac = kMac;
  status.intf_status = defects ? 7 : 1;
  status.port_state = defects ? 99 : 2;
  status.rdi = defects;
  status.block_state = defects ? 1 : 0;
  status.shutdown_state = defects ? 1 : 0;
  status.highest_defect_priority = defects ? 5 : 0;
  status.defect_rdi = status.defect_mac_status = status.defect_remote_ccm = defects;
  status.defect_error_ccm = status.defect_xcon_ccm = status.defect_ais = defects;
  return status;
}

cfm::remote_mep_status RemoteStatus(const std::string& name) {
  cfm::remote_mep_status status;
  status.fsm_state = 4;
  status.last_change_uptime = std::numeric_limits<std::uint64_t>::max();
  status.mac = kMac;
  status.rdi = true;
  status.sender_id = name;
  return status;
}

Hop FirstHop(const std::string& name) {
  Hop hop;
  hop.from = kMac;
  hop.ttl = 63;
  hop.relay_action = 2;
  hop.forwarded = true;
  hop.ingress = cfm::LtrReplyPort{1, kMac, true, 5, name};
  hop.egress = cfm::LtrReplyPort{77, kMac, false, 0, ""};
  return hop;
}

Hop LastHop() {
  Hop hop;
  hop.from = kMac;
  hop.ttl = 60;
  hop.relay_action = 1;
  hop.terminal_mep = true;
  return hop;
}

Test TestOf(TestKind kind, const MepKey& mep) {
  Test test;
  test.number = 3;
  test.kind = kind;
  test.replies = 2;
  test.mep = mep;
  test.remote = kRemote;
  return test;
}

Findings FindingsOf(const MepKey& mep) {
  Findings findings;
  findings.plan.ttl = 64;
  findings.elapsed = std::chrono::milliseconds(4900);
  findings.target = kMac;
  findings.replies = {std::chrono::milliseconds(1), std::chrono::milliseconds(21),
                      std::chrono::milliseconds(42)};
  findings.hops = {LastHop(), FirstHop(mep.md)};
  findings.local = {{mep, {1, 2, 3}}};
  findings.remote = {{mep, kRemote, {4}}};
  return findings;
}

void AddTests(const MepKey& mep, std::vector<Record>& records) {
  const Test linktrace = TestOf(TestKind::Linktrace, mep);
  const Test loopback = TestOf(TestKind::Loopback, mep);
  const Test delay = TestOf(TestKind::Delay, mep);
  for (const Test& test : {linktrace, loopback, delay}) {
    records.emplace_back(TestStarted{test, kMac, std::nullopt});
  }
  records.emplace_back(TestStarted{linktrace, kMac, 7});
  records.emplace_back(TestReply{linktrace, kMac, std::nullopt, FirstHop(mep.md)});
  records.emplace_back(TestReply{loopback, kMac, 5, std::nullopt});
  records.emplace_back(TestReply{delay, kMac, std::nullopt, std::nullopt});

  Findings findings = FindingsOf(mep);
  records.emplace_back(TestResult{{linktrace, EndReason::Complete, 0}, findings, false});
  findings.loopback = LoopbackResult{3, 1, 1, 1};
  records.emplace_back(TestResult{{loopback, EndReason::Complete, 0}, findings, false});
  findings.loopback.reset();
  findings.delay = DelayResult{9, 10, {0.5, 1, 1.5}, {2, 2.5, 3}, 7};
  records.emplace_back(TestResult{{delay, EndReason::Complete, 0}, findings, false});
  findings.delay->delay.least = std::numeric_limits<double>::quiet_NaN();
  findings.delay->delay.greatest = std::numeric_limits<double>::infinity();
  records.emplace_back(TestResult{{delay, EndReason::Complete, 0}, findings, false});
  findings.delay = DelayResult{};
  records.emplace_back(TestResult{{delay, EndReason::Complete, 0}, findings, false});
  findings.delay.reset();
  const Test statistics = TestOf(TestKind::Statistics, {});
  records.emplace_back(TestResult{{statistics, EndReason::Complete, 0}, findings, false});
  for (const EndReason reason : {EndReason::Refused, EndReason::TimedOut,
                                 EndReason::EndpointRemoved, EndReason::ServerLost}) {
    for (const Test& test : {linktrace, loopback, delay, statistics}) {
      records.emplace_back(TestResult{{test, reason, 4}, Findings(), false});
    }
  }
  records.emplace_back(TestResult{{loopback, EndReason::ServerLost, 0}, Findings(), true});
}

ShowAnswer ShowOf(const MepKey& mep) {
  ShowAnswer answer;
  answer.server = ServerState::InStep;
  ShownEndpoint full;
  full.mep_id = 1;
  full.port = {mep.md, true};
  full.direction = cfm::MepDirection::Up;
  full.active = full.ccm_enabled = true;
  full.status = LocalStatus(true);
  full.remotes_ok = 1;
  full.remotes_expected = 2;
  full.remotes = {{8, RemoteStatus(mep.md), Gap::None},
                  {kRemote, std::nullopt, Gap::NeverReported},
                  {10, RemoteStatus(""), Gap::NotListed}};
  ShownEndpoint bare;
  bare.mep_id = 2;
  bare.port = {mep.ma, false};
  bare.direction = cfm::MepDirection::Down;
  bare.gap = Gap::InterfaceMissing;
  answer.domains = {{mep.md,
                     5,
                     {{mep.ma, cfm::CcmInterval::Interval1s, {full, bare}},
                      {mep.ma, cfm::CcmInterval::Interval300Hz, {}},
                      {mep.ma, static_cast<cfm::CcmInterval>(99), {}}}}};
  answer.unconfigured = {{mep, LocalStatus(false)}};
  return answer;
}

}  // namespace

std::vector<Record> RecordsNaming(const std::string& name) {
  const MepKey mep = {name, name, 1};
  const ConfigCounts counts = {1, 2, 3, 4, 5};
  std::vector<Record> records;
  for (const auto what : {ConfigurationNews::What::Loaded, ConfigurationNews::What::Reloaded,
                          ConfigurationNews::What::Restored, ConfigurationNews::What::Unchanged}) {
    records.emplace_back(ConfigurationNews{what, counts});
  }
  for (const auto state : {ServerState::Absent, ServerState::Found, ServerState::InStep}) {
    records.emplace_back(ServerNews{state});
  }
  records.emplace_back(LocalStatusNews{mep, LocalStatus(false)});
  records.emplace_back(LocalStatusNews{mep, LocalStatus(true)});
  records.emplace_back(RemoteStatusNews{mep, kRemote, RemoteStatus(name)});
  records.emplace_back(RemovalNews{mep, std::nullopt});
  records.emplace_back(RemovalNews{mep, kRemote});
  cfm::DelayMeasurementSessionResult session;
  records.emplace_back(SessionNews{session});
  session.s_byte = 200;
  session.s_word_5 = 2;
  records.emplace_back(SessionNews{session});
  records.emplace_back(WarningNews{"agent.yaml: 2 warnings"});
  records.emplace_back(InterfaceNews{"eth0"});
  records.emplace_back(StopNews{});
  AddTests(mep, records);
  records.emplace_back(ShowOf(mep));
  records.emplace_back(ShowAnswer{ServerState::Found, {}, {}, false});
  records.emplace_back(ClearAnswer{});
  records.emplace_back(HelpAnswer{CommandUsages()});
  records.emplace_back(CheckAnswer{"agent.yaml", counts});
  records.emplace_back(Complaint{"there is nothing of that name", "show"});
  records.emplace_back(Complaint{"stopped; 2 commands not run", ""});
  return records;
}

const std::vector<std::string>& HostileNames() {
  static const std::vector<std::string> kNames = {
      "\x1b[2J\x1b]0;title\x07",  // commands to a terminal
      "\xC2\x9B"                  // the same by a single character
      "2J",
      "a\r\nb\tc\x7f",  // ends of lines
      std::string("a\0b", 3),
      "\xFF\xC3\x28\xED\xA0\x80",  // no UTF-8
      "\xE2\x80\xAE"
      "evil\xE2\x80\xAC",                          // backwards
      "\xE4\xB8\xAD\xE6\x96\x87 \xF0\x9F\x99\x82"  // wide
      " e\xCC\x81",                                // combining
      "\"quoted\\\"",
      ""};
  return kNames;
}

}  // namespace cfm_agent::testing
