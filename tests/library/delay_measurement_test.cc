// SPDX-License-Identifier: Apache-2.0
// On-demand delay measurement: trigger, refusal, progress and results; the end of a session.
#include <cfm/identifiers.h>

#include "recording_handlers.h"
#include "sample_reports.h"

namespace cfm_test {
namespace {

class Delay : public ReportTest {
 protected:
  std::vector<std::string> Trigger(const cfm::delay_measurement_trigger& trigger) {
    host.Take();
    client->DelayMeasurementTrigger(trigger);
    return host.Take();
  }
};

TEST_F(Delay, TriggerIsSentBetweenItsRecords) {
  host.GetInStep();
  EXPECT_THAT(Trigger({4000000000, "D", "A", 65535, 65534, 4000000001, 4000000002, 65533, 255}),
              ElementsAre("log 10 DelayMeasurementTrigger:199 Serializing to string.",
                          "log 10 DelayMeasurementTrigger:201 Sending signal to server.",
                          "send 77 DM_TRIGGER md_name:\"D\" ma_name:\"A\" request_id:4000000000 "
                          "mep_id:65535 remote_mep_id:65534 param_a:4000000001 param_b:4000000002 "
                          "param_c:65533 param_d:255",
                          "log 10 DelayMeasurementTrigger:204 Signal sent."));
}

TEST_F(Delay, TriggerSetsEveryFieldAlsoToZero) {
  host.GetInStep();
  EXPECT_THAT(Trigger({}), testing::Contains("send 77 DM_TRIGGER md_name:\"\" ma_name:\"\" "
                                             "request_id:0 mep_id:0 remote_mep_id:0 param_a:0 "
                                             "param_b:0 param_c:0 param_d:0"));
}

TEST_F(Delay, TriggerIsSentToNobodyWhileTheServerIsAbsent) {
  EXPECT_THAT(Trigger({1, "D", "A", 2, 3, 4, 5, 6, 7}),
              ElementsAre("log 10 DelayMeasurementTrigger:199 Serializing to string.",
                          "log 10 DelayMeasurementTrigger:201 Sending signal to server.",
                          "send 0 DM_TRIGGER md_name:\"D\" ma_name:\"A\" request_id:1 mep_id:2 "
                          "remote_mep_id:3 param_a:4 param_b:5 param_c:6 param_d:7",
                          "log 10 DelayMeasurementTrigger:204 Signal sent."));
  host.ServerFound();
  EXPECT_THAT(host.Take("send "), ElementsAre("77 CACHE_GET no payload"));
}

TEST_F(Delay, TriggerDoesNotWaitUntilTheServerIsInStep) {
  host.ServerFound(9);
  EXPECT_THAT(Trigger({}), testing::Contains(testing::StartsWith("send 9 DM_TRIGGER ")));
}

TEST_F(Delay, RefusalIsLoggedAndThenHandedOn) {
  EXPECT_THAT(Deliver(CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR, DelayRefusal()),
              ElementsAre("log 10 HandleDelayMeasurementTriggerError:1321 Delay Measurement "
                          "trigger error received: 4000000001",
                          "delay OnDelayMeasurementTriggerError 4000000000 4000000001 \"D\" \"A\" "
                          "65535 12"));
}

TEST_F(Delay, RefusalKeepsTheLowBitsOfEndpoints) {
  client_server::OpDelayMeasurementTriggerError message;
  message.set_mep_id(65536);
  message.set_remote_mep_id(65536 + 7);
  EXPECT_THAT(Deliver(CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR, message),
              ElementsAre("log 10 HandleDelayMeasurementTriggerError:1321 Delay Measurement "
                          "trigger error received: 0",
                          "delay OnDelayMeasurementTriggerError 0 0 \"\" \"\" 0 7"));
}

TEST_F(Delay, StartIsLoggedAndThenHandedOn) {
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_STARTED, DelayStarted()),
              ElementsAre("log 10 HandleDelayMeasurementStarted:1343 Delay Measurement started: "
                          "target MAC is 0a:bc:00:ff:10:9e.",
                          "delay OnDelayMeasurementStarted 4000000000 0a:bc:00:ff:10:9e"));
}

TEST_F(Delay, ReplyIsLoggedAndThenHandedOn) {
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX, DelayReply()),
              ElementsAre("log 10 HandleDelayMeasurementReplyRx:1362 Delay Measurement reply "
                          "received: MAC 0a:bc:00:ff:10:9e",
                          "delay OnDelayMeasurementReplyRx 4000000000 0a:bc:00:ff:10:9e"));
}

TEST_F(Delay, EndIsLoggedWithTheTwoCountsAndHandedOnWhole) {
  EXPECT_THAT(
      Deliver(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_ENDED, DelayEnded()),
      ElementsAre("log 10 HandleDelayMeasurementEnded:1377 Delay Measurement ended: rx: "
                  "18446744073709551615, tx: 18446744073709551614.",
                  "delay OnDelayMeasurementEnded 4000000000 18446744073709551615 "
                  "18446744073709551614 1.25 -2.5 3e+300 4.75 5.5 6.125 18446744073709551613"));
}

