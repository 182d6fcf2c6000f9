// SPDX-License-Identifier: Apache-2.0
// The server on a network: what its clients are told of endpoints, tests and probes.
#include <cfm/identifiers.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <memory>

#include "messages.h"
#include "net/simulated/simulated_network.h"
#include "recording_environment.h"
#include "server.h"
#include "server_fixture.h"

namespace cfm_mgr_test {
namespace {

using namespace std::chrono_literals;  // NOLINT(google-build-using-namespace): times
using cfm_mgr::engine::Time;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr cfm_mgr::engine::PortId kPort = 7;  // of every endpoint of CreateMep()
constexpr vorx_pid_t kClient = 7;

/** D1/A1 as the requests of the tests make it, with MEP 2 active. */
cfm_mgr::Domain FarDomain() {
  cfm_mgr::Store store;
  store.Apply(CreateMd("D1"));
  store.Apply(CreateMa("D1", "A1", {1, 2}));
  auto mep = CreateMep("D1", "A1", 2);
  mep.set_direction(1);
  mep.set_ifindex(1);
  store.Apply(mep);
  return store.tree().domains.at("D1");
}

/** The server's bridge, one that passes on, and one with MEP 2; links of a millisecond. */
cfm_mgr::net::NetworkDescription Line() {
  cfm_mgr::net::NetworkDescription line;
  line.local = "here";
  line.bridges.resize(3);
  line.bridges[0].name = "here";
  line.bridges[0].ports = {{"port", kPort, {2, 0, 0, 0, 0, 1}, {}}};
  line.bridges[1].name = "middle";
  line.bridges[1].ports = {{"west", 1, {2, 0, 0, 0, 1, 1}, {}},
                           {"east", 2, {2, 0, 0, 0, 1, 2}, {}}};
  line.bridges[2].name = "far";
  line.bridges[2].ports = {{"port", 1, {2, 0, 0, 0, 2, 1}, {}}};
  line.bridges[2].domains["D1"] = FarDomain();
  line.links.resize(2);
  line.links[0].ends[0] = {"here", "port"};
  line.links[0].ends[1] = {"middle", "west"};
  line.links[1].ends[0] = {"middle", "east"};
  line.links[1].ends[1] = {"far", "port"};
  for (auto& link : line.links) link.quality.delay = 1ms;
  return line;
}

class ProtocolTest : public testing::Test {
 protected:
  ProtocolTest() {
    Send(CFM_MGR_C2S_SIG_MD_CREATE, CreateMd("D1"));
    Send(CFM_MGR_C2S_SIG_MA_CREATE, CreateMa("D1", "A1", {1, 2}));
    auto mep = CreateMep("D1", "A1", 1);
    mep.set_direction(1);
    Send(CFM_MGR_C2S_SIG_MEP_CREATE, mep);
    server_.EndRound();
  }

  template <class Message>
  void Send(const vorx_sig_descriptor* signal, const Message& message) {
    server_.Handle(RequestOf(signal), kClient, message.SerializeAsString());
  }

  /** Lets time pass, with a round's end after each thing that happens. */
  void Pass(Time time) {
    const Time end = environment_.now + time;
    while (server_.NextDeadline() && *server_.NextDeadline() <= end) {
      environment_.now = std::max(environment_.now, *server_.NextDeadline());
      server_.Run();
      server_.EndRound();
    }
    environment_.now = end;
    server_.Run();
    server_.EndRound();
  }

  /** The messages of one event published so far, which are then forgotten. */
  template <class Message>
  std::vector<Message> Take(const vorx_event_descriptor* event) {
    std::vector<Message> messages;
    auto& published = environment_.published;
    for (const auto& entry : published) {
      if (entry.event != event) continue;
      messages.emplace_back();
      EXPECT_TRUE(messages.back().ParseFromString(entry.payload));
    }
    published.erase(std::remove_if(published.begin(), published.end(),
                                   [event](const auto& entry) { return entry.event == event; }),
                    published.end());
    return messages;
  }

  template <class Trigger>
  static Trigger ToFar() {
    Trigger trigger;
    trigger.set_md_name("D1");
    trigger.set_ma_name("A1");
    trigger.set_request_id(77);
    trigger.set_mep_id(1);
    trigger.set_remote_mep_id(2);
    return trigger;
  }

