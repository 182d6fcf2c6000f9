// SPDX-License-Identifier: Apache-2.0
#include <cfm/identifiers.h>
#include <gmock/gmock.h>

#include "messages.h"
#include "render.h"
#include "server_fixture.h"
#include "trigger_error.h"

namespace cfm_mgr_test {
namespace {

using cfm_mgr::TriggerError;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/** D1/A1 with the MEP list 1 2 3 4 and the local MEPs 1 (active) and 2 (not active). */
class ReportsTest : public ServerTest {
 protected:
  ReportsTest() {
    Send(CFM_MGR_C2S_SIG_MD_CREATE, CreateMd("D1"));
    Send(CFM_MGR_C2S_SIG_MA_CREATE, CreateMa("D1", "A1", {1, 2, 3, 4}));
    Send(CFM_MGR_C2S_SIG_MEP_CREATE, CreateMep("D1", "A1", 1));
    auto passive = CreateMep("D1", "A1", 2);
    passive.set_admin_state(false);
    Send(CFM_MGR_C2S_SIG_MEP_CREATE, passive);
  }

  /** Makes the port of both there, up. */
  void SetPortUp() {
    engine().SetPort(environment_.now, 7, {{0x02, 0, 0, 0, 0, 0x0a}, 1, 2, "port7"});
  }

  /** Ends the round and gives the events since the last call, one short text for each. */
  std::vector<std::string> Events() {
    server_.EndRound();
    std::vector<std::string> events;
    for (const auto& event : environment_.published) events.push_back(Brief(event));
    environment_.published.clear();
    return events;
  }

  template <class Message>
  static Message Read(const std::string& payload) {
    Message message;
    EXPECT_TRUE(message.ParseFromString(payload));
    EXPECT_EQ(message.md_name(), "D1");
    EXPECT_EQ(message.ma_name(), "A1");
    return message;
  }

  static std::string Brief(const RecordingEnvironment::Published& event) {
    if (event.event == CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP) {
      return "local " +
             std::to_string(
                 Read<client_server::StatusLocalMaintenanceEndpoint>(event.payload).mep_id());
    }
    if (event.event == CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP) {
      return "no local " +
             std::to_string(
                 Read<client_server::RemovedLocalMaintenanceEndpoint>(event.payload).mep_id());
    }
    if (event.event == CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP) {
      return BriefRemote<client_server::StatusRemoteMaintenanceEndpoint>("", event.payload);
    }
    EXPECT_EQ(event.event, CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP);
    return BriefRemote<client_server::RemovedRemoteMaintenanceEndpoint>("no ", event.payload);
  }

