// SPDX-License-Identifier: Apache-2.0
// Commands of the running agent, from its command line and a pipe.

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>

#include "command_fixture.h"

namespace cfm_agent::testing {
namespace {

using ::testing::HasSubstr;

TEST_F(Commands, ALoopbackIsFollowedToItsEnd) {
  Execute({"loopback d a 1 9 param-a=3 param-b=64"});
  ASSERT_TRUE(ServeUntilAsked(CFM_MGR_C2S_SIG_LB_TRIGGER));
  const auto trigger =
      server_->Last<client_server::OpLoopbackTriggerMsg>(CFM_MGR_C2S_SIG_LB_TRIGGER);
  EXPECT_EQ(trigger.md_name(), "d");
  EXPECT_EQ(trigger.ma_name(), "a");
  EXPECT_EQ(trigger.mep_id(), 1U);
  EXPECT_EQ(trigger.remote_mep_id(), 9U);
  EXPECT_EQ(trigger.param_a(), 3U);
  EXPECT_EQ(trigger.param_b(), 64U);
  client_server::OpLoopbackStarted started;
  started.set_request_id(trigger.request_id());
  started.set_mac_address("\x02\x00\x00\x00\x00\x01", 6);
  server_->Publish(CFM_MGR_SRV_EVENT_LOOPBACK_STARTED, started);
  client_server::OpLoopbackEnded ended;
  ended.set_request_id(trigger.request_id());
  ended.set_expected_replies(3);
  ended.set_in_order_replies(3);
  server_->Publish(CFM_MGR_SRV_EVENT_LOOPBACK_ENDED, ended);
  EXPECT_EQ(ServeUntilEnd(), 0);
  EXPECT_EQ(Output(),
            "loopback 1 from MEP d a 1 to 9: started towards 02:00:00:00:00:01\n"
            "loopback 1 from MEP d a 1 to 9: complete, 3 of 3 expected replies in order, 0 out of "
            "order, 0 with a wrong payload\n");
}

TEST_F(Commands, ALinktraceIsFollowedToItsEnd) {
  Execute({"linktrace d a 1 9 ttl=7"});
  ASSERT_TRUE(ServeUntilAsked(CFM_MGR_C2S_SIG_LT_TRIGGER));
  const auto trigger =
      server_->Last<client_server::OpLinktraceTriggerMsg>(CFM_MGR_C2S_SIG_LT_TRIGGER);
  EXPECT_EQ(trigger.ttl(), 7U);
  EXPECT_EQ(trigger.key().remote_mep_id(), 9U);
  PublishLinktrace(6);
  EXPECT_EQ(ServeUntilEnd(), 0);
  EXPECT_THAT(Output(), HasSubstr("linktrace 1 from MEP d a 1 to 9: complete, 1 reply\n"));
}

TEST_F(Commands, ADelayMeasurementIsFollowedToItsEnd) {
  Execute({"delay d a 1 9 param-a=1 param-b=2 param-c=3 param-d=4"});
  ASSERT_TRUE(ServeUntilAsked(CFM_MGR_C2S_SIG_DM_TRIGGER));
  const auto trigger =
      server_->Last<client_server::OpDelayMeasurementTriggerMsg>(CFM_MGR_C2S_SIG_DM_TRIGGER);
  EXPECT_EQ(trigger.param_d(), 4U);
  client_server::OpDelayMeasurementEnded ended;
  ended.set_request_id(trigger.request_id());
  ended.set_rx_count(9);
  ended.set_tx_count(10);
  ended.set_result_1(0.25);
  server_->Publish(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_ENDED, ended);
  EXPECT_EQ(ServeUntilEnd(), 0);
  EXPECT_THAT(Output(), HasSubstr("complete, 10 sent, 9 received, 1 lost, 0 not counted\n"));
}

TEST_F(Commands, ARefusalIsAFailure) {
  Execute({"loopback d a 1 9", "statistics"});
  ASSERT_TRUE(ServeUntilAsked(CFM_MGR_C2S_SIG_LB_TRIGGER));
  client_server::OpLoopbackTriggerError error;
  error.set_request_id(
      server_->Last<client_server::OpLoopbackTriggerMsg>(CFM_MGR_C2S_SIG_LB_TRIGGER).request_id());
  error.set_error_code(3);
  server_->Reply(CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR, error);
  EXPECT_EQ(ServeUntilEnd(), 5);
  EXPECT_EQ(Output(),
            "loopback 1 from MEP d a 1 to 9: refused with error code 3 (the server does not run "
            "this test)\nstatistics 2: complete\n");
}

TEST_F(Commands, SilenceIsAFailure) {
  Execute({"loopback d a 1 9"}, "1");
  EXPECT_EQ(ServeUntilEnd(), 6);
  EXPECT_EQ(Output(), "loopback 1 from MEP d a 1 to 9: timed out\n");
}

TEST_F(Commands, TheEndOfTheEndpointIsAFailure) {
  Execute({"loopback d a 1 9"});
  ASSERT_TRUE(ServeUntilAsked(CFM_MGR_C2S_SIG_LB_TRIGGER));
  client_server::RemovedLocalMaintenanceEndpoint removed;
  removed.set_md_name("d");
  removed.set_ma_name("a");
  removed.set_mep_id(1);
  server_->Publish(CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, removed);
  EXPECT_EQ(ServeUntilEnd(), 7);
  EXPECT_EQ(Output(), "loopback 1 from MEP d a 1 to 9: endpoint removed\n");
}

TEST_F(Commands, TheLossOfTheServerIsAFailure) {
  Execute({"loopback d a 1 9", "clear"});
  ASSERT_TRUE(ServeUntilAsked(CFM_MGR_C2S_SIG_LB_TRIGGER));
  StopServer();
  EXPECT_EQ(agent_.Wait(), 7);
  EXPECT_EQ(Output(), "loopback 1 from MEP d a 1 to 9: server lost\n");
  EXPECT_TRUE(Complains("clear: server lost, nothing is cleared"));
}

TEST_F(Commands, AStopIsAFailureOfTheTestThatRuns) {
  Execute({"loopback d a 1 9", "statistics"});
  ASSERT_TRUE(ServeUntilAsked(CFM_MGR_C2S_SIG_LB_TRIGGER));
  agent_.Signal(SIGTERM);
  EXPECT_EQ(ServeUntilEnd(), 7);
  EXPECT_EQ(Output(), "loopback 1 from MEP d a 1 to 9: the agent stopped before its end\n");
  EXPECT_TRUE(Complains("stopped; 1 command not run\n"));
}

TEST_F(Commands, AStopBeforeAnythingRanIsAFailure) {
  Execute({"statistics", "clear"});
  ASSERT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_STATS_GET));
  agent_.Signal(SIGINT);
  EXPECT_EQ(agent_.Wait(), 7);
  EXPECT_EQ(Output(), "");
  EXPECT_TRUE(Complains("stopped; 2 commands not run\n"));
}

