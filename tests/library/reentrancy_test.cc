// SPDX-License-Identifier: Apache-2.0
// What a handler may do from inside its call: anything with the client but end it.
#include <cfm/identifiers.h>

#include <algorithm>
#include <memory>

#include "recording_handlers.h"
#include "sample_reports.h"

namespace cfm_test {
namespace {

cfm::probe OneProbe() {
  cfm::probe config;
  config.probes[5].id = 5;
  return config;
}

class Reentrancy : public ReportTest {
 protected:
  Reentrancy() { host.GetInStep(); }

  // Uses every operation of the client.
  void UseClient() {
    others.Register(*client);
    client->UpdateConfig(OneMa({1}));
    client->UpdateConfigProbe(OneProbe());
    client->RequestStatistics();
    client->ClearStatistics(nullptr, nullptr, 0);
    client->LinktraceTrigger({});
    client->LoopbackTrigger({});
    client->DelayMeasurementTrigger({});
  }

  // Only the calls, up to their operations.
  std::vector<std::string> Calls(const std::vector<std::string>& record) {
    std::vector<std::string> calls;
    for (const std::string& entry : record) {
      if (const std::size_t operation = entry.find(" On");
          entry.rfind("log ", 0) != 0 && operation != std::string::npos) {
        calls.push_back(entry.substr(0, entry.find(' ', operation + 1)));
      }
    }
    return calls;
  }

