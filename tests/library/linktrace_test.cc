// SPDX-License-Identifier: Apache-2.0
// Linktrace: trigger, refusal, start and end. The replies are in linktrace_reply_test.cc.
#include <cfm/identifiers.h>

#include "recording_handlers.h"
#include "sample_reports.h"

namespace cfm_test {
namespace {

class Linktrace : public ReportTest {
 protected:
  std::vector<std::string> Trigger(const cfm::linktrace_trigger& trigger) {
    host.Take();
    client->LinktraceTrigger(trigger);
    return host.Take();
  }
};

TEST_F(Linktrace, TriggerIsSentBetweenItsRecords) {
  host.GetInStep();
  EXPECT_THAT(Trigger({4000000000, "D", "A", 65535, 12, 255}),
              ElementsAre("log 10 LinktraceTrigger:147 LinktraceTrigger implementation. Lets "
                          "prepare the protobuf msg.",
                          "log 10 LinktraceTrigger:159 Serializing to string.",
                          "log 10 LinktraceTrigger:161 Sending signal to server.",
                          "send 77 LT_TRIGGER key{md_name:\"D\" ma_name:\"A\" "
                          "request_id:4000000000 mep_id:65535 remote_mep_id:12} ttl:255",
                          "log 10 LinktraceTrigger:164 Signal sent."));
}

TEST_F(Linktrace, TriggerSetsEveryFieldAlsoToZero) {
  host.GetInStep();
  EXPECT_THAT(Trigger({}),
              testing::Contains("send 77 LT_TRIGGER key{md_name:\"\" ma_name:\"\" request_id:0 "
                                "mep_id:0 remote_mep_id:0} ttl:0"));
}

TEST_F(Linktrace, TriggerIsSentToNobodyWhileTheServerIsAbsent) {
  const auto record = Trigger({1, "D", "A", 2, 3, 4});
  ASSERT_THAT(record, testing::SizeIs(5));
  EXPECT_EQ(record[3],
            "send 0 LT_TRIGGER key{md_name:\"D\" ma_name:\"A\" request_id:1 mep_id:2 "
            "remote_mep_id:3} ttl:4");
  host.ServerFound();
  EXPECT_THAT(host.Take("send "), ElementsAre("77 CACHE_GET no payload"));
}

TEST_F(Linktrace, TriggerDoesNotWaitUntilTheServerIsInStep) {
  host.ServerFound(9);
  EXPECT_THAT(Trigger({}), testing::Contains(testing::StartsWith("send 9 LT_TRIGGER ")));
}

constexpr char kRefused[] =
    "log 10 HandleLinktraceTriggerError:1216 Linktrace trigger error received";

TEST_F(Linktrace, RefusalIsLoggedAndThenHandedToTheLinktraceHandlerOnly) {
  EXPECT_THAT(Deliver(CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR, LinktraceRefusal()),
              ElementsAre(kRefused,
                          "linktrace OnLinktraceTriggerError {request_id:4000000000 md_name:\"D\" "
                          "ma_name:\"A\" mep_id:65535 remote_mep_id:12 error_code:4000000001}"));
}

TEST_F(Linktrace, RefusalWithoutALinktraceHandlerIsOnlyLogged) {
  client->RegisterLinktraceHandler(nullptr);
  EXPECT_THAT(Deliver(CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR, LinktraceRefusal()), ElementsAre(kRefused));
  EXPECT_THAT(DeliverBytes(CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR, "\xff"), ElementsAre(kRefused));
}

TEST_F(Linktrace, RefusalKeepsTheLowBitsOfEndpointsAndTheWholeCode) {
  client_server::OpLinktraceTriggerError message;
  message.mutable_key()->set_mep_id(65536);
  message.mutable_key()->set_remote_mep_id(65536 + 7);
  message.set_error_code(4294967295);
  EXPECT_THAT(Deliver(CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR, message),
              ElementsAre(kRefused,
                          "linktrace OnLinktraceTriggerError {request_id:0 md_name:\"\" "
                          "ma_name:\"\" mep_id:0 remote_mep_id:7 error_code:4294967295}"));
}

TEST_F(Linktrace, RefusalWithoutAKeyHasEmptyNamesAndZeros) {
  auto message = LinktraceRefusal();
  message.clear_key();
  EXPECT_THAT(Deliver(CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR, message),
              ElementsAre(kRefused,
                          "linktrace OnLinktraceTriggerError {request_id:0 md_name:\"\" "
                          "ma_name:\"\" mep_id:0 remote_mep_id:0 error_code:4000000001}"));
}

TEST_F(Linktrace, RefusalThatDoesNotParseIsHandedOnAsFarAsItWasRead) {
  EXPECT_THAT(
      DeliverBytes(CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR,
                   LinktraceRefusal().SerializeAsString() + "\xff"),
      ElementsAre(kRefused, testing::HasSubstr("mep_id:65535 remote_mep_id:12 error_code:4")));
}

constexpr char kStarted[] =
    "log 11 HandleMepLinktraceStarted:1148 \nStarted linktrace transaction 4000000000: MD D MA A "
    "LMEP 11 Remote MAC 0a:bc:00:ff:10:9e RMEP 12";
constexpr char kStartedCall[] =
    R"( OnMepLinktraceStarted "D" "A" 11 4000000000 0a:bc:00:ff:10:9e 12 true 4000000001)";
constexpr char kEnded[] =
    "log 11 HandleMepLinktraceEnded:1172 \nEnded linktrace transaction 4000000000: MD D MA A "
    "LMEP 11";
constexpr char kEndedCall[] = R"( OnMepLinktraceEnded "D" "A" 11 4000000000)";

TEST_F(Linktrace, StartIsLoggedAndHandedToTheStatusAndThenToTheLinktraceHandler) {
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, LinktraceStarted()),
              ElementsAre(kStarted, std::string("status") + kStartedCall,
                          std::string("linktrace") + kStartedCall));
}