TEST_F(Commands, ATestEndsWithTheBus) {
  Execute({"loopback d a 1 9"});
  ASSERT_TRUE(ServeUntilAsked(CFM_MGR_C2S_SIG_LB_TRIGGER));
  bus_.Kill();
  EXPECT_EQ(agent_.Wait(), 3);
  EXPECT_THAT(Output(),
              ::testing::MatchesRegex("loopback 1 from MEP d a 1 to 9: server lost[^\n]*\n"));
  EXPECT_TRUE(Complains("the bus has gone away"));
}

TEST_F(Commands, ARemovalBeforeTheTestIsNoneDuringIt) {
  Execute({"loopback d a 1 9"});
  ASSERT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_STATS_GET));
  EXPECT_EQ(server_->CountOf(CFM_MGR_C2S_SIG_LB_TRIGGER), 0U);
  client_server::RemovedLocalMaintenanceEndpoint removed;
  removed.set_md_name("d");
  removed.set_ma_name("a");
  removed.set_mep_id(1);
  server_->Publish(CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, removed);
  ASSERT_TRUE(ServeUntilAsked(CFM_MGR_C2S_SIG_LB_TRIGGER));
  EXPECT_EQ(Output(), "");
}

TEST_F(Commands, AnAbsentServerIsWaitedForOnlySoLong) {
  StopServer();
  Execute({"loopback d a 1 9", "show"}, "1");
  EXPECT_EQ(agent_.Wait(), 7);
  EXPECT_THAT(Output(), HasSubstr("loopback 1 from MEP d a 1 to 9: server lost\n"));
  EXPECT_THAT(Output(), HasSubstr("server: absent\n"));
}