  Handlers others{host, "other "};
};

class EveryReport : public Reentrancy, public testing::WithParamInterface<Report> {};

TEST_P(EveryReport, LetsItsHandlerUseTheWholeClient) {
  handlers.SetThen([this] { UseClient(); });
  GetParam().Deliver(host, GetParam().bytes);
  const auto record = host.Take();
  std::vector<std::string> sent;
  std::size_t old_calls = 0;
  for (const std::string& entry : record) {
    if (entry.rfind("send 77 ", 0) == 0) {
      sent.push_back(entry.substr(8, entry.find(' ', 8) - 8));
    }
  }
  for (const std::string& call : Calls(record)) {
    old_calls += call.rfind("other ", 0) == 0 ? 0 : 1;
  }
  EXPECT_EQ(old_calls, 1U) << "a replaced handler was called again";
  EXPECT_THAT(sent,
              ElementsAre("MD_CREATE", "MA_CREATE", "MEP_CREATE", "DM_PROBE_CREATE", "STATS_GET",
                          "STATS_CLEAR", "LT_TRIGGER", "LB_TRIGGER", "DM_TRIGGER"));
  GetParam().Deliver(host, GetParam().bytes);
  const auto later = Calls(host.Take());
  EXPECT_THAT(later, testing::Not(IsEmpty()));
  EXPECT_THAT(later, testing::Each(testing::StartsWith("other ")));
}

TEST_P(EveryReport, LetsItsHandlerClearAllHandlers) {
  handlers.SetThen([this] { Handlers::Clear(*client); });
  GetParam().Deliver(host, GetParam().bytes);
  EXPECT_THAT(Calls(host.Take()), testing::SizeIs(1));
  GetParam().Deliver(host, GetParam().bytes);
  EXPECT_THAT(Calls(host.Take()), IsEmpty());
}

TEST_P(EveryReport, LetsItsHandlerRegisterItselfAgain) {
  GetParam().Deliver(host, GetParam().bytes);
  const auto plain = host.Take();
  handlers.SetThen([this] { handlers.Register(*client); });
  GetParam().Deliver(host, GetParam().bytes);
  EXPECT_EQ(host.Take(), plain);
}

// A handler may let the host go on with its work before it returns.
TEST_P(EveryReport, IsLeftAsItIsByAnotherOneThatComesMeanwhile) {
  GetParam().Deliver(host, "");
  const auto other = host.Take();
  GetParam().Deliver(host, GetParam().bytes);
  auto both = host.Take();
  const auto call = std::find_if(both.begin(), both.end(), [](const std::string& entry) {
    return entry.rfind("log ", 0) != 0;
  });
  ASSERT_NE(call, both.end());
  both.insert(call + 1, other.begin(), other.end());

  handlers.SetThen([this] {
    handlers.SetThen([] {});
    GetParam().Deliver(host, "");
  });
  GetParam().Deliver(host, GetParam().bytes);
  EXPECT_EQ(host.Take(), both);
}

INSTANTIATE_TEST_SUITE_P(Reports, EveryReport, testing::ValuesIn(ReportsForHandlers()),
                         [](const auto& report) { return report.param.name; });

TEST_F(Reentrancy, AFoundServerMayBeAskedAtOnceButIsNotInStep) {
  client.emplace(host.handle());
  handlers.Register(*client);
  handlers.status.then = [this] { UseClient(); };
  host.Take();
  host.ServerFound(9);
  const auto record = host.Take();
  ASSERT_GE(record.size(), 6U);
  EXPECT_EQ(record[1], "send 9 CACHE_GET no payload");
  EXPECT_EQ(record[2], "status OnServerFound");
  EXPECT_THAT(record[3], testing::EndsWith("request will be handled later: pid 9 sync 0"));
  EXPECT_THAT(record[4], testing::EndsWith("request will be handled later: pid 9 sync 0"));
  EXPECT_EQ(record[5], "send 9 STATS_GET no payload");
  host.ServerFound(10);
  EXPECT_THAT(Calls(host.Take()), ElementsAre("other status OnServerFound"));
}

struct LinktraceEvent {
  const vorx_event_descriptor* event;
  std::string bytes;
  std::string operation;
};

const std::vector<LinktraceEvent>& LinktraceEventTable() {
  static const std::vector<LinktraceEvent> events = {
      {CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, LinktraceStarted().SerializeAsString(),
       " OnMepLinktraceStarted"},
      {CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, LinktraceEnded().SerializeAsString(),
       " OnMepLinktraceEnded"},
      {CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, LinktraceReply().SerializeAsString(),
       " OnMepLinktraceReplyRx"},
  };
  return events;
}

TEST_F(Reentrancy, ALinktraceHandlerRegisteredByTheStatusHandlerGetsTheSameEvent) {
  for (const auto& [event, bytes, operation] : LinktraceEventTable()) {
    client->RegisterLinktraceHandler(nullptr);
    handlers.status.then = [this] { client->RegisterLinktraceHandler(&others.linktrace); };
    EXPECT_THAT(Calls(DeliverBytes(event, bytes)),
                ElementsAre("status" + operation, "other linktrace" + operation));
  }
}

TEST_F(Reentrancy, ALinktraceHandlerReplacedByTheStatusHandlerDoesNotGetTheEvent) {
  for (const auto& [event, bytes, operation] : LinktraceEventTable()) {
    client->RegisterLinktraceHandler(&handlers.linktrace);
    handlers.status.then = [this] { client->RegisterLinktraceHandler(&others.linktrace); };
    EXPECT_THAT(Calls(DeliverBytes(event, bytes)),
                ElementsAre("status" + operation, "other linktrace" + operation));
    handlers.status.then = [this] { client->RegisterLinktraceHandler(nullptr); };
    EXPECT_THAT(Calls(DeliverBytes(event, bytes)), ElementsAre("status" + operation));
  }
}

TEST_F(Reentrancy, AStatusHandlerThatClearsItselfLeavesTheEventToTheLinktraceHandler) {
  for (const auto& [event, bytes, operation] : LinktraceEventTable()) {
    client->RegisterStatusHandler(&handlers.status);
    handlers.status.then = [this] { client->RegisterStatusHandler(nullptr); };
    EXPECT_THAT(Calls(DeliverBytes(event, bytes)),
                ElementsAre("status" + operation, "linktrace" + operation));
    EXPECT_THAT(Calls(DeliverBytes(event, bytes)), ElementsAre("linktrace" + operation));
  }
}

TEST_F(Reentrancy, AStatusHandlerRegisteredByTheLinktraceHandlerComesTooLate) {
  for (const auto& [event, bytes, operation] : LinktraceEventTable()) {
    client->RegisterStatusHandler(nullptr);
    handlers.linktrace.then = [this] { client->RegisterStatusHandler(&others.status); };
    EXPECT_THAT(Calls(DeliverBytes(event, bytes)), ElementsAre("linktrace" + operation));
  }
}

// The sanitizers notice a use of either after its end.
TEST_F(Reentrancy, HandlersMayEndOnceTheyAreReplaced) {
  for (const auto& [event, bytes, operation] : LinktraceEventTable()) {
    auto status = std::make_unique<StatusRecorder>(host, "short-lived");
    auto linktrace = std::make_unique<LinktraceRecorder>(host, "short-lived");
    client->RegisterStatusHandler(status.get());
    client->RegisterLinktraceHandler(linktrace.get());
    status->then = [&] {
      Handlers::Clear(*client);
      linktrace.reset();
      status.reset();
    };
    EXPECT_THAT(Calls(DeliverBytes(event, bytes)), ElementsAre("short-lived" + operation));
  }
}

TEST_F(Reentrancy, AStatisticsHandlerThatGoesAwayGetsNoMoreCallsButTheRestIsLogged) {
  auto handler = std::make_unique<StatisticsRecorder>(host, "statistics");
  client->RegisterStatisticsHandler(handler.get());
  handler->then = [&] {
    client->RegisterStatisticsHandler(nullptr);
    handler.reset();
  };
  const auto record = Deliver(CFM_MGR_S2C_SIG_STATS_REPLY, Statistics());
  const auto local = testing::StartsWith("log 11 ReqStatsReply:930 ");
  const auto remote = testing::StartsWith("log 11 ReqStatsReply:947 ");
  EXPECT_THAT(record, ElementsAre(testing::StartsWith("statistics OnStatsReplyLocalMep "), local,
                                  local, remote, remote, remote));
}

TEST_F(Reentrancy, AStatisticsHandlerThatIsReplacedLeavesTheRestOfTheReplyToTheNewOne) {
  int calls = 0;
  handlers.statistics.then = [&] {
    if (++calls == 3) {
      client->RegisterStatisticsHandler(&others.statistics);
    }
  };
  EXPECT_THAT(
      Calls(Deliver(CFM_MGR_S2C_SIG_STATS_REPLY, Statistics())),
      ElementsAre("statistics OnStatsReplyLocalMep", "statistics OnStatsReplyLocalMep",
                  "statistics OnStatsReplyRemoteMep", "other statistics OnStatsReplyRemoteMep",
                  "other statistics OnStatsReplyRemoteMep", "other statistics OnStatsReply"));
}

TEST_F(Reentrancy, AStatisticsHandlerMayAskAgainFromItsEnd) {
  handlers.statistics.then = [this] { client->RequestStatistics(); };
  const auto record = DeliverBytes(CFM_MGR_S2C_SIG_STATS_REPLY, "");
  ASSERT_EQ(record.size(), 3U);
  EXPECT_EQ(record[0], "statistics OnStatsReply");
  EXPECT_EQ(record[1], "send 77 STATS_GET no payload");
}

}  // namespace
}  // namespace cfm_test