TEST_F(Delay, EmptyReportsAreLoggedAndHandedOnAsZeros) {
  EXPECT_THAT(DeliverBytes(CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR, ""),
              ElementsAre("log 10 HandleDelayMeasurementTriggerError:1321 Delay Measurement "
                          "trigger error received: 0",
                          "delay OnDelayMeasurementTriggerError 0 0 \"\" \"\" 0 0"));
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_STARTED, ""),
              ElementsAre("log 10 HandleDelayMeasurementStarted:1343 Delay Measurement started: "
                          "target MAC is 00:00:00:00:00:00.",
                          "delay OnDelayMeasurementStarted 0 00:00:00:00:00:00"));
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX, ""),
              ElementsAre("log 10 HandleDelayMeasurementReplyRx:1362 Delay Measurement reply "
                          "received: MAC 00:00:00:00:00:00",
                          "delay OnDelayMeasurementReplyRx 0 00:00:00:00:00:00"));
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_ENDED, ""),
              ElementsAre("log 10 HandleDelayMeasurementEnded:1377 Delay Measurement ended: rx: "
                          "0, tx: 0.",
                          "delay OnDelayMeasurementEnded 0 0 0 0 0 0 0 0 0 0"));
}

TEST_F(Delay, ReportThatDoesNotParseIsUsedAsFarAsItWasRead) {
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX,
                           DelayReply().SerializeAsString() + "\xff"),
              ElementsAre("log 10 HandleDelayMeasurementReplyRx:1362 Delay Measurement reply "
                          "received: MAC 0a:bc:00:ff:10:9e",
                          "delay OnDelayMeasurementReplyRx 4000000000 0a:bc:00:ff:10:9e"));
}

TEST_F(Delay, ReportsAreOnlyLoggedWithoutADelayMeasurementHandler) {
  client->RegisterDelayMeasurementHandler(nullptr);
  EXPECT_THAT(Deliver(CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR, DelayRefusal()),
              ElementsAre("log 10 HandleDelayMeasurementTriggerError:1321 Delay Measurement "
                          "trigger error received: 4000000001"));
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_STARTED, DelayStarted()),
              ElementsAre("log 10 HandleDelayMeasurementStarted:1343 Delay Measurement started: "
                          "target MAC is 0a:bc:00:ff:10:9e."));
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX, DelayReply()),
              ElementsAre("log 10 HandleDelayMeasurementReplyRx:1362 Delay Measurement reply "
                          "received: MAC 0a:bc:00:ff:10:9e"));
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_ENDED, DelayEnded()),
              ElementsAre("log 10 HandleDelayMeasurementEnded:1377 Delay Measurement ended: rx: "
                          "18446744073709551615, tx: 18446744073709551614."));
}

class DelaySession : public ReportTest {
 protected:
  std::vector<std::string> End(const client_server::OpDelayMeasurementSessionEnded& message) {
    return Deliver(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_SESSION_ENDED, message);
  }
};

TEST_F(DelaySession, EndGoesToTheStatusHandlerWithoutALog) {
  EXPECT_THAT(End(SessionEnded()),
              ElementsAre("status OnDelayMeasurementSessionEnded {s_word_1:4000000001 "
                          "s_word_2:4000000002 s_byte:203 s_word_3:4000000003 "
                          "s_wide_1:18446744073709551611 s_wide_2:18446744073709551612 "
                          "s_word_4:4000000004 s_real_1:1.5 s_real_2:-2.5 s_word_5:4000000005 "
                          "s_word_6:4000000006 s_word_7:4000000007 s_word_8:4000000008 "
                          "s_word_9:4000000009 s_word_10:4000000010 s_real_3:3.5 s_real_4:4.5}"));
}

TEST_F(DelaySession, EndNeedsNoDelayMeasurementHandler) {
  Handlers::Clear(*client);
  client->RegisterStatusHandler(&handlers.status);
  EXPECT_THAT(End(SessionEnded()), testing::SizeIs(1));
}

TEST_F(DelaySession, EndIsDroppedWithoutALogWhenThereIsNoStatusHandler) {
  client->RegisterStatusHandler(nullptr);
  EXPECT_THAT(End(SessionEnded()), IsEmpty());
}

TEST_F(DelaySession, EndKeepsTheLowBitsOfTheByte) {
  client_server::OpDelayMeasurementSessionEnded message;
  message.set_s_byte(256);
  EXPECT_THAT(End(message), ElementsAre(testing::HasSubstr(" s_byte:0 ")));
  message.set_s_byte(256 + 255);
  EXPECT_THAT(End(message), ElementsAre(testing::HasSubstr(" s_byte:255 ")));
}

TEST_F(DelaySession, EndThatDoesNotParseIsUsedAsFarAsItWasRead) {
  const auto whole = End(SessionEnded());
  EXPECT_EQ(DeliverBytes(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_SESSION_ENDED,
                         SessionEnded().SerializeAsString() + "\xff"),
            whole);
}

}  // namespace
}  // namespace cfm_test