TEST_F(Commands, StatisticsArePrinted) {
  auto* local = statistics_.add_local_mep_stats();
  local->set_md_name("d");
  local->set_ma_name("a");
  local->set_mep_id(1);
  local->set_ccm_tx_total(5);
  Execute({"statistics"});
  EXPECT_EQ(ServeUntilEnd(), 0);
  EXPECT_EQ(Output(),
            "  DOMAIN  ASSOCIATION  MEP  CCMS SENT  LAST NUMBER SENT  OUT OF SEQUENCE\n"
            "  d       a              1          5                 0                0\n"
            "statistics 1: complete\n");
}

TEST_F(Commands, RunBesideTheService) {
  cfm_test::ChildProcess service({CFM_AGENT, "--config", ConfigPath(), "--bus", bus_.address()},
                                 directory_.File("service.out"), directory_.File("service.err"));
  ASSERT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_STATUS_GET_ALL));
  Execute({"statistics"});
  EXPECT_EQ(ServeUntilEnd(), 0);
  EXPECT_EQ(Output(), "statistics 1: complete\n");
  EXPECT_EQ(Errors(), "");
}

TEST_F(Commands, ClearTellsTheServerWhatItIsLimitedTo) {
  Execute({"clear domain=d mep-id=7"});
  ASSERT_TRUE(ServeUntilAsked(CFM_MGR_C2S_SIG_STATS_CLEAR));
  const auto clear = server_->Last<client_server::OpStatsClear>(CFM_MGR_C2S_SIG_STATS_CLEAR);
  EXPECT_EQ(clear.md_name(), "d");
  EXPECT_FALSE(clear.has_ma_name());
  EXPECT_EQ(clear.mep_id(), 7U);
  EXPECT_EQ(ServeUntilEnd(), 0);
  EXPECT_EQ(Output(), "clear: sent\n");
}

TEST_F(Commands, ShowWaitsForWhatTheServerReports) {
  Execute({"show"});
  ASSERT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_STATUS_GET_ALL));
  client_server::StatusLocalMaintenanceEndpoint status;
  status.set_md_name("d");
  status.set_ma_name("a");
  status.set_mep_id(1);
  status.set_port_state(2);
  status.set_intf_status(1);
  server_->Publish(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, status);
  EXPECT_EQ(ServeUntilEnd(), 0);
  EXPECT_THAT(Output(), HasSubstr("server: in step\n"));
  EXPECT_THAT(Output(),
              HasSubstr("  a                  1s    1  lo    up         inactive  off  0 of "
                        "1 ok    up           up         none\n"));
}

TEST_F(Commands, ShowFailsWhenTheServerNoLongerAnswers) {
  answers_ = false;
  Execute({"show d"}, "1");
  EXPECT_EQ(ServeUntilEnd(), 6);
  EXPECT_THAT(Output(), HasSubstr("server: in step\ndomain d, level 1\n"));
  EXPECT_EQ(Errors(), "show: the server does not answer; this is what was known\n");
  EXPECT_EQ(server_->CountOf(CFM_MGR_C2S_SIG_STATS_GET), 1U) << "it must not wait twice";
}

TEST_F(Commands, ShowFailsWhenTheServerStopsAnsweringOnTheWay) {
  Execute({"statistics", "show d"}, "1");
  ASSERT_TRUE(server_->ServeUntil([this] {
    AnswerStatistics();
    return answered_ == 2;
  }));
  answers_ = false;
  EXPECT_EQ(ServeUntilEnd(), 6);
  EXPECT_TRUE(Complains("show: the server does not answer; this is what was known\n"));
}

