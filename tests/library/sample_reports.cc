// SPDX-License-Identifier: Apache-2.0
#include "sample_reports.h"

#include <cfm/identifiers.h>

namespace cfm_test {
namespace {

template <typename Message>
Message InMa() {
  Message message;
  message.set_md_name("D");
  message.set_ma_name("A");
  return message;
}

// What the refusals of two kinds of test have in common.
template <typename Message>
Message Refusal() {
  auto message = InMa<Message>();
  message.set_request_id(4000000000);
  message.set_error_code(4000000001);
  message.set_mep_id(65535);
  message.set_remote_mep_id(12);
  return message;
}

template <typename Message>
Message FromMac() {
  Message message;
  message.set_mac_address(Octets("\x0a\xbc\x00\xff\x10\x9e"));
  message.set_request_id(4000000000);
  return message;
}

void FillPort(client_server::LtrReplyEgressIngress& port, char number) {
  port.set_mac(Octets("\x02\xe0\x00\x00\x01") + number);
  port.mutable_port_id()->set_value(Octets("p\x00\xff") + number);
  port.mutable_port_id()->set_present(true);
  port.mutable_port_id()->set_subtype(static_cast<unsigned char>(number) + 100U);
  port.set_action(static_cast<unsigned char>(number) + 200U);
}

}  // namespace

client_server::StatusLocalMaintenanceEndpoint LocalStatus() {
  auto message = InMa<client_server::StatusLocalMaintenanceEndpoint>();
  message.set_mac_address(Octets("\x0a\xbc\x00\xff\x10\x9e"));
  message.set_mep_id(11);
  message.set_highest_defect_priority(5);
  message.set_intf_status(6);
  message.set_port_state(7);
  message.set_block_state(8);
  message.set_shutdown_state(9);
  message.set_rdi(true);
  message.set_defect_mac_status(true);
  message.set_defect_remote_ccm(true);
  message.set_defect_error_ccm(true);
  message.set_defect_xcon_ccm(true);
  message.set_defect_rdi(true);
  message.set_defect_ais(true);
  return message;
}

client_server::StatusRemoteMaintenanceEndpoint RemoteStatus() {
  auto message = InMa<client_server::StatusRemoteMaintenanceEndpoint>();
  message.set_mac_address(Octets("\x0a\xbc\x00\xff\x10\x9e"));
  message.set_sender_id("bridge 9");
  message.set_mep_id(11);
  message.set_remote_mep_id(12);
  message.set_fsm_state(4);
  message.set_port_state(2);
  message.set_intf_status(1);
  message.set_rdi(true);
  message.set_last_change_uptime(18446744073709551615U);
  return message;
}

client_server::RemovedLocalMaintenanceEndpoint RemovedLocal() {
  auto message = InMa<client_server::RemovedLocalMaintenanceEndpoint>();
  message.set_mep_id(11);
  return message;
}

client_server::RemovedRemoteMaintenanceEndpoint RemovedRemote() {
  auto message = InMa<client_server::RemovedRemoteMaintenanceEndpoint>();
  message.set_mep_id(11);
  message.set_remote_mep_id(12);
  return message;
}

client_server::OpReplyAllStats Statistics() {
  client_server::OpReplyAllStats message;
  for (const unsigned id : {1U, 2U}) {
    auto& entry = *message.add_local_mep_stats();
    entry = InMa<client_server::LocalMepStats>();
    entry.set_mep_id(id);
    entry.set_ccm_rx_seq_errors(18446744073709551600U + id);
    entry.set_ccm_tx_total(std::uint64_t{10} * id);
    entry.set_ccm_tx_seq_number(100 * id);
  }
  for (const unsigned id : {3U, 4U, 5U}) {
    auto& entry = *message.add_remote_mep_stats();
    entry = InMa<client_server::RemoteMepStats>();
    entry.set_mep_id(1);
    entry.set_remote_mep_id(id);
    entry.set_last_ccm_seq_number(100 * id);
  }
  return message;
}

client_server::OpLinktraceTriggerError LinktraceRefusal() {
  client_server::OpLinktraceTriggerError message;
  auto& key = *message.mutable_key();
  key = InMa<client_server::OpLinktraceTriggerKey>();
  key.set_request_id(4000000000);
  key.set_mep_id(65535);
  key.set_remote_mep_id(12);
  message.set_error_code(4000000001);
  return message;
}

client_server::OpLinktraceStarted LinktraceStarted() {
  auto message = InMa<client_server::OpLinktraceStarted>();
  message.set_mac_address(Octets("\x0a\xbc\x00\xff\x10\x9e"));
  message.set_mep_id(11);
  message.set_transaction_id(4000000000);
  message.set_remote_mep_id(12);
  message.set_started_value(4000000001);
  return message;
}

client_server::OpLinktraceEnded LinktraceEnded() {
  auto message = InMa<client_server::OpLinktraceEnded>();
  message.set_mep_id(11);
  message.set_transaction_id(4000000000);
  return message;
}

client_server::OpLinktraceReplyRx LinktraceReply() {
  auto message = InMa<client_server::OpLinktraceReplyRx>();
  message.set_mep_id(11);
  auto& reply = *message.mutable_reply();
  reply.set_destination_mac(Octets("\x0a\xbc\x00\xff\x10\x9e"));
  reply.set_source_mac(Octets("\x02\x00\x00\x00\x00\x01"));
  reply.mutable_flags()->set_terminal_mep(true);
  reply.mutable_flags()->set_forwarded(true);
  reply.mutable_flags()->set_use_fdb_only(true);
  reply.mutable_egress_id()->mutable_last()->set_mac(Octets("\x02\x00\x00\x00\x00\x02"));
  reply.mutable_egress_id()->mutable_last()->set_id(Octets("\x01\x02"));
  reply.mutable_egress_id()->mutable_next()->set_mac(Octets("\x02\x00\x00\x00\x00\x03"));
  reply.mutable_egress_id()->mutable_next()->set_id(Octets("\xff\x00"));
  FillPort(*reply.mutable_reply_ingress(), 4);
  FillPort(*reply.mutable_reply_egress(), 5);
  reply.set_transaction_id(4000000000);
  reply.set_vlan(100);
  reply.set_priority(3);
  reply.set_level(6);
  reply.set_ttl(62);
  reply.set_relay_action(-2);
  reply.set_internal_vlan(200);
  reply.set_internal_priority(4);
  return message;
}

client_server::OpLoopbackTriggerError LoopbackRefusal() {
  return Refusal<client_server::OpLoopbackTriggerError>();
}

client_server::OpLoopbackStarted LoopbackStarted() {
  return FromMac<client_server::OpLoopbackStarted>();
}

client_server::OpLoopbackReplyRx LoopbackReply() {
  auto message = FromMac<client_server::OpLoopbackReplyRx>();
  message.set_transaction_id(4000000001);
  return message;
}

client_server::OpLoopbackEnded LoopbackEnded() {
  client_server::OpLoopbackEnded message;
  message.set_expected_replies(18446744073709551615U);
  message.set_in_order_replies(18446744073709551614U);
  message.set_out_of_order_replies(18446744073709551613U);
  message.set_wrong_payload_replies(18446744073709551612U);
  message.set_request_id(4000000000);
  return message;
}

client_server::OpDelayMeasurementTriggerError DelayRefusal() {
  return Refusal<client_server::OpDelayMeasurementTriggerError>();
}

client_server::OpDelayMeasurementStarted DelayStarted() {
  return FromMac<client_server::OpDelayMeasurementStarted>();
}

client_server::OpDelayMeasurementReplyRx DelayReply() {
  return FromMac<client_server::OpDelayMeasurementReplyRx>();
}

client_server::OpDelayMeasurementEnded DelayEnded() {
  client_server::OpDelayMeasurementEnded message;
  message.set_rx_count(18446744073709551615U);
  message.set_tx_count(18446744073709551614U);
  message.set_result_1(1.25);
  message.set_result_2(-2.5);
  message.set_result_3(3e300);
  message.set_result_4(4.75);
  message.set_result_5(5.5);
  message.set_result_6(6.125);
  message.set_extra_count(18446744073709551613U);
  message.set_request_id(4000000000);
  return message;
}

client_server::OpDelayMeasurementSessionEnded SessionEnded() {
  client_server::OpDelayMeasurementSessionEnded message;
  message.set_s_word_1(4000000001);
  message.set_s_word_2(4000000002);
  message.set_s_byte(203);
  message.set_s_word_3(4000000003);
  message.set_s_wide_1(18446744073709551611U);
  message.set_s_wide_2(18446744073709551612U);
  message.set_s_real_1(1.5);
  message.set_s_word_4(4000000004);
  message.set_s_word_5(4000000005);
  message.set_s_real_2(-2.5);
  message.set_s_word_6(4000000006);
  message.set_s_word_7(4000000007);
  message.set_s_word_8(4000000008);
  message.set_s_word_9(4000000009);
  message.set_s_real_3(3.5);
  message.set_s_real_4(4.5);
  message.set_s_word_10(4000000010);
  return message;
}

client_server::OpCacheSync CacheReply() {
  client_server::OpCacheSync message;
  message.add_mds()->set_md_name("D");
  auto& ma = *message.add_mas();
  ma = InMa<client_server::OpCreateMaintenanceAssociation>();
  ma.add_vids(300);
  ma.add_mep_ids(11);
  ma.mutable_ais()->add_id_set(7);
  auto& mep = *message.add_meps();
  mep = InMa<client_server::OpCreateMaintenanceEndpoint>();
  mep.set_mep_id(11);
  mep.set_ifindex(1001);
  auto& probe = *message.add_probes();
  probe = InMa<client_server::OpCreateDelayMeasurementProbe>();
  probe.set_probe_id(5);
  auto& session = *message.add_sessions();
  session.set_probe_id(5);
  session.set_session_id(6);
  return message;
}

}  // namespace cfm_test
