// SPDX-License-Identifier: Apache-2.0
#include "test_messages.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string>

namespace cfm_mgr {
namespace {

/** The endpoint that a trigger names, and the one that it is for. */
template <class Request, class Key>
Request For(const Key& key) {
  Request request;
  request.request_id = key.request_id();
  request.mep = {{key.md_name(), key.ma_name()}, key.mep_id()};
  request.remote_mep_id = key.remote_mep_id();
  return request;
}

template <class Octets>
std::string Bytes(const Octets& octets) {
  return {octets.begin(), octets.end()};
}

template <class Message>
Message FromMac(std::uint32_t request_id, const engine::Mac& mac) {
  Message message;
  message.set_mac_address(mac.data(), mac.size());
  message.set_request_id(request_id);
  return message;
}

double Microseconds(double nanoseconds) { return nanoseconds / 1e3; }

double Microseconds(engine::Time time) { return Microseconds(static_cast<double>(time.count())); }

std::uint32_t WholeMicroseconds(engine::Time time) {
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<std::chrono::microseconds>(time).count());
}

std::uint64_t Milliseconds(engine::Time time) {
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

void SetEgressId(client_server::EgressId& message, const std::array<std::uint8_t, 8>& id) {
  message.set_id(id.data(), 2);
  message.set_mac(id.data() + 2, 6);
}

void SetReplyPort(client_server::LtrReplyEgressIngress& message, const engine::ReplyPort& port) {
  message.set_action(port.action);
  message.set_mac(port.mac.data(), port.mac.size());
  auto& port_id = *message.mutable_port_id();
  port_id.set_present(port.port_id_subtype.has_value());
  port_id.set_subtype(port.port_id_subtype.value_or(0));
  port_id.set_value(Bytes(port.port_id));
}

void SetReply(client_server::LinktraceReply& message, const engine::LinktraceReply& reply) {
  message.set_destination_mac(reply.destination.data(), reply.destination.size());
  message.set_source_mac(reply.source.data(), reply.source.size());
  message.mutable_flags()->set_terminal_mep(reply.terminal_mep);
  message.mutable_flags()->set_forwarded(reply.forwarded);
  message.mutable_flags()->set_use_fdb_only(reply.use_fdb_only);
  SetEgressId(*message.mutable_egress_id()->mutable_last(), reply.last_egress);
  SetEgressId(*message.mutable_egress_id()->mutable_next(), reply.next_egress);
  if (reply.ingress) SetReplyPort(*message.mutable_reply_ingress(), *reply.ingress);
  if (reply.egress) SetReplyPort(*message.mutable_reply_egress(), *reply.egress);
  message.set_transaction_id(reply.transaction_id);
  message.set_vlan(reply.vid);
  message.set_priority(reply.pcp);
  message.set_level(reply.level);
  message.set_ttl(reply.ttl);
  message.set_relay_action(reply.relay_action);
  if (reply.inner_vid) {
    message.set_internal_vlan(*reply.inner_vid);
    message.set_internal_priority(reply.inner_pcp);
  }
}

}  // namespace

engine::LoopbackRequest FromMessage(const client_server::OpLoopbackTriggerMsg& trigger) {
  auto request = For<engine::LoopbackRequest>(trigger);
  request.count = trigger.param_a();
  request.data_size = trigger.param_b();
  return request;
}

engine::LinktraceRequest FromMessage(const client_server::OpLinktraceTriggerMsg& trigger) {
  auto request = For<engine::LinktraceRequest>(trigger.key());
  request.ttl = trigger.ttl();
  return request;
}

// A priority too large for its field is one too large for a frame, too.
engine::DelayRequest FromMessage(const client_server::OpDelayMeasurementTriggerMsg& trigger) {
  auto request = For<engine::DelayRequest>(trigger);
  request.count = trigger.param_a();
  request.interval_ms = trigger.param_b();
  request.size = trigger.param_c();
  request.pcp = static_cast<std::uint8_t>(std::min(trigger.param_d(), 0xffU));
  return request;
}

client_server::OpLoopbackStarted Started(const engine::LoopbackRequest& request,
                                         const engine::StartedTest& test) {
  return FromMac<client_server::OpLoopbackStarted>(request.request_id, test.target);
}

client_server::OpLinktraceStarted Started(const engine::LinktraceRequest& request,
                                          const engine::StartedTest& test) {
  client_server::OpLinktraceStarted message;
  message.set_md_name(request.mep.ma.md_name);
  message.set_ma_name(request.mep.ma.ma_name);
  message.set_mac_address(test.target.data(), test.target.size());
  message.set_mep_id(request.mep.mep_id);
  message.set_transaction_id(test.transaction_id);
  message.set_remote_mep_id(request.remote_mep_id);
  message.set_started_value(request.request_id);
  return message;
}

client_server::OpDelayMeasurementStarted Started(const engine::DelayRequest& request,
                                                 const engine::StartedTest& test) {
  return FromMac<client_server::OpDelayMeasurementStarted>(request.request_id, test.target);
}

client_server::OpLoopbackReplyRx LoopbackReply(std::uint32_t request_id, const engine::Mac& source,
                                               std::uint32_t transaction_id) {
  auto message = FromMac<client_server::OpLoopbackReplyRx>(request_id, source);
  message.set_transaction_id(transaction_id);
  return message;
}

client_server::OpLoopbackEnded LoopbackEnded(std::uint32_t request_id,
                                             const engine::LoopbackResult& result) {
  client_server::OpLoopbackEnded message;
  message.set_expected_replies(result.expected);
  message.set_in_order_replies(result.in_order);
  message.set_out_of_order_replies(result.out_of_order);
  message.set_wrong_payload_replies(result.wrong_payload);
  message.set_request_id(request_id);
  return message;
}

client_server::OpLinktraceReplyRx LinktraceReply(const MepKey& mep,
                                                 const engine::LinktraceReply& reply) {
  client_server::OpLinktraceReplyRx message;
  message.set_md_name(mep.ma.md_name);
  message.set_ma_name(mep.ma.ma_name);
  message.set_mep_id(mep.mep_id);
  SetReply(*message.mutable_reply(), reply);
  return message;
}

client_server::OpLinktraceEnded LinktraceEnded(const MepKey& mep, std::uint32_t transaction_id) {
  client_server::OpLinktraceEnded message;
  message.set_md_name(mep.ma.md_name);
  message.set_ma_name(mep.ma.ma_name);
  message.set_mep_id(mep.mep_id);
  message.set_transaction_id(transaction_id);
  return message;
}

client_server::OpDelayMeasurementReplyRx DelayReply(std::uint32_t request_id,
                                                    const engine::Mac& source) {
  return FromMac<client_server::OpDelayMeasurementReplyRx>(request_id, source);
}

client_server::OpDelayMeasurementEnded DelayEnded(std::uint32_t request_id,
                                                  const engine::DelayResult& result) {
  client_server::OpDelayMeasurementEnded message;
  message.set_rx_count(result.received);
  message.set_tx_count(result.sent);
  message.set_result_1(Microseconds(result.delay.min));
  message.set_result_2(Microseconds(result.delay.mean));
  message.set_result_3(Microseconds(result.delay.max));
  message.set_result_4(Microseconds(result.variation.min));
  message.set_result_5(Microseconds(result.variation.mean));
  message.set_result_6(Microseconds(result.variation.max));
  message.set_extra_count(result.rejected);
  message.set_request_id(request_id);
  return message;
}

client_server::OpDelayMeasurementSessionEnded SessionEnded(const engine::SessionResult& result) {
  client_server::OpDelayMeasurementSessionEnded message;
  message.set_s_word_1(result.probe_id);
  message.set_s_word_2(result.session_id);
  message.set_s_byte(static_cast<std::uint32_t>(result.end));
  message.set_s_word_3(result.run);
  message.set_s_wide_1(Milliseconds(result.start));
  message.set_s_wide_2(Milliseconds(result.finish));
  message.set_s_word_4(static_cast<std::uint32_t>(result.delay.sent));
  message.set_s_word_5(static_cast<std::uint32_t>(result.delay.received));
  message.set_s_real_1(Microseconds(result.delay.delay.mean));
  message.set_s_real_2(Microseconds(result.delay.deviation));
  message.set_s_word_6(WholeMicroseconds(result.delay.delay.min));
  message.set_s_word_7(WholeMicroseconds(result.delay.delay.max));
  message.set_s_word_8(WholeMicroseconds(result.delay.variation.min));
  message.set_s_word_9(WholeMicroseconds(result.delay.variation.max));
  message.set_s_real_3(Microseconds(result.delay.variation.mean));
  message.set_s_real_4(result.delay.sent == 0 ? 0.0
                                              : 1.0 - static_cast<double>(result.delay.received) /
                                                          static_cast<double>(result.delay.sent));
  message.set_s_word_10(static_cast<std::uint32_t>(result.delay.rejected));
  return message;
}

}  // namespace cfm_mgr