TEST_F(Commands, FailWithAServerThatNeverComesIntoStep) {
  server_->Hang();
  Execute({"clear", "show d"}, "1");
  EXPECT_EQ(ServeUntilEnd(), 6);
  EXPECT_THAT(Output(), ::testing::StartsWith("server: found, not in step yet\ndomain d"));
  EXPECT_EQ(Errors(),
            "clear: the server does not answer, nothing is cleared\n"
            "show: the server does not answer; this is what was known\n");
  EXPECT_EQ(server_->CountOf(CFM_MGR_C2S_SIG_STATS_CLEAR), 0U);
}

TEST_F(Commands, ShowWithoutAServerFailsWithWhatIsConfigured) {
  StopServer();
  Execute({"show d"}, "1");
  EXPECT_EQ(agent_.Wait(), 7);
  EXPECT_THAT(Output(), ::testing::StartsWith("server: absent\ndomain d, level 1\n"));
  EXPECT_EQ(Errors(), "show: server lost; this is what is known without it\n");
}

TEST_F(Commands, ShowFailsForANameThatThereIsNot) {
  Execute({"show nosuch", "show d"});
  EXPECT_EQ(ServeUntilEnd(), 2);
  EXPECT_EQ(Errors(), "show: there is nothing of that name\n");
  EXPECT_THAT(Output(), HasSubstr("domain d, level 1\n"));
}

TEST_F(Commands, ABadCommandIsToldBeforeAnythingRuns) {
  Execute({"show", "shew", "linktrace"});
  EXPECT_EQ(agent_.Wait(), 2);
  EXPECT_TRUE(Complains("--execute \"shew\": \"shew\" is not a command; did you mean show?"));
  EXPECT_TRUE(Complains("--execute \"linktrace\": the domain is missing"));
  EXPECT_EQ(server_->requests().size(), 0U);
}

TEST_F(Commands, AStatusThatIsNewsIsReported) {
  StartAgent();
  ASSERT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_STATUS_GET_ALL));
  client_server::StatusLocalMaintenanceEndpoint status;
  status.set_md_name("d");
  status.set_ma_name("a");
  status.set_mep_id(1);
  server_->Publish(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, status);
  EXPECT_TRUE(WaitUntilItSays(
      "MEP d a 1: 00:00:00:00:00:00, port unknown, interface unknown, no defect\n"));
  EXPECT_TRUE(Says("server in step\n"));
}

// A shell script that joins the agent to an input: with its program, configuration, bus and a path.
constexpr const char* kRunFromFile = R"(exec "$0" --interactive --config "$1" --bus "$2" < "$3")";

class PipedCommands : public Commands {
 protected:
  void Pipe(const std::string& commands) {
    WriteFile(directory_.File("commands"), commands);
    agent_ = cfm_test::ChildProcess({"/bin/sh", "-c", kRunFromFile, CFM_AGENT, ConfigPath(),
                                     bus_.address(), directory_.File("commands")},
                                    directory_.File("out"), directory_.File("err"));
  }
};

TEST_F(PipedCommands, RunOneAfterTheOther) {
  Pipe("statistics\n\n# a comment\nstatistics");
  EXPECT_EQ(ServeUntilEnd(), 0);
  EXPECT_EQ(Output(), "statistics 1: complete\nstatistics 2: complete\n");
}

TEST_F(PipedCommands, EndWithQuit) {
  Pipe("statistics\nquit\nstatistics\n");
  EXPECT_EQ(ServeUntilEnd(), 0);
  EXPECT_EQ(Output(), "statistics 1: complete\n");
}

TEST_F(PipedCommands, FailWhenStoppedDuringATest) {
  Pipe("loopback d a 1 9\n");
  ASSERT_TRUE(ServeUntilAsked(CFM_MGR_C2S_SIG_LB_TRIGGER));
  agent_.Signal(SIGINT);
  EXPECT_EQ(ServeUntilEnd(), 7);
  EXPECT_EQ(Output(), "loopback 1 from MEP d a 1 to 9: the agent stopped before its end\n");
}

TEST_F(PipedCommands, GoOnAfterABadOneAndFailInTheEnd) {
  Pipe("nonsense\nstatistics\n");
  EXPECT_EQ(ServeUntilEnd(), 2);
  EXPECT_EQ(Output(), "statistics 1: complete\n");
  EXPECT_TRUE(Complains("\"nonsense\" is not a command"));
}

}  // namespace
}  // namespace cfm_agent::testing
