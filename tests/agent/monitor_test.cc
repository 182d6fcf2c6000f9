// SPDX-License-Identifier: Apache-2.0
// The monitor behind the client library's handlers, as the library calls them.

#include "core/monitor.h"

#include <gmock/gmock.h>

#include "core/handlers.h"
#include "core/text_renderer.h"

namespace cfm_agent {
namespace {

using std::chrono::seconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr cfm::st_mac kMac = {{{2, 0, 0, 0, 0, 1}}};
const MepKey kMep = {"d", "a", 1};

class MonitorTest : public ::testing::Test {
 protected:
  MonitorTest() {
    status_.OnServerFound();
    monitor_.ServerInStep();
    reports_.clear();
  }

  void Take(const Record& record) {
    auto& taken = IsNews(record) ? reports_ : lines_;
    for (std::string& line : renderer_.Render(record, {})) {
      taken.push_back(std::move(line));
    }
  }

  TextRenderer renderer_{Style{}};
  TimePoint now_;
  std::vector<std::string> lines_;    // results
  std::vector<std::string> reports_;  // news
  std::vector<EndReason> ends_;
  Monitor monitor_{0,
                   seconds(10),
                   {[this] { return now_; }, [this](const Record& record) { Take(record); },
                    [this](const TestEnd& end) { ends_.push_back(end.reason); }}};
  StatusHandler status_{monitor_};
  StatisticsHandler statistics_{monitor_};
  LinktraceHandler linktrace_{monitor_};
  LoopbackHandler loopback_{monitor_};
  DelayMeasurementHandler delay_{monitor_};
};

TEST_F(MonitorTest, FollowsTheServer) {
  EXPECT_EQ(monitor_.server(), ServerState::InStep);
  monitor_.ServerLost();
  EXPECT_EQ(monitor_.server(), ServerState::Absent);
  status_.OnServerFound();
  EXPECT_EQ(monitor_.server(), ServerState::Found);
  monitor_.ServerInStep();
  EXPECT_THAT(reports_, ElementsAre("server lost; waiting for it to come back",
                                    "server found; asking what it holds", "server in step"));
}

TEST_F(MonitorTest, ReportsStatusThatIsNews) {
  cfm::local_mep_status status;
  status_.OnStatusLocalMep("d", "a", 1, status);
  status_.OnStatusLocalMep("d", "a", 1, status);
  status_.OnStatusRemoteMep("d", "a", 1, 9, {});
  EXPECT_THAT(
      reports_,
      ElementsAre("MEP d a 1: 00:00:00:00:00:00, port unknown, interface unknown, no defect",
                  "MEP d a 1 remote 9: 00:00:00:00:00:00, 0, port unknown, interface "
                  "unknown, since uptime 0 ms"));
  EXPECT_THAT(lines_, IsEmpty());
}

TEST_F(MonitorTest, ReportsRemovals) {
  status_.OnRemovedRemoteMep("d", "a", 1, 9);
  status_.OnRemovedLocalMep("d", "a", 1);
  EXPECT_THAT(reports_, ElementsAre("MEP d a 1 remote 9: removed by the server",
                                    "MEP d a 1: removed by the server"));
}

TEST_F(MonitorTest, ReportsTheEndOfAProbesSession) {
  status_.OnDelayMeasurementSessionEnded({});
  ASSERT_EQ(reports_.size(), 1U);
  EXPECT_EQ(reports_[0].substr(0, 38), "probe 0 session 0 run 0: complete, 0 s");
}

TEST_F(MonitorTest, PrintsALoopback) {
  const auto id = monitor_.Begin(TestKind::Loopback, kMep, 9).value();
  loopback_.OnLoopbackStarted(id, kMac);
  loopback_.OnLoopbackReplyRx(id, 5, kMac);
  loopback_.OnLoopbackEnded(id, 3, 1, 2, 0);
  EXPECT_THAT(lines_,
              ElementsAre("loopback 1 from MEP d a 1 to 9: started towards 02:00:00:00:00:01",
                          "loopback 1 from MEP d a 1 to 9: complete, 1 of 3 expected replies in "
                          "order, 2 out of order, 0 with a wrong payload"));
  EXPECT_THAT(ends_, ElementsAre(EndReason::Complete));
}

TEST_F(MonitorTest, PrintsADelayMeasurement) {
  const auto id = monitor_.Begin(TestKind::Delay, kMep, 9).value();
  delay_.OnDelayMeasurementStarted(id, kMac);
  for (const int gap : {0, 20, 20, 41}) {
    now_ += std::chrono::milliseconds(gap);
    delay_.OnDelayMeasurementReplyRx(id, kMac);
  }
  delay_.OnDelayMeasurementEnded(id, 9, 10, 0.5, 1, 1.5, 2, 2.5, 3, 7);
  EXPECT_THAT(
      lines_,
      ElementsAre(
          "delay measurement 1 from MEP d a 1 to 9: started towards 02:00:00:00:00:01",
          "  MICROSECONDS  LEAST   MEAN  GREATEST",
          "  delay         0.500  1.000     1.500  |--------------------o-------------------|",
          "  variation     2.000  2.500     3.000  |--------------------o-------------------|",
          "  BETWEEN REPLIES  COUNT", "       20 - 25 ms      2  " + std::string(30, '#'),
          "       25 - 30 ms      0", "       30 - 35 ms      0", "       35 - 40 ms      0",
          "       40 - 45 ms      1  " + std::string(15, '#'),
          "delay measurement 1 from MEP d a 1 to 9: complete, 10 sent, 9 received, 1 lost, "
          "7 not counted"));
}

TEST_F(MonitorTest, PrintsALinktraceOnceThoughTwoHandlersGetIt) {
  monitor_.Begin(TestKind::Linktrace, kMep, 9);
  cfm::LinktraceReplyEntry reply;
  reply.transaction_id = 77;
  reply.ttl = 63;
  reply.relay_action = 2;
  status_.OnMepLinktraceStarted("d", "a", 1, 77, kMac, 9, false, 0);
  linktrace_.OnMepLinktraceStarted("d", "a", 1, 77, kMac, 9, false, 0);
  status_.OnMepLinktraceReplyRx("d", "a", 1, reply);
  linktrace_.OnMepLinktraceReplyRx("d", "a", 1, reply);
  status_.OnMepLinktraceEnded("d", "a", 1, 77);
  linktrace_.OnMepLinktraceEnded("d", "a", 1, 77);
  EXPECT_THAT(
      lines_,
      ElementsAre("linktrace 1 from MEP d a 1 to 9: started towards 02:00:00:00:00:01", "  * MEP 1",
                  "  o hop 1: 00:00:00:00:00:00, relay action FDB", "  : no reply from MEP 9",
                  "linktrace 1 from MEP d a 1 to 9: complete, 1 reply"));
}

TEST_F(MonitorTest, PrintsTheValueThatALinktraceStartsWith) {
  monitor_.Begin(TestKind::Linktrace, kMep, 9);
  linktrace_.OnMepLinktraceStarted("d", "a", 1, 77, kMac, 9, true, 0);
  EXPECT_THAT(lines_, ElementsAre("linktrace 1 from MEP d a 1 to 9: started towards "
                                  "02:00:00:00:00:01, value 0"));
}

TEST_F(MonitorTest, PrintsARefusalOfEveryKind) {
  cfm::linktrace_trigger_error error;
  error.request_id = monitor_.Begin(TestKind::Linktrace, kMep, 9).value();
  error.error_code = 70;
  linktrace_.OnLinktraceTriggerError(error);
  const auto loopback = monitor_.Begin(TestKind::Loopback, kMep, 9).value();
  loopback_.OnLoopbackTriggerError(loopback, 71, "d", "a", 1, 9);
  const auto delay = monitor_.Begin(TestKind::Delay, kMep, 9).value();
  delay_.OnDelayMeasurementTriggerError(delay, 72, "d", "a", 1, 9);
  EXPECT_THAT(lines_,
              ElementsAre("linktrace 1 from MEP d a 1 to 9: refused with error code 70",
                          "loopback 2 from MEP d a 1 to 9: refused with error code 71",
                          "delay measurement 3 from MEP d a 1 to 9: refused with error code 72"));
}

TEST_F(MonitorTest, EndsATestWithItsEndpointAndSaysSoOnce) {
  const auto id = monitor_.Begin(TestKind::Loopback, kMep, 9).value();
  status_.OnRemovedLocalMep("d", "a", 1);
  loopback_.OnLoopbackEnded(id, 1, 1, 0, 0);
  EXPECT_THAT(lines_, ElementsAre("loopback 1 from MEP d a 1 to 9: endpoint removed"));
  EXPECT_THAT(ends_, ElementsAre(EndReason::EndpointRemoved));
}

TEST_F(MonitorTest, EndsATestWithTheServer) {
  monitor_.Begin(TestKind::Loopback, kMep, 9);
  monitor_.ServerLost();
  EXPECT_THAT(lines_, ElementsAre("loopback 1 from MEP d a 1 to 9: server lost"));
}

TEST_F(MonitorTest, EndsATestAtOnceWhileThereIsNoServer) {
  monitor_.ServerLost();
  EXPECT_EQ(monitor_.Begin(TestKind::Loopback, kMep, 9), std::nullopt);
  EXPECT_THAT(lines_, ElementsAre("loopback 1 from MEP d a 1 to 9: server lost"));
  EXPECT_THAT(ends_, ElementsAre(EndReason::ServerLost));
  EXPECT_TRUE(monitor_.Idle());
}

TEST_F(MonitorTest, EndsEveryTestOnceWhenTheAgentStops) {
  monitor_.Begin(TestKind::Loopback, kMep, 9);
  monitor_.Begin(TestKind::Statistics);
  monitor_.GiveUp();
  monitor_.GiveUp();
  EXPECT_THAT(lines_, ElementsAre("loopback 1 from MEP d a 1 to 9: the agent stopped before "
                                  "its end",
                                  "statistics 2: the agent stopped before its end"));
  EXPECT_THAT(ends_, ElementsAre(EndReason::ServerLost, EndReason::ServerLost));
}

TEST_F(MonitorTest, EndsATestThatHearsNothing) {
  monitor_.Begin(TestKind::Loopback, kMep, 9);
  now_ += seconds(10);
  monitor_.Expire();
  EXPECT_THAT(lines_, ElementsAre("loopback 1 from MEP d a 1 to 9: timed out"));
}

TEST_F(MonitorTest, PrintsStatisticsThatWereAskedFor) {
  monitor_.Begin(TestKind::Statistics);
  statistics_.OnStatsReplyLocalMep("d", "a", 1, {1, 2, 3});
  statistics_.OnStatsReplyRemoteMep("d", "a", 1, 9, {4});
  statistics_.OnStatsReply();
  EXPECT_THAT(
      lines_,
      ElementsAre("  DOMAIN  ASSOCIATION  MEP  CCMS SENT  LAST NUMBER SENT  OUT OF SEQUENCE",
                  "  d       a              1          2                 3                1",
                  "  DOMAIN  ASSOCIATION  MEP  REMOTE MEP  LAST NUMBER RECEIVED",
                  "  d       a              1           9                     4",
                  "statistics 1: complete"));
}

TEST_F(MonitorTest, TellsHowFarTestsAre) {
  EXPECT_EQ(monitor_.Progress(), "");
  const auto loopback = monitor_.Begin(TestKind::Loopback, kMep, 9, {100, 0}).value();
  monitor_.Begin(TestKind::Statistics);
  monitor_.Begin(TestKind::Linktrace, kMep, 9);
  loopback_.OnLoopbackReplyRx(loopback, 1, kMac);
  now_ += std::chrono::milliseconds(2999);
  EXPECT_EQ(monitor_.Progress(), "loopback 1: 1/100 replies, 2 s; linktrace 3: 0 hops, 2 s");
  loopback_.OnLoopbackEnded(loopback, 100, 1, 0, 0);
  EXPECT_EQ(monitor_.Progress(), "linktrace 3: 0 hops, 2 s");
  monitor_.ServerLost();
  const auto delay = monitor_.Begin(TestKind::Delay, kMep, 9);
  EXPECT_EQ(delay, std::nullopt);
  EXPECT_EQ(monitor_.Progress(), "");
}

TEST_F(MonitorTest, SaysNothingOfARefresh) {
  monitor_.Begin(TestKind::Refresh);
  statistics_.OnStatsReplyLocalMep("d", "a", 1, {1, 2, 3});
  statistics_.OnStatsReplyRemoteMep("d", "a", 1, 9, {4});
  statistics_.OnStatsReply();
  EXPECT_THAT(lines_, IsEmpty());
  EXPECT_THAT(ends_, ElementsAre(EndReason::Complete));
}

TEST_F(MonitorTest, SaysNothingOfOtherClientsTests) {
  loopback_.OnLoopbackStarted(4711, kMac);
  loopback_.OnLoopbackReplyRx(4711, 1, kMac);
  loopback_.OnLoopbackEnded(4711, 1, 1, 0, 0);
  delay_.OnDelayMeasurementEnded(4711, 1, 1, 0, 0, 0, 0, 0, 0, 0);
  linktrace_.OnMepLinktraceStarted("d", "a", 1, 77, kMac, 9, true, 1);
  linktrace_.OnMepLinktraceEnded("d", "a", 1, 77);
  statistics_.OnStatsReply();
  EXPECT_THAT(lines_, IsEmpty());
  EXPECT_THAT(ends_, IsEmpty());
}

}  // namespace
}  // namespace cfm_agent