TEST_F(Linktrace, EndIsLoggedAndHandedToTheStatusAndThenToTheLinktraceHandler) {
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, LinktraceEnded()),
              ElementsAre(kEnded, std::string("status") + kEndedCall,
                          std::string("linktrace") + kEndedCall));
}

TEST_F(Linktrace, ProgressReachesEitherHandlerAlone) {
  client->RegisterStatusHandler(nullptr);
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, LinktraceStarted()),
              ElementsAre(kStarted, std::string("linktrace") + kStartedCall));
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, LinktraceEnded()),
              ElementsAre(kEnded, std::string("linktrace") + kEndedCall));
  Handlers::Clear(*client);
  client->RegisterStatusHandler(&handlers.status);
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, LinktraceStarted()),
              ElementsAre(kStarted, std::string("status") + kStartedCall));
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, LinktraceEnded()),
              ElementsAre(kEnded, std::string("status") + kEndedCall));
}

TEST_F(Linktrace, ProgressWithoutAnyHandlerIsLogged) {
  Handlers::Clear(*client);
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, LinktraceStarted()),
              ElementsAre(kStarted));
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, LinktraceEnded()), ElementsAre(kEnded));
}

TEST_F(Linktrace, ProgressReachesTheHandlersAlsoWhenDumpsAreNotLogged) {
  host.dump_level_enabled = false;
  EXPECT_THAT(
      Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, LinktraceStarted()),
      ElementsAre(std::string("status") + kStartedCall, std::string("linktrace") + kStartedCall));
  EXPECT_THAT(
      Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, LinktraceEnded()),
      ElementsAre(std::string("status") + kEndedCall, std::string("linktrace") + kEndedCall));
}

TEST_F(Linktrace, StartTellsWhetherTheServerSentAValue) {
  auto message = LinktraceStarted();
  message.set_started_value(0);
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, message)[1],
              testing::EndsWith(" 12 true 0"));
  message.clear_started_value();
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, message)[2],
              testing::EndsWith(" 12 false 0"));
}

// The handlers get what fits their types; the log gets the numbers as they came.
TEST_F(Linktrace, ProgressKeepsTheLowBitsOfEndpointsForTheHandlersOnly) {
  client_server::OpLinktraceStarted started;
  started.set_mep_id(65536 + 7);
  started.set_remote_mep_id(65536 + 8);
  const std::string call = R"( OnMepLinktraceStarted "" "" 7 0 00:00:00:00:00:00 8 false 0)";
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, started),
              ElementsAre("log 11 HandleMepLinktraceStarted:1148 \nStarted linktrace transaction "
                          "0: MD  MA  LMEP 65543 Remote MAC 00:00:00:00:00:00 RMEP 65544",
                          "status" + call, "linktrace" + call));
  client_server::OpLinktraceEnded ended;
  ended.set_mep_id(65536 + 7);
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, ended),
              ElementsAre("log 11 HandleMepLinktraceEnded:1172 \nEnded linktrace transaction 0: "
                          "MD  MA  LMEP 65543",
                          "status OnMepLinktraceEnded \"\" \"\" 7 0",
                          "linktrace OnMepLinktraceEnded \"\" \"\" 7 0"));
}

// Nothing but the backtrace and the fault is in the record: no log, no call.
class LinktraceDeathTest : public Linktrace {
 protected:
  LinktraceDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }

  void ExpectFaults() {
    ExpectFault(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, LinktraceStarted().SerializeAsString(),
                "HandleMepLinktraceStarted client_impl.cc:1138 "
                "\\[Can't deserialize OpLinktraceStarted message\\]");
    ExpectFault(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, LinktraceEnded().SerializeAsString(),
                "HandleMepLinktraceEnded client_impl.cc:1167 "
                "\\[Can't deserialize OpLinktraceEnded message\\]");
    ExpectFault(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, LinktraceReply().SerializeAsString(),
                "HandleMepLinktraceReplyRx client_impl.cc:1190 "
                "\\[Can't deserialize OpLinktraceReplyRx message\\]");
  }

 private:
  void ExpectFault(const vorx_event_descriptor* event, std::string bytes,
                   const std::string& report) {
    bytes.pop_back();
    EXPECT_EXIT(host.Event(event, bytes), testing::ExitedWithCode(1),
                "^backtrace \\| fault 1 " + report + " \\| end\n$");
  }
};

TEST_F(LinktraceDeathTest, AnEventThatDoesNotParseIsFatal) { ExpectFaults(); }

TEST_F(LinktraceDeathTest, AnEventThatDoesNotParseIsFatalAlsoWithoutAHandler) {
  Handlers::Clear(*client);
  ExpectFaults();
}

TEST_F(LinktraceDeathTest, AnEventThatDoesNotParseIsFatalAlsoWhenDumpsAreNotLogged) {
  host.dump_level_enabled = false;
  ExpectFaults();
}

}  // namespace
}  // namespace cfm_test