  RecordingEnvironment environment_;
  cfm_mgr::net::SimulatedNetwork* network_ = nullptr;  // the server's
  cfm_mgr::Server server_{
      cfm_mgr::Store(), environment_, [this](cfm_mgr::engine::Notifications& notifications) {
        auto network = std::make_unique<cfm_mgr::net::SimulatedNetwork>(Line(), notifications, 1);
        network_ = network.get();
        return network;
      }};
  const std::string far_mac_{"\x02\0\0\0\x02\x01", 6};
};

TEST_F(ProtocolTest, TellsOfARemoteEndpointThatIsHeardAndLost) {
  Pass(15s);
  auto remote =
      Take<client_server::StatusRemoteMaintenanceEndpoint>(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP);
  ASSERT_THAT(remote, testing::Not(IsEmpty()));
  EXPECT_EQ(remote.back().fsm_state(), 4U);
  EXPECT_EQ(remote.back().mac_address(), far_mac_);
  auto local =
      Take<client_server::StatusLocalMaintenanceEndpoint>(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP);
  EXPECT_EQ(local.back().highest_defect_priority(), 0U);

  network_->SetLinkUp({"far", "port"}, false);
  Pass(60s);
  remote =
      Take<client_server::StatusRemoteMaintenanceEndpoint>(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP);
  ASSERT_THAT(remote, SizeIs(1));
  EXPECT_EQ(remote[0].fsm_state(), 3U);
  EXPECT_GT(remote[0].last_change_uptime(), 15000U) << "milliseconds";
  local = Take<client_server::StatusLocalMaintenanceEndpoint>(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP);
  EXPECT_TRUE(local.back().defect_remote_ccm());
  EXPECT_TRUE(local.back().rdi());
  EXPECT_EQ(local.back().highest_defect_priority(), 3U);
}

TEST_F(ProtocolTest, StatisticsCountWhatIsSentAndSeenAndClearForgetsIt) {
  const auto statistics = [this] {
    Send(CFM_MGR_C2S_SIG_STATS_GET, client_server::OpStatsClear());
    client_server::OpReplyAllStats reply;
    EXPECT_TRUE(reply.ParseFromString(environment_.sent.back().payload));
    return reply;
  };
  Pass(60s);
  auto reply = statistics();
  EXPECT_GT(reply.local_mep_stats(0).ccm_tx_total(), 0U);
  EXPECT_GT(reply.remote_mep_stats(0).last_ccm_seq_number(), 0U);
  Send(CFM_MGR_C2S_SIG_STATS_CLEAR, client_server::OpStatsClear());
  reply = statistics();
  EXPECT_EQ(reply.local_mep_stats(0).ccm_tx_total(), 0U);
}

TEST_F(ProtocolTest, ALoopbackIsStartedAnsweredAndCounted) {
  Pass(15s);
  auto trigger = ToFar<client_server::OpLoopbackTriggerMsg>();
  trigger.set_param_a(3);    // LBMs
  trigger.set_param_b(100);  // octets of data
  Send(CFM_MGR_C2S_SIG_LB_TRIGGER, trigger);
  EXPECT_EQ(environment_.Line(), R"(client 7: loopback: md "D1" ma "A1" mep 1 remote mep 2 )"
                                 "request 77: started, to 02:00:00:00:02:01");
  const auto started = Take<client_server::OpLoopbackStarted>(CFM_MGR_SRV_EVENT_LOOPBACK_STARTED);
  ASSERT_THAT(started, SizeIs(1));
  EXPECT_EQ(started[0].request_id(), 77U);
  EXPECT_EQ(started[0].mac_address(), far_mac_);
  Pass(20s);
  const auto replies = Take<client_server::OpLoopbackReplyRx>(CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX);
  ASSERT_THAT(replies, SizeIs(3));
  EXPECT_EQ(replies[2].transaction_id(), replies[0].transaction_id() + 2);
  EXPECT_EQ(replies[2].mac_address(), far_mac_);
  const auto ended = Take<client_server::OpLoopbackEnded>(CFM_MGR_SRV_EVENT_LOOPBACK_ENDED);
  ASSERT_THAT(ended, SizeIs(1));
  EXPECT_EQ(ended[0].request_id(), 77U);
  EXPECT_EQ(ended[0].expected_replies(), 3U);
  EXPECT_EQ(ended[0].in_order_replies(), 3U);
  EXPECT_EQ(ended[0].out_of_order_replies() + ended[0].wrong_payload_replies(), 0U);
}

TEST_F(ProtocolTest, ALinktraceTellsEachReplyAndItsEnd) {
  Pass(15s);
  client_server::OpLinktraceTriggerMsg trigger;
  auto& key = *trigger.mutable_key();
  key.set_md_name("D1");
  key.set_ma_name("A1");
  key.set_request_id(77);
  key.set_mep_id(1);
  key.set_remote_mep_id(2);
  trigger.set_ttl(9);
  Send(CFM_MGR_C2S_SIG_LT_TRIGGER, trigger);
  const auto started = Take<client_server::OpLinktraceStarted>(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED);
  ASSERT_THAT(started, SizeIs(1));
  EXPECT_EQ(started[0].started_value(), 77U) << "the request that it belongs to";
  EXPECT_EQ(started[0].mac_address(), far_mac_);
  Pass(20s);
  const auto replies =
      Take<client_server::OpLinktraceReplyRx>(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX);
  ASSERT_THAT(replies, SizeIs(1));
  const client_server::LinktraceReply& reply = replies[0].reply();
  EXPECT_EQ(replies[0].mep_id(), 1U);
  EXPECT_EQ(reply.transaction_id(), started[0].transaction_id());
  EXPECT_EQ(reply.ttl(), 8U);
  EXPECT_EQ(reply.relay_action(), 1);
  EXPECT_TRUE(reply.flags().terminal_mep());
  EXPECT_EQ(reply.source_mac(), far_mac_);
  ASSERT_TRUE(reply.has_reply_ingress());
  EXPECT_EQ(reply.reply_ingress().action(), 1U);
  EXPECT_EQ(reply.reply_ingress().mac(), far_mac_);
  EXPECT_FALSE(reply.has_reply_egress());
  const auto ended = Take<client_server::OpLinktraceEnded>(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED);
  ASSERT_THAT(ended, SizeIs(1));
  EXPECT_EQ(ended[0].transaction_id(), started[0].transaction_id());
}

TEST_F(ProtocolTest, ADelayMeasurementTellsMicroseconds) {
  Pass(15s);
  auto trigger = ToFar<client_server::OpDelayMeasurementTriggerMsg>();
  trigger.set_param_a(4);   // DMMs
  trigger.set_param_b(50);  // milliseconds between them
  trigger.set_param_c(128);
  trigger.set_param_d(5);
  Send(CFM_MGR_C2S_SIG_DM_TRIGGER, trigger);
  EXPECT_THAT(
      Take<client_server::OpDelayMeasurementStarted>(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_STARTED),
      SizeIs(1));
  Pass(20s);
  EXPECT_THAT(
      Take<client_server::OpDelayMeasurementReplyRx>(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX),
      SizeIs(4));
  const auto ended =
      Take<client_server::OpDelayMeasurementEnded>(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_ENDED);
  ASSERT_THAT(ended, SizeIs(1));
  EXPECT_EQ(ended[0].request_id(), 77U);
  EXPECT_EQ(ended[0].tx_count(), 4U);
  EXPECT_EQ(ended[0].rx_count(), 4U);
  // Two links of a millisecond, there and back.
  EXPECT_DOUBLE_EQ(ended[0].result_1(), 4000);
  EXPECT_DOUBLE_EQ(ended[0].result_2(), 4000);
  EXPECT_DOUBLE_EQ(ended[0].result_3(), 4000);
  EXPECT_DOUBLE_EQ(ended[0].result_6(), 0);
  EXPECT_EQ(ended[0].extra_count(), 0U);
}

TEST_F(ProtocolTest, AParameterOutOfItsRangeIsRefused) {
  Pass(15s);
  auto trigger = ToFar<client_server::OpDelayMeasurementTriggerMsg>();
  trigger.set_param_d(256);
  Send(CFM_MGR_C2S_SIG_DM_TRIGGER, trigger);
  client_server::OpDelayMeasurementTriggerError error;
  ASSERT_TRUE(error.ParseFromString(environment_.sent.back().payload));
  EXPECT_EQ(error.error_code(), 7U);
}

TEST_F(ProtocolTest, AProbesSessionsReportTheirRuns) {
  auto probe = CreateProbe(5);
  probe.set_md_name("D1");
  probe.set_ma_name("A1");
  probe.set_lmep_id(1);
  probe.set_rmep_id(2);
  Send(CFM_MGR_C2S_SIG_DM_PROBE_CREATE, probe);
  auto session = CreateSession(5, 3);
  session.set_count(2);
  session.set_interval(100);
  session.set_size(64);
  Send(CFM_MGR_C2S_SIG_DM_SESSION_CREATE, session);
  server_.EndRound();
  Pass(120s);
  Send(CFM_MGR_C2S_SIG_DM_SESSION_DELETE, DeleteSession(5, 3));
  server_.EndRound();
  const auto ended = Take<client_server::OpDelayMeasurementSessionEnded>(
      CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_SESSION_ENDED);
  ASSERT_THAT(ended, testing::Not(IsEmpty()));
  const auto complete = std::find_if(ended.begin(), ended.end(), [](const auto& session_ended) {
    return session_ended.s_byte() == 0 && session_ended.s_word_5() == 2;
  });
  ASSERT_NE(complete, ended.end()) << "no run was answered whole";
  EXPECT_EQ(complete->s_word_1(), 5U);
  EXPECT_EQ(complete->s_word_2(), 3U);
  EXPECT_EQ(complete->s_word_4(), 2U);
  EXPECT_EQ(complete->s_word_6(), 4000U);
  EXPECT_DOUBLE_EQ(complete->s_real_1(), 4000);
  EXPECT_DOUBLE_EQ(complete->s_real_4(), 0);
}

TEST_F(ProtocolTest, EverythingGoesWithTheDomain) {
  Pass(15s);
  Send(CFM_MGR_C2S_SIG_MD_DELETE, DeleteMd("D1"));
  server_.EndRound();
  environment_.published.clear();
  Pass(60s);
  EXPECT_THAT(environment_.published, IsEmpty());
}

}  // namespace
}  // namespace cfm_mgr_test