  template <class Message>
  static std::string BriefRemote(const std::string& prefix, const std::string& payload) {
    const auto message = Read<Message>(payload);
    return prefix + "remote " + std::to_string(message.remote_mep_id()) + " at " +
           std::to_string(message.mep_id());
  }
};

TEST_F(ReportsTest, ABurstOfRequestsIsReportedOnceAsItEnded) {
  EXPECT_THAT(Events(), ElementsAre("local 1", "remote 3 at 1", "remote 4 at 1", "local 2",
                                    "remote 3 at 2", "remote 4 at 2"));
  EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(ReportsTest, TheStatusRequestReportsEveryEndpoint) {
  Events();
  SendBytes(CFM_MGR_C2S_SIG_STATUS_GET_ALL, {});
  EXPECT_EQ(environment_.Line(),
            "client 7: status request: published 2 endpoints, 4 remote endpoints");
  EXPECT_THAT(Events(), ElementsAre("local 1", "remote 3 at 1", "remote 4 at 1", "local 2",
                                    "remote 3 at 2", "remote 4 at 2"));
}

TEST_F(ReportsTest, TheStatusRequestReportsWhatIsNewOnceAndWhatIsGone) {
  Events();
  Send(CFM_MGR_C2S_SIG_MA_UPDATE, UpdateMa("D1", "A1", {1, 2, 4}));
  Send(CFM_MGR_C2S_SIG_MEP_UPDATE, UpdateMep("D1", "A1", 2));
  SendBytes(CFM_MGR_C2S_SIG_STATUS_GET_ALL, {});
  EXPECT_THAT(Events(), ElementsAre("no remote 3 at 1", "local 1", "remote 4 at 1",
                                    "no remote 3 at 2", "local 2", "remote 4 at 2"));
}

TEST_F(ReportsTest, ALocalStatusTellsTheInterfacesAddressAndState) {
  SetPortUp();
  server_.EndRound();
  client_server::StatusLocalMaintenanceEndpoint status;
  ASSERT_TRUE(status.ParseFromString(environment_.published[0].payload));
  EXPECT_EQ(status.mac_address(), std::string("\x02\0\0\0\0\x0a", 6));
  EXPECT_EQ(status.intf_status(), 1U);
  EXPECT_EQ(status.port_state(), 2U);
  EXPECT_TRUE(status.has_defect_ais());
  EXPECT_FALSE(status.defect_remote_ccm());
}

TEST_F(ReportsTest, AnInterfaceThatIsDownOrMissingIsReportedAsSuch) {
  const auto report = [this] {
    environment_.published.clear();
    SendBytes(CFM_MGR_C2S_SIG_STATUS_GET_ALL, {});
    client_server::StatusLocalMaintenanceEndpoint status;
    EXPECT_TRUE(status.ParseFromString(environment_.published[0].payload));
    return status;
  };
  Events();
  EXPECT_EQ(report().intf_status(), 6U);
  EXPECT_EQ(report().mac_address(), std::string(6, '\0'));
  engine().SetPort(environment_.now, 7, {{2}, 2, 1, "port7"});
  EXPECT_EQ(report().intf_status(), 2U);
  EXPECT_EQ(report().port_state(), 1U);
}

TEST_F(ReportsTest, ARemoteEndpointIsIdleUntilTheLocalOneIsActive) {
  SetPortUp();
  server_.EndRound();
  client_server::StatusRemoteMaintenanceEndpoint status;
  ASSERT_TRUE(status.ParseFromString(environment_.published[1].payload));
  EXPECT_EQ(status.mep_id(), 1U);
  EXPECT_EQ(status.fsm_state(), 2U);
  EXPECT_EQ(status.mac_address(), std::string(6, '\0'));
  ASSERT_TRUE(status.ParseFromString(environment_.published[4].payload));
  EXPECT_EQ(status.mep_id(), 2U);
  EXPECT_EQ(status.fsm_state(), 1U);
  Events();
  Send(CFM_MGR_C2S_SIG_MEP_UPDATE, UpdateMep("D1", "A1", 2));
  EXPECT_THAT(Events(), ElementsAre("local 2", "remote 3 at 2", "remote 4 at 2"));
}

TEST_F(ReportsTest, AnUpdateThatChangesNothingIsNotReported) {
  Events();
  Send(CFM_MGR_C2S_SIG_MEP_UPDATE, UpdateMep("D1", "A1", 1));
  Send(CFM_MGR_C2S_SIG_MA_UPDATE, UpdateMa("D1", "A1", {1, 2, 3, 4}));
  EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(ReportsTest, ReportsARemovedEndpointWithItsRemotes) {
  Events();
  Send(CFM_MGR_C2S_SIG_MEP_DELETE, DeleteMep("D1", "A1", 2));
  EXPECT_THAT(Events(),
              ElementsAre("no remote 3 at 2", "no remote 4 at 2", "no local 2", "remote 2 at 1"))
      << "still on the list, it is a remote endpoint now";
}

TEST_F(ReportsTest, ReportsEndpointsRemovedWithTheirAssociation) {
  Events();
  Send(CFM_MGR_C2S_SIG_MA_DELETE, DeleteMa("D1", "A1"));
  const std::vector<std::string> removed = {"no remote 3 at 1", "no remote 4 at 1", "no local 1",
                                            "no remote 3 at 2", "no remote 4 at 2", "no local 2"};
  EXPECT_EQ(Events(), removed);
}

TEST_F(ReportsTest, ReportsEndpointsRemovedWithTheirDomain) {
  Events();
  Send(CFM_MGR_C2S_SIG_MD_DELETE, DeleteMd("D1"));
  EXPECT_THAT(Events(), SizeIs(6));
}

TEST_F(ReportsTest, ReportsRemotesThatLeaveTheListAndThoseThatJoinIt) {
  Events();
  Send(CFM_MGR_C2S_SIG_MA_UPDATE, UpdateMa("D1", "A1", {1, 2, 4, 5}));
  EXPECT_THAT(Events(), ElementsAre("no remote 3 at 1", "remote 5 at 1", "no remote 3 at 2",
                                    "remote 5 at 2"));
}

TEST_F(ReportsTest, AnEndpointMadeLocalIsNoRemoteAnyMore) {
  Events();
  Send(CFM_MGR_C2S_SIG_MEP_CREATE, CreateMep("D1", "A1", 3));
  EXPECT_THAT(Events(),
              ElementsAre("no remote 3 at 1", "no remote 3 at 2", "local 3", "remote 4 at 3"));
}

TEST_F(ReportsTest, ARecreatedEndpointIsReportedRemovedAndNew) {
  Events();
  Send(CFM_MGR_C2S_SIG_MEP_DELETE, DeleteMep("D1", "A1", 1));
  Send(CFM_MGR_C2S_SIG_MEP_CREATE, CreateMep("D1", "A1", 1));
  EXPECT_THAT(Events(), ElementsAre("no remote 3 at 1", "no remote 4 at 1", "no local 1", "local 1",
                                    "remote 3 at 1", "remote 4 at 1"));
}

TEST_F(ReportsTest, WhatAnEarlierRunReportedIsReportedRemoved) {
  cfm_mgr::Store store;
  store.Apply(CreateMd("D1"));
  store.Apply(CreateMa("D1", "A1", {1, 2}));
  store.Apply(CreateMep("D1", "A1", 1));
  RecordingEnvironment environment;
  cfm_mgr::Server server(store, environment, MakeQuietNetwork);
  server.EndRound();
  EXPECT_THAT(environment.published, IsEmpty());
  server.Handle(RequestOf(CFM_MGR_C2S_SIG_MA_UPDATE), kClient,
                UpdateMa("D1", "A1", {1}).SerializeAsString());
  server.EndRound();
  ASSERT_THAT(environment.published, SizeIs(1));
  EXPECT_EQ(Brief(environment.published[0]), "no remote 2 at 1");
}

TEST_F(ReportsTest, StatisticsHaveOneEntryForEachLocalAndRemoteEndpoint) {
  SendBytes(CFM_MGR_C2S_SIG_STATS_GET, {});
  EXPECT_EQ(environment_.Line(),
            "client 7: statistics request: sent 2 endpoints, 4 remote endpoints");
  ASSERT_THAT(environment_.sent, SizeIs(1));
  EXPECT_EQ(environment_.sent[0].client, kClient);
  EXPECT_EQ(environment_.sent[0].signal, CFM_MGR_S2C_SIG_STATS_REPLY);
  client_server::OpReplyAllStats reply;
  ASSERT_TRUE(reply.ParseFromString(environment_.sent[0].payload));
  ASSERT_EQ(reply.local_mep_stats_size(), 2);
  ASSERT_EQ(reply.remote_mep_stats_size(), 4);
  EXPECT_EQ(reply.local_mep_stats(1).mep_id(), 2U);
  EXPECT_TRUE(reply.local_mep_stats(1).has_ccm_tx_total());
  EXPECT_EQ(reply.local_mep_stats(1).ccm_tx_total(), 0U);
  EXPECT_EQ(reply.remote_mep_stats(3).md_name(), "D1");
  EXPECT_EQ(reply.remote_mep_stats(3).mep_id(), 2U);
  EXPECT_EQ(reply.remote_mep_stats(3).remote_mep_id(), 4U);
}

TEST_F(ReportsTest, AStatisticsClearTellsItsScope) {
  client_server::OpStatsClear clear;
  Send(CFM_MGR_C2S_SIG_STATS_CLEAR, clear);
  EXPECT_EQ(environment_.Line(),
            "client 7: statistics clear: any md any ma any mep: cleared, covers 2 endpoints");
  clear.set_ma_name("A1");
  clear.set_mep_id(2);
  Send(CFM_MGR_C2S_SIG_STATS_CLEAR, clear);
  EXPECT_EQ(environment_.Line(),
            R"(client 7: statistics clear: any md ma "A1" mep 2: cleared, covers 1 endpoint)");
  clear.set_md_name("D2");
  Send(CFM_MGR_C2S_SIG_STATS_CLEAR, clear);
  EXPECT_EQ(environment_.Line(),
            R"(client 7: statistics clear: md "D2" ma "A1" mep 2: cleared, covers 0 endpoints)");
}

// Where a trigger and its refusal keep whom they name: a part of its own for the linktrace.

template <class Message>
Message& KeyOf(Message& message) {
  return message;
}
auto& KeyOf(client_server::OpLinktraceTriggerMsg& trigger) { return *trigger.mutable_key(); }
auto& KeyOf(client_server::OpLinktraceTriggerError& error) { return *error.mutable_key(); }

/** A trigger from and to a MEP of D1/A1 with request id 77. */
template <class Trigger>
std::string TriggerBytes(std::uint32_t mep_id, std::uint32_t remote_mep_id) {
  Trigger trigger;
  auto& key = KeyOf(trigger);
  key.set_md_name("D1");
  key.set_ma_name("A1");
  key.set_request_id(77);
  key.set_mep_id(mep_id);
  key.set_remote_mep_id(remote_mep_id);
  return trigger.SerializeAsString();
}

/** A refusal's key and code as one text. */
template <class Error>
std::string BriefError(const std::string& payload) {
  Error error;
  if (!error.ParseFromString(payload)) return "unreadable";
  const auto& key = KeyOf(error);
  return key.md_name() + '/' + key.ma_name() + " mep " + std::to_string(key.mep_id()) + " to " +
         std::to_string(key.remote_mep_id()) + " request " + std::to_string(key.request_id()) +
         " error " + std::to_string(error.error_code());
}

/** One kind of test. */
struct TestKind {
  const char* title;
  const vorx_sig_descriptor* trigger;
  const vorx_sig_descriptor* error;
  std::string (*trigger_bytes)(std::uint32_t mep_id, std::uint32_t remote_mep_id);
  std::string (*brief_error)(const std::string& payload);
};

const std::vector<TestKind>& TestKinds() {
  using namespace client_server;  // NOLINT(google-build-using-namespace): the table's messages
  static const std::vector<TestKind> kKinds = {
      {"linktrace", CFM_MGR_C2S_SIG_LT_TRIGGER, CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR,
       &TriggerBytes<OpLinktraceTriggerMsg>, &BriefError<OpLinktraceTriggerError>},
      {"loopback", CFM_MGR_C2S_SIG_LB_TRIGGER, CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR,
       &TriggerBytes<OpLoopbackTriggerMsg>, &BriefError<OpLoopbackTriggerError>},
      {"delay measurement", CFM_MGR_C2S_SIG_DM_TRIGGER, CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR,
       &TriggerBytes<OpDelayMeasurementTriggerMsg>, &BriefError<OpDelayMeasurementTriggerError>},
  };
  return kKinds;
}

/** Why a test from one MEP to another is refused. */
struct Refusal {
  const char* what;
  std::uint32_t mep_id;
  std::uint32_t remote_mep_id;
  TriggerError code;
  const char* text;
};

const std::vector<Refusal>& Refusals() {
  static constexpr const char* kNoRemote =
      "the association's MEP list holds no such other endpoint (error 2)";
  static const std::vector<Refusal> kRefusals = {
      {"a MEP that is not local", 3, 1, TriggerError::UnknownMep, "no such endpoint (error 1)"},
      {"a remote MEP that is not on the list", 1, 9, TriggerError::UnknownRemoteMep, kNoRemote},
      {"a MEP to itself", 1, 1, TriggerError::UnknownRemoteMep, kNoRemote},
      {"a remote MEP that was not heard of", 1, 3, TriggerError::UnknownAddress,
       "the remote endpoint's address is not known: no CCM of it has come in (error 4)"},
      {"a local MEP that is not active", 2, 3, TriggerError::NotActive,
       "the endpoint is not active, or its interface is not there (error 5)"},
  };
  return kRefusals;
}

std::string LogLine(const TestKind& kind, const Refusal& refusal) {
  return std::string("client 7: ") + kind.title + R"(: md "D1" ma "A1" mep )" +
         std::to_string(refusal.mep_id) + " remote mep " + std::to_string(refusal.remote_mep_id) +
         " request 77: refused: " + refusal.text;
}

TEST_F(ReportsTest, RefusesEveryKindOfTestToItsSenderWithTheReason) {
  SetPortUp();
  for (const TestKind& kind : TestKinds()) {
    for (const Refusal& refusal : Refusals()) {
      SCOPED_TRACE(std::string(kind.title) + ", " + refusal.what);
      environment_.sent.clear();
      EXPECT_FALSE(
          SendBytes(kind.trigger, kind.trigger_bytes(refusal.mep_id, refusal.remote_mep_id)));
      EXPECT_EQ(environment_.Line(), LogLine(kind, refusal));
      ASSERT_THAT(environment_.sent, SizeIs(1));
      EXPECT_EQ(environment_.sent[0].client, kClient);
      EXPECT_EQ(environment_.sent[0].signal, kind.error);
      EXPECT_EQ(kind.brief_error(environment_.sent[0].payload),
                "D1/A1 mep " + std::to_string(refusal.mep_id) + " to " +
                    std::to_string(refusal.remote_mep_id) + " request 77 error " +
                    std::to_string(static_cast<std::uint32_t>(refusal.code)));
    }
  }
}

TEST_F(ReportsTest, ARefusalThatCannotBeSentIsLoggedWithItsReason) {
  SetPortUp();
  environment_.send_fault = "no such process";
  for (const TestKind& kind : TestKinds()) {
    for (const Refusal& refusal : Refusals()) {
      SendBytes(kind.trigger, kind.trigger_bytes(refusal.mep_id, refusal.remote_mep_id));
      EXPECT_EQ(environment_.Line(), LogLine(kind, refusal) + "; cannot reply: no such process");
    }
  }
  EXPECT_THAT(environment_.sent, IsEmpty());
}

TEST_F(ReportsTest, ATriggerThatCannotBeReadIsLoggedOnly) {
  for (const auto* signal :
       {CFM_MGR_C2S_SIG_LT_TRIGGER, CFM_MGR_C2S_SIG_LB_TRIGGER, CFM_MGR_C2S_SIG_DM_TRIGGER}) {
    SendBytes(signal, "\x0a\x05");
    EXPECT_THAT(environment_.Line(), testing::HasSubstr("refused: payload of 2 octets is not a"));
  }
  EXPECT_THAT(environment_.sent, IsEmpty());
}

}  // namespace
}  // namespace cfm_mgr_test
