// SPDX-License-Identifier: Apache-2.0
// What the server sends: each callback against nothing but copying the bytes to a string and
// parsing that. The cache reply is not among them: it is measured by size, with the configuration.
#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>

#include <memory>
#include <utility>

#include "contest.h"
#include "counting_host.h"

namespace cfm_bench {
namespace {

constexpr double kGoal = 1.2;

constexpr std::size_t kCallsOfPass = 2000;

class StatusHandler : public cfm::ReceivedStatusHandlerIntf {
  using String = const std::string&;
  void OnStatusLocalMep(String, String, std::uint16_t, const cfm::local_mep_status&) override {}
  void OnStatusRemoteMep(String, String, std::uint16_t, std::uint16_t,
                         const cfm::remote_mep_status&) override {}
  void OnRemovedLocalMep(String, String, std::uint16_t) override {}
  void OnRemovedRemoteMep(String, String, std::uint16_t, std::uint16_t) override {}
  void OnMepLinktraceStarted(String, String, std::uint16_t, std::uint32_t, cfm::st_mac,
                             std::uint16_t, bool, std::uint32_t) override {}
  void OnMepLinktraceEnded(String, String, std::uint16_t, std::uint32_t) override {}
  void OnMepLinktraceReplyRx(String, String, std::uint16_t,
                             const cfm::LinktraceReplyEntry&) override {}
  void OnDelayMeasurementSessionEnded(const cfm::DelayMeasurementSessionResult&) override {}
  void OnServerFound() override {}
};

class StatisticsHandler : public cfm::ReceivedStatisticsHandlerIntf {
  using String = const std::string&;
  void OnStatsReplyLocalMep(String, String, std::uint16_t, const cfm::local_mep_stats&) override {}
  void OnStatsReplyRemoteMep(String, String, std::uint16_t, std::uint16_t,
                             const cfm::remote_mep_stats&) override {}
  void OnStatsReply() override {}
};

class LinktraceHandler : public cfm::ReceivedLinktraceHandlerIntf {
  using String = const std::string&;
  void OnMepLinktraceStarted(String, String, std::uint16_t, std::uint32_t, cfm::st_mac,
                             std::uint16_t, bool, std::uint32_t) override {}
  void OnMepLinktraceEnded(String, String, std::uint16_t, std::uint32_t) override {}
  void OnMepLinktraceReplyRx(String, String, std::uint16_t,
                             const cfm::LinktraceReplyEntry&) override {}
  void OnLinktraceTriggerError(const cfm::linktrace_trigger_error&) override {}
};

class LoopbackHandler : public cfm::ReceivedLoopbackHandlerIntf {
  using String = const std::string&;
  void OnLoopbackTriggerError(std::uint32_t, std::uint32_t, String, String, std::uint16_t,
                              std::uint16_t) override {}
  void OnLoopbackStarted(std::uint32_t, const cfm::st_mac&) override {}
  void OnLoopbackReplyRx(std::uint32_t, std::uint32_t, const cfm::st_mac&) override {}
  void OnLoopbackEnded(std::uint32_t, std::uint64_t, std::uint64_t, std::uint64_t,
                       std::uint64_t) override {}
};

class DelayHandler : public cfm::ReceivedDelayMeasurementHandlerIntf {
  using String = const std::string&;
  void OnDelayMeasurementTriggerError(std::uint32_t, std::uint32_t, String, String, std::uint16_t,
                                      std::uint16_t) override {}
  void OnDelayMeasurementStarted(std::uint32_t, const cfm::st_mac&) override {}
  void OnDelayMeasurementReplyRx(std::uint32_t, const cfm::st_mac&) override {}
  void OnDelayMeasurementEnded(std::uint32_t, std::uint64_t, std::uint64_t, double, double, double,
                               double, double, double, std::uint64_t) override {}
};

// A client with a handler of each kind, none of which does anything.
class AttendedClient {
 public:
  AttendedClient() {
    in_step_.client().RegisterStatusHandler(&status_);
    in_step_.client().RegisterStatisticsHandler(&statistics_);
    in_step_.client().RegisterLinktraceHandler(&linktrace_);
    in_step_.client().RegisterLoopbackHandler(&loopback_);
    in_step_.client().RegisterDelayMeasurementHandler(&delay_);
  }

