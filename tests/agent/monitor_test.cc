// The monitor behind the client library's handlers, as the library calls them.

#include "core/monitor.h"

#include <gmock/gmock.h>

#include "core/handlers.h"

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

  TimePoint now_;
  std::vector<std::string> lines_;    // results
  std::vector<std::string> reports_;  // news
  std::vector<EndReason> ends_;
  Monitor monitor_{
      0,
      seconds(10),
      {[this] { return now_; }, [this](const std::string& line) { lines_.push_back(line); },
       [this](const std::string& line) { reports_.push_back(line); },
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
                  "unknown, since uptime 0"));
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
  EXPECT_EQ(reports_[0].substr(0, 43), "delay measurement session ended: word 1: 0,");
}

TEST_F(MonitorTest, PrintsALoopback) {
  const auto id = monitor_.Begin(TestKind::Loopback, kMep, 9).value();
  loopback_.OnLoopbackStarted(id, kMac);
  loopback_.OnLoopbackReplyRx(id, 5, kMac);
  loopback_.OnLoopbackEnded(id, 3, 1, 2, 0);
  EXPECT_THAT(lines_,
              ElementsAre("loopback 1 from MEP d a 1 to 9: started towards 02:00:00:00:00:01",
                          "loopback 1 from MEP d a 1 to 9: reply from 02:00:00:00:00:01, "
                          "transaction 5",
                          "loopback 1 from MEP d a 1 to 9: complete, 1 of 3 expected replies in "
                          "order, 2 out of order, 0 with a wrong payload"));
  EXPECT_THAT(ends_, ElementsAre(EndReason::Complete));
}

TEST_F(MonitorTest, PrintsADelayMeasurement) {
  const auto id = monitor_.Begin(TestKind::Delay, kMep, 9).value();
  delay_.OnDelayMeasurementStarted(id, kMac);
  delay_.OnDelayMeasurementReplyRx(id, kMac);
  delay_.OnDelayMeasurementEnded(id, 9, 10, 0.5, 1, 1.5, 2, 2.5, 3, 7);
  EXPECT_THAT(
      lines_,
      ElementsAre("delay measurement 1 from MEP d a 1 to 9: started towards 02:00:00:00:00:01",
                  "delay measurement 1 from MEP d a 1 to 9: reply from 02:00:00:00:00:01",
                  "delay measurement 1 from MEP d a 1 to 9: complete, 10 sent, 9 received, results "
                  "0.5 1 1.5 2 2.5 3, extra count 7"));
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
  EXPECT_THAT(lines_,
              ElementsAre("linktrace 1 from MEP d a 1 to 9: started towards 02:00:00:00:00:01",
                          "linktrace 1 from MEP d a 1 to 9: reply from 00:00:00:00:00:00, TTL 63, "
                          "relay action FDB",
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
  EXPECT_THAT(lines_,
              ElementsAre("loopback 1 from MEP d a 1 to 9: server lost, the agent stopped before "
                          "its end",
                          "statistics 2: server lost, the agent stopped before its end"));
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
  EXPECT_THAT(lines_, ElementsAre("MEP d a 1: CCMs sent 2, last sequence number sent 3, received "
                                  "out of sequence 1",
                                  "MEP d a 1 remote 9: last sequence number received 4",
                                  "statistics 1: complete"));
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
