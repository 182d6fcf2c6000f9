// SPDX-License-Identifier: Apache-2.0
// Loopback: trigger, refusal, progress and results.
#include <cfm/identifiers.h>

#include "recording_handlers.h"
#include "sample_reports.h"

namespace cfm_test {
namespace {

class Loopback : public ReportTest {
 protected:
  std::vector<std::string> Trigger(const cfm::loopback_trigger& trigger) {
    host.Take();
    client->LoopbackTrigger(trigger);
    return host.Take();
  }
};

TEST_F(Loopback, TriggerIsSentBetweenItsRecords) {
  host.GetInStep();
  EXPECT_THAT(Trigger({4000000000, "D", "A", 65535, 65534, 4000000001, 65533}),
              ElementsAre("log 10 LoopbackTrigger:178 Serializing to string.",
                          "log 10 LoopbackTrigger:180 Sending signal to server.",
                          "send 77 LB_TRIGGER md_name:\"D\" ma_name:\"A\" request_id:4000000000 "
                          "mep_id:65535 remote_mep_id:65534 param_a:4000000001 param_b:65533",
                          "log 10 LoopbackTrigger:183 Signal sent."));
}

TEST_F(Loopback, TriggerSetsEveryFieldAlsoToZero) {
  host.GetInStep();
  EXPECT_THAT(Trigger({}),
              testing::Contains("send 77 LB_TRIGGER md_name:\"\" ma_name:\"\" request_id:0 "
                                "mep_id:0 remote_mep_id:0 param_a:0 param_b:0"));
}

TEST_F(Loopback, TriggerIsSentToNobodyWhileTheServerIsAbsent) {
  EXPECT_THAT(Trigger({1, "D", "A", 2, 3, 4, 5}),
              ElementsAre("log 10 LoopbackTrigger:178 Serializing to string.",
                          "log 10 LoopbackTrigger:180 Sending signal to server.",
                          "send 0 LB_TRIGGER md_name:\"D\" ma_name:\"A\" request_id:1 mep_id:2 "
                          "remote_mep_id:3 param_a:4 param_b:5",
                          "log 10 LoopbackTrigger:183 Signal sent."));
  host.ServerFound();
  EXPECT_THAT(host.Take("send "), ElementsAre("77 CACHE_GET no payload"));
}

TEST_F(Loopback, TriggerDoesNotWaitUntilTheServerIsInStep) {
  host.ServerFound(9);
  EXPECT_THAT(Trigger({}), testing::Contains(testing::StartsWith("send 9 LB_TRIGGER ")));
}

TEST_F(Loopback, RefusalIsLoggedAndThenHandedOn) {
  EXPECT_THAT(Deliver(CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR, LoopbackRefusal()),
              ElementsAre("log 10 HandleLoopbackTriggerError:1246 Loopback trigger error received: "
                          "4000000001",
                          "loopback OnLoopbackTriggerError 4000000000 4000000001 \"D\" \"A\" "
                          "65535 12"));
}

TEST_F(Loopback, RefusalKeepsTheLowBitsOfEndpoints) {
  client_server::OpLoopbackTriggerError message;
  message.set_mep_id(65536);
  message.set_remote_mep_id(65536 + 7);
  EXPECT_THAT(
      Deliver(CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR, message),
      ElementsAre("log 10 HandleLoopbackTriggerError:1246 Loopback trigger error received: 0",
                  "loopback OnLoopbackTriggerError 0 0 \"\" \"\" 0 7"));
}

TEST_F(Loopback, StartIsLoggedAndThenHandedOn) {
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LOOPBACK_STARTED, LoopbackStarted()),
              ElementsAre("log 10 HandleLoopbackStarted:1268 Loopback started: target MAC is "
                          "0a:bc:00:ff:10:9e.",
                          "loopback OnLoopbackStarted 4000000000 0a:bc:00:ff:10:9e"));
}

TEST_F(Loopback, ReplyIsLoggedAndThenHandedOn) {
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX, LoopbackReply()),
              ElementsAre("log 10 HandleLoopbackReplyRx:1287 Loopback reply received: transaction "
                          "4000000001, MAC 0a:bc:00:ff:10:9e",
                          "loopback OnLoopbackReplyRx 4000000000 4000000001 0a:bc:00:ff:10:9e"));
}

TEST_F(Loopback, EndIsLoggedAndThenHandedOn) {
  EXPECT_THAT(
      Deliver(CFM_MGR_SRV_EVENT_LOOPBACK_ENDED, LoopbackEnded()),
      ElementsAre("log 10 HandleLoopbackEnded:1304 Loopback ended received: expected "
                  "18446744073709551615 replies. Received: 18446744073709551614 in-order, "
                  "18446744073709551613 out-of-order, 18446744073709551612 with wrong payload.",
                  "loopback OnLoopbackEnded 4000000000 18446744073709551615 "
                  "18446744073709551614 18446744073709551613 18446744073709551612"));
}

TEST_F(Loopback, EmptyReportsAreLoggedAndHandedOnAsZeros) {
  EXPECT_THAT(
      DeliverBytes(CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR, ""),
      ElementsAre("log 10 HandleLoopbackTriggerError:1246 Loopback trigger error received: 0",
                  "loopback OnLoopbackTriggerError 0 0 \"\" \"\" 0 0"));
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_LOOPBACK_STARTED, ""),
              ElementsAre("log 10 HandleLoopbackStarted:1268 Loopback started: target MAC is "
                          "00:00:00:00:00:00.",
                          "loopback OnLoopbackStarted 0 00:00:00:00:00:00"));
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX, ""),
              ElementsAre("log 10 HandleLoopbackReplyRx:1287 Loopback reply received: transaction "
                          "0, MAC 00:00:00:00:00:00",
                          "loopback OnLoopbackReplyRx 0 0 00:00:00:00:00:00"));
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_LOOPBACK_ENDED, ""),
              ElementsAre("log 10 HandleLoopbackEnded:1304 Loopback ended received: expected 0 "
                          "replies. Received: 0 in-order, 0 out-of-order, 0 with wrong payload.",
                          "loopback OnLoopbackEnded 0 0 0 0 0"));
}

TEST_F(Loopback, ReportThatDoesNotParseIsUsedAsFarAsItWasRead) {
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX,
                           LoopbackReply().SerializeAsString() + "\xff"),
              ElementsAre("log 10 HandleLoopbackReplyRx:1287 Loopback reply received: transaction "
                          "4000000001, MAC 0a:bc:00:ff:10:9e",
                          "loopback OnLoopbackReplyRx 4000000000 4000000001 0a:bc:00:ff:10:9e"));
}

TEST_F(Loopback, ReportsAreOnlyLoggedWithoutALoopbackHandler) {
  client->RegisterLoopbackHandler(nullptr);
  EXPECT_THAT(Deliver(CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR, LoopbackRefusal()),
              ElementsAre("log 10 HandleLoopbackTriggerError:1246 Loopback trigger error received: "
                          "4000000001"));
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LOOPBACK_STARTED, LoopbackStarted()),
              ElementsAre("log 10 HandleLoopbackStarted:1268 Loopback started: target MAC is "
                          "0a:bc:00:ff:10:9e."));
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX, LoopbackReply()),
              ElementsAre("log 10 HandleLoopbackReplyRx:1287 Loopback reply received: transaction "
                          "4000000001, MAC 0a:bc:00:ff:10:9e"));
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LOOPBACK_ENDED, LoopbackEnded()),
              ElementsAre(testing::StartsWith("log 10 HandleLoopbackEnded:1304 ")));
}

}  // namespace
}  // namespace cfm_test