 private:
  StatusHandler status_;
  StatisticsHandler statistics_;
  LinktraceHandler linktrace_;
  LoopbackHandler loopback_;
  DelayHandler delay_;
  ClientInStep in_step_;
};

const std::string kMac("\x02\x00\x5e\x10\x20\x30", 6);

// One message: delivered as the middleware does, and only copied and parsed.
template <typename Message, typename Delivery>
void Register(const char* name, const Message& message, Delivery delivery) {
  const std::string payload = message.SerializeAsString();
  Contest(
      std::string("callback/") + name, payload.size(), kGoal,
      [=]() -> Pass {
        const auto client = std::make_shared<AttendedClient>();
        return [=, deliver = delivery()] {
          static_cast<void>(client);
          return SecondsOfOne(kCallsOfPass, [&](std::size_t) { deliver(payload); });
        };
      },
      [=]() -> Pass {
        return [=] {
          return SecondsOfOne(kCallsOfPass, [&](std::size_t) {
            const std::string copy(payload.data(), payload.size());
            Message parsed;
            parsed.ParseFromString(copy);
          });
        };
      });
}

template <typename Message>
void Event(const vorx_event_descriptor* event, const char* name, const Message& message) {
  Register(name, message, [event] {
    CountingHost& host = CountingHost::Instance();
    return [&host, user = host.user,
            callback = host.events[event->number]](const std::string& payload) {
      callback(host.handle(), user, const_cast<char*>(payload.data()),
               static_cast<unsigned>(payload.size()));
    };
  });
}

template <typename Message>
void Signal(const vorx_sig_descriptor* signal, const char* name, const Message& message) {
  Register(name, message, [signal] {
    CountingHost& host = CountingHost::Instance();
    return [&host, user = host.user,
            callback = host.signals[signal->number]](const std::string& payload) {
      const vorx_pid_t sender = 77;
      callback(host.handle(), user, &sender, const_cast<char*>(payload.data()),
               static_cast<unsigned>(payload.size()));
    };
  });
}

template <typename Message>
Message InMa() {
  Message message;
  message.set_md_name("customer-gold");
  message.set_ma_name("evc-0001-frankfurt-paris");
  message.set_mep_id(101);
  return message;
}

template <typename Message>
Message FromMac() {
  Message message;
  message.set_mac_address(kMac);
  message.set_request_id(12);
  return message;
}

template <typename Message>
Message Refusal() {
  auto message = InMa<Message>();
  message.set_request_id(12);
  message.set_error_code(2);
  message.set_remote_mep_id(102);
  return message;
}

void RegisterStatus() {
  auto local = InMa<client_server::StatusLocalMaintenanceEndpoint>();
  local.set_mac_address(kMac);
  local.set_highest_defect_priority(3);
  local.set_intf_status(1);
  local.set_port_state(2);
  local.set_block_state(0);
  local.set_shutdown_state(0);
  local.set_rdi(true);
  local.set_defect_mac_status(false);
  local.set_defect_remote_ccm(true);
  local.set_defect_error_ccm(false);
  local.set_defect_xcon_ccm(false);
  local.set_defect_rdi(false);
  local.set_defect_ais(false);
  Event(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, "StatusLocalMep", local);

  auto remote = InMa<client_server::StatusRemoteMaintenanceEndpoint>();
  remote.set_mac_address(kMac);
  remote.set_sender_id("pe-router-7");
  remote.set_remote_mep_id(102);
  remote.set_fsm_state(4);
  remote.set_port_state(2);
  remote.set_intf_status(1);
  remote.set_rdi(false);
  remote.set_last_change_uptime(123456789);
  Event(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, "StatusRemoteMep", remote);

  Event(CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, "RemovedLocalMep",
        InMa<client_server::RemovedLocalMaintenanceEndpoint>());
  auto removed = InMa<client_server::RemovedRemoteMaintenanceEndpoint>();
  removed.set_remote_mep_id(102);
  Event(CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP, "RemovedRemoteMep", removed);
}

void RegisterStatistics() {
  client_server::OpReplyAllStats reply;
  for (std::uint32_t i = 0; i < 10; ++i) {
    auto& local = *reply.add_local_mep_stats();
    local.set_md_name("customer-gold");
    local.set_ma_name("evc-0001-frankfurt-paris");
    local.set_mep_id(101 + i);
    local.set_ccm_rx_seq_errors(3);
    local.set_ccm_tx_seq_number(86400);
    local.set_ccm_tx_total(86400);
    auto& remote = *reply.add_remote_mep_stats();
    remote.set_md_name("customer-gold");
    remote.set_ma_name("evc-0001-frankfurt-paris");
    remote.set_mep_id(101 + i);
    remote.set_remote_mep_id(201 + i);
    remote.set_last_ccm_seq_number(86400);
  }
  Signal(CFM_MGR_S2C_SIG_STATS_REPLY, "StatsReply", reply);
}

void FillPort(client_server::LtrReplyEgressIngress& port) {
  port.set_mac(kMac);
  port.mutable_port_id()->set_value("ge-0/0/1");
  port.mutable_port_id()->set_present(true);
  port.mutable_port_id()->set_subtype(5);
  port.set_action(1);
}

void FillEgressId(client_server::EgressId& id) {
  id.set_mac(kMac);
  id.set_id(std::string("\0\1", 2));
}

void FillReply(client_server::LinktraceReply& reply) {
  reply.set_destination_mac(kMac);
  reply.set_source_mac(kMac);
  reply.mutable_flags()->set_terminal_mep(false);
  reply.mutable_flags()->set_forwarded(true);
  reply.mutable_flags()->set_use_fdb_only(true);
  FillEgressId(*reply.mutable_egress_id()->mutable_last());
  FillEgressId(*reply.mutable_egress_id()->mutable_next());
  FillPort(*reply.mutable_reply_ingress());
  FillPort(*reply.mutable_reply_egress());
  reply.set_transaction_id(77);
  reply.set_vlan(100);
  reply.set_priority(7);
  reply.set_level(4);
  reply.set_ttl(63);
  reply.set_relay_action(2);
}

void RegisterLinktrace() {
  client_server::OpLinktraceTriggerError error;
  error.mutable_key()->set_md_name("customer-gold");
  error.mutable_key()->set_ma_name("evc-0001-frankfurt-paris");
  error.mutable_key()->set_request_id(12);
  error.mutable_key()->set_mep_id(101);
  error.mutable_key()->set_remote_mep_id(102);
  error.set_error_code(2);
  Signal(CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR, "LinktraceTriggerError", error);

  auto started = InMa<client_server::OpLinktraceStarted>();
  started.set_mac_address(kMac);
  started.set_transaction_id(77);
  started.set_remote_mep_id(102);
  started.set_started_value(64);
  Event(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, "LinktraceStarted", started);

  auto ended = InMa<client_server::OpLinktraceEnded>();
  ended.set_transaction_id(77);
  Event(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, "LinktraceEnded", ended);

  auto reply = InMa<client_server::OpLinktraceReplyRx>();
  FillReply(*reply.mutable_reply());
  Event(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, "LinktraceReplyRx", reply);
}

void RegisterLoopback() {
  Signal(CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR, "LoopbackTriggerError",
         Refusal<client_server::OpLoopbackTriggerError>());
  Event(CFM_MGR_SRV_EVENT_LOOPBACK_STARTED, "LoopbackStarted",
        FromMac<client_server::OpLoopbackStarted>());
  auto reply = FromMac<client_server::OpLoopbackReplyRx>();
  reply.set_transaction_id(77);
  Event(CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX, "LoopbackReplyRx", reply);
  client_server::OpLoopbackEnded ended;
  ended.set_expected_replies(10);
  ended.set_in_order_replies(9);
  ended.set_out_of_order_replies(1);
  ended.set_wrong_payload_replies(0);
  ended.set_request_id(12);
  Event(CFM_MGR_SRV_EVENT_LOOPBACK_ENDED, "LoopbackEnded", ended);
}

void RegisterDelayMeasurement() {
  Signal(CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR, "DelayMeasurementTriggerError",
         Refusal<client_server::OpDelayMeasurementTriggerError>());
  Event(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_STARTED, "DelayMeasurementStarted",
        FromMac<client_server::OpDelayMeasurementStarted>());
  Event(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX, "DelayMeasurementReplyRx",
        FromMac<client_server::OpDelayMeasurementReplyRx>());
  client_server::OpDelayMeasurementEnded ended;
  ended.set_rx_count(10);
  ended.set_tx_count(10);
  ended.set_result_1(12.5);
  ended.set_result_2(13.25);
  ended.set_result_3(17);
  ended.set_result_4(0.5);
  ended.set_result_5(1.25);
  ended.set_result_6(3);
  ended.set_extra_count(0);
  ended.set_request_id(12);
  Event(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_ENDED, "DelayMeasurementEnded", ended);

  client_server::OpDelayMeasurementSessionEnded session;
  session.set_s_word_1(1);
  session.set_s_word_2(2);
  session.set_s_byte(0);
  session.set_s_word_3(100);
  session.set_s_wide_1(1234567);
  session.set_s_wide_2(2345678);
  session.set_s_real_1(12.5);
  session.set_s_word_4(100);
  session.set_s_word_5(0);
  session.set_s_real_2(13.25);
  session.set_s_word_6(10);
  session.set_s_word_7(20);
  session.set_s_word_8(0);
  session.set_s_word_9(0);
  session.set_s_real_3(0.5);
  session.set_s_real_4(1.25);
  session.set_s_word_10(7);
  Event(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_SESSION_ENDED, "DelayMeasurementSessionEnded", session);
}

}  // namespace

void RegisterCallbackContests() {
  RegisterStatus();
  RegisterStatistics();
  RegisterLinktrace();
  RegisterLoopback();
  RegisterDelayMeasurement();
}

}  // namespace cfm_bench
