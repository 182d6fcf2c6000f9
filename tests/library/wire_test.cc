// SPDX-License-Identifier: Apache-2.0
// The numbers, types and order of every field of every message, as bytes. A vector that has to be
// changed means a schema that old peers no longer understand.
#include <cfm/client_server.pb.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <set>
#include <string>

#include "wire_text.h"

namespace cfm_test {
namespace {

struct Golden {
  std::string message;
  std::string hex;
  std::string text;
  std::string types;  // of the fields by number
  // The bytes after a round trip through the generated code, and what it did not know of them.
  std::function<std::pair<std::string, std::string>(const std::string&)> round_trip;
};

/// For the messages of failing tests.
void PrintTo(const Golden& golden, std::ostream* out) { *out << golden.message; }

template <typename Message>
Golden Row(std::string name, std::string hex, std::string text, std::string types) {
  return {std::move(name), std::move(hex), std::move(text), std::move(types),
          [](const std::string& bytes) {
            Message message;
            EXPECT_TRUE(message.ParseFromString(bytes));
            return std::make_pair(message.SerializeAsString(), message.unknown_fields());
          }};
}

std::string FromHex(const std::string& hex) {
  std::string bytes;
  for (std::size_t i = 0; i < hex.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

// clang-format off
const Golden kVectors[] = {
    Row<client_server::OpCreateMaintenanceDomain>("OpCreateMaintenanceDomain",
        "0a016110feffffffffffffffff0118fcffffff0f20fcffffffffffffffff0128fbffffffffffffff"
        "ff01",
        "md_name:\"a\" format:-2 level:4294967292 sender_id:-4 mhf_creation:-5",
        "string int32 uint32 int32 int32"),
    Row<client_server::OpUpdateMaintenanceDomain>("OpUpdateMaintenanceDomain",
        "0a016110feffffffffffffffff0118fdffffffffffffffff01",
        "md_name:\"a\" sender_id:-2 mhf_creation:-3",
        "string int32 int32"),
    Row<client_server::OpDeleteMaintenanceDomain>("OpDeleteMaintenanceDomain",
        "0a0161",
        "md_name:\"a\"",
        "string"),
    Row<client_server::Ais>("Ais",
        "080110fdffffff0f18fcffffff0f20fbffffff0f2a0305fe1f3001",
        "enabled:1 octet_a:4294967293 word_b:4294967292 octet_c:4294967291 id_set:[5 "
        "4094] flag_d:1",
        "bool uint32 uint32 uint32 uint32 bool"),
    Row<client_server::OpCreateMaintenanceAssociation>("OpCreateMaintenanceAssociation",
        "0a0301fe1f120302fe1f1a01632201642a1b080110fdffffff0f18fcffffff0f20fbffffff0f2a03"
        "05fe1f300130faffffffffffffffff0138f9ffffffffffffffff0140f8ffffffffffffffff0148f7"
        "ffffffffffffffff01",
        "vids:[1 4094] mep_ids:[2 4094] md_name:\"c\" ma_name:\"d\" ais{enabled:1 "
        "octet_a:4294967293 word_b:4294967292 octet_c:4294967291 id_set:[5 4094] "
        "flag_d:1} format:-6 ccm_interval:-7 sender_id:-8 mhf_creation:-9",
        "uint32 uint32 string string Ais int32 int32 int32 int32"),
    Row<client_server::OpUpdateMaintenanceAssociation>("OpUpdateMaintenanceAssociation",
        "0a016112016218fdffffffffffffffff0120fcffffffffffffffff0128fbffffffffffffffff0132"
        "0306fe1f3a1b080110fdffffff0f18fcffffff0f20fbffffff0f2a0305fe1f3001",
        "md_name:\"a\" ma_name:\"b\" ccm_interval:-3 sender_id:-4 mhf_creation:-5 "
        "mep_ids:[6 4094] ais{enabled:1 octet_a:4294967293 word_b:4294967292 "
        "octet_c:4294967291 id_set:[5 4094] flag_d:1}",
        "string string int32 int32 int32 uint32 Ais"),
    Row<client_server::OpDeleteMaintenanceAssociation>("OpDeleteMaintenanceAssociation",
        "0a0161120162",
        "md_name:\"a\" ma_name:\"b\"",
        "string string"),
    Row<client_server::OpCreateMaintenanceEndpoint>("OpCreateMaintenanceEndpoint",
        "0a016112016218fcffffff0f20fcffffffffffffffff0128faffffff0f30f9ffffff0f38f8ffffff"
        "0f40f7ffffff0f48015001580160f4ffffffffffffffff0168f2ffffff0f70f1ffffff0f78f1ffff"
        "ffffffffffff01",
        "md_name:\"a\" ma_name:\"b\" mep_id:4294967292 direction:-4 ifindex:4294967290 "
        "primary_vid:4294967289 inner_vid:4294967288 ccm_priority:4294967287 "
        "admin_state:1 ccm_enabled:1 aux_flag:1 lowest_prio_defect:-12 "
        "fng_alarm_time:4294967282 fng_reset_time:4294967281 fault_action:-15",
        "string string uint32 int32 uint32 uint32 uint32 uint32 bool bool bool int32 "
        "uint32 uint32 int32"),
    Row<client_server::OpUpdateMaintenanceEndpoint>("OpUpdateMaintenanceEndpoint",
        "0a016112016218fcffffff0f20fbffffff0f28faffffff0f3001380140f7ffffff0f48f7ffffffff"
        "ffffffff0150f5ffffff0f58f4ffffff0f60f4ffffffffffffffff016801",
        "md_name:\"a\" ma_name:\"b\" mep_id:4294967292 primary_vid:4294967291 "
        "inner_vid:4294967290 admin_state:1 ccm_enabled:1 ccm_priority:4294967287 "
        "lowest_prio_defect:-9 fng_alarm_time:4294967285 fng_reset_time:4294967284 "
        "fault_action:-12 aux_flag:1",
        "string string uint32 uint32 uint32 bool bool uint32 int32 uint32 uint32 int32 "
        "bool"),
    Row<client_server::OpDeleteMaintenanceEndpoint>("OpDeleteMaintenanceEndpoint",
        "0a016112016218fcffffff0f",
        "md_name:\"a\" ma_name:\"b\" mep_id:4294967292",
        "string string uint32"),
    Row<client_server::OpCreateDelayMeasurementProbe>("OpCreateDelayMeasurementProbe",
        "0a016112016218fcffffff0f20fbffffff0f28faffffff0f30f9ffffff0f",
        "ma_name:\"a\" md_name:\"b\" probe_id:4294967292 interval:4294967291 "
        "lmep_id:4294967290 rmep_id:4294967289",
        "string string uint32 uint32 uint32 uint32"),
    Row<client_server::OpDeleteDelayMeasurementProbe>("OpDeleteDelayMeasurementProbe",
        "08feffffff0f",
        "probe_id:4294967294",
        "uint32"),
    Row<client_server::OpCreateDelayMeasurementSession>("OpCreateDelayMeasurementSession",
        "08feffffff0f10fdffffff0f18fcffffff0f20fbffffff0f28faffffff0f30f9ffffff0f",
        "probe_id:4294967294 session_id:4294967293 interval:4294967292 count:4294967291 "
        "size:4294967290 pcp:4294967289",
        "uint32 uint32 uint32 uint32 uint32 uint32"),
    Row<client_server::OpDeleteDelayMeasurementSession>("OpDeleteDelayMeasurementSession",
        "08feffffff0f10fdffffff0f",
        "probe_id:4294967294 session_id:4294967293",
        "uint32 uint32"),
    Row<client_server::OpCacheSync>("OpCacheSync",
        "0a2a0a016110feffffffffffffffff0118fcffffff0f20fcffffffffffffffff0128fbffffffffff"
        "ffffff0112590a0301fe1f120302fe1f1a01632201642a1b080110fdffffff0f18fcffffff0f20fb"
        "ffffff0f2a0305fe1f300130faffffffffffffffff0138f9ffffffffffffffff0140f8ffffffffff"
        "ffffff0148f7ffffffffffffffff011a570a016112016218fcffffff0f20fcffffffffffffffff01"
        "28faffffff0f30f9ffffff0f38f8ffffff0f40f7ffffff0f48015001580160f4ffffffffffffffff"
        "0168f2ffffff0f70f1ffffff0f78f1ffffffffffffffff01221e0a016112016218fcffffff0f20fb"
        "ffffff0f28faffffff0f30f9ffffff0f2a2408feffffff0f10fdffffff0f18fcffffff0f20fbffff"
        "ff0f28faffffff0f30f9ffffff0f",
        "mds{md_name:\"a\" format:-2 level:4294967292 sender_id:-4 mhf_creation:-5} "
        "mas{vids:[1 4094] mep_ids:[2 4094] md_name:\"c\" ma_name:\"d\" ais{enabled:1 "
        "octet_a:4294967293 word_b:4294967292 octet_c:4294967291 id_set:[5 4094] "
        "flag_d:1} format:-6 ccm_interval:-7 sender_id:-8 mhf_creation:-9} "
        "meps{md_name:\"a\" ma_name:\"b\" mep_id:4294967292 direction:-4 "
        "ifindex:4294967290 primary_vid:4294967289 inner_vid:4294967288 "
        "ccm_priority:4294967287 admin_state:1 ccm_enabled:1 aux_flag:1 "
        "lowest_prio_defect:-12 fng_alarm_time:4294967282 fng_reset_time:4294967281 "
        "fault_action:-15} probes{ma_name:\"a\" md_name:\"b\" probe_id:4294967292 "
        "interval:4294967291 lmep_id:4294967290 rmep_id:4294967289} "
        "sessions{probe_id:4294967294 session_id:4294967293 interval:4294967292 "
        "count:4294967291 size:4294967290 pcp:4294967289}",
        "OpCreateMaintenanceDomain OpCreateMaintenanceAssociation "
        "OpCreateMaintenanceEndpoint OpCreateDelayMeasurementProbe "
        "OpCreateDelayMeasurementSession"),
    Row<client_server::OpLinktraceTriggerKey>("OpLinktraceTriggerKey",
        "0a016112016218fcffffff0f20fbffffff0f28faffffff0f",
        "md_name:\"a\" ma_name:\"b\" request_id:4294967292 mep_id:4294967291 "
        "remote_mep_id:4294967290",
        "string string uint32 uint32 uint32"),
    Row<client_server::OpLinktraceTriggerMsg>("OpLinktraceTriggerMsg",
        "0a180a016112016218fcffffff0f20fbffffff0f28faffffff0f10fdffffff0f",
        "key{md_name:\"a\" ma_name:\"b\" request_id:4294967292 mep_id:4294967291 "
        "remote_mep_id:4294967290} ttl:4294967293",
        "OpLinktraceTriggerKey uint32"),
    Row<client_server::OpLinktraceTriggerError>("OpLinktraceTriggerError",
        "0a180a016112016218fcffffff0f20fbffffff0f28faffffff0f10fdffffff0f",
        "key{md_name:\"a\" ma_name:\"b\" request_id:4294967292 mep_id:4294967291 "
        "remote_mep_id:4294967290} error_code:4294967293",
        "OpLinktraceTriggerKey uint32"),
    Row<client_server::OpLinktraceStarted>("OpLinktraceStarted",
        "0a01611201621a02000320fbffffff0f28faffffff0f30f9ffffff0f38f8ffffff0f",
        "md_name:\"a\" ma_name:\"b\" mac_address:\"\\x00\\x03\" mep_id:4294967291 "
        "transaction_id:4294967290 remote_mep_id:4294967289 started_value:4294967288",
        "string string bytes uint32 uint32 uint32 uint32"),
    Row<client_server::OpLinktraceEnded>("OpLinktraceEnded",
        "0a016112016218fcffffff0f20fbffffff0f",
        "md_name:\"a\" ma_name:\"b\" mep_id:4294967292 transaction_id:4294967291",
        "string string uint32 uint32"),
    Row<client_server::LtrFlags>("LtrFlags",
        "080110011801",
        "terminal_mep:1 forwarded:1 use_fdb_only:1",
        "bool bool bool"),
    Row<client_server::EgressId>("EgressId",
        "0a02000112020002",
        "mac:\"\\x00\\x01\" id:\"\\x00\\x02\"",
        "bytes bytes"),
    Row<client_server::LtrEgressId>("LtrEgressId",
        "0a080a0200011202000212080a02000112020002",
        "last{mac:\"\\x00\\x01\" id:\"\\x00\\x02\"} next{mac:\"\\x00\\x01\" "
        "id:\"\\x00\\x02\"}",
        "EgressId EgressId"),
    Row<client_server::PortId>("PortId",
        "0a020001100118fcffffff0f",
        "value:\"\\x00\\x01\" present:1 subtype:4294967292",
        "bytes bool uint32"),
    Row<client_server::LtrReplyEgressIngress>("LtrReplyEgressIngress",
        "0a020001120c0a020001100118fcffffff0f18fcffffff0f",
        "mac:\"\\x00\\x01\" port_id{value:\"\\x00\\x01\" present:1 subtype:4294967292} "
        "action:4294967292",
        "bytes PortId uint32"),
    Row<client_server::LinktraceReply>("LinktraceReply",
        "0a020001120200021a0608011001180122140a080a0200011202000212080a020001120200022a18"
        "0a020001120c0a020001100118fcffffff0f18fcffffff0f32180a020001120c0a020001100118fc"
        "ffffff0f18fcffffff0f38f8ffffff0f40f7ffffff0f48f6ffffff0f50f5ffffff0f58f4ffffff0f"
        "60f4ffffffffffffffff0168f2ffffff0f70f1ffffff0f",
        "destination_mac:\"\\x00\\x01\" source_mac:\"\\x00\\x02\" flags{terminal_mep:1 "
        "forwarded:1 use_fdb_only:1} egress_id{last{mac:\"\\x00\\x01\" "
        "id:\"\\x00\\x02\"} next{mac:\"\\x00\\x01\" id:\"\\x00\\x02\"}} "
        "reply_ingress{mac:\"\\x00\\x01\" port_id{value:\"\\x00\\x01\" present:1 "
        "subtype:4294967292} action:4294967292} reply_egress{mac:\"\\x00\\x01\" "
        "port_id{value:\"\\x00\\x01\" present:1 subtype:4294967292} action:4294967292} "
        "transaction_id:4294967288 vlan:4294967287 priority:4294967286 level:4294967285 "
        "ttl:4294967284 relay_action:-12 internal_vlan:4294967282 "
        "internal_priority:4294967281",
        "bytes bytes LtrFlags LtrEgressId LtrReplyEgressIngress LtrReplyEgressIngress "
        "uint32 uint32 uint32 uint32 uint32 int32 uint32 uint32"),
    Row<client_server::OpLinktraceReplyRx>("OpLinktraceReplyRx",
        "0a01611201621a8f010a020001120200021a0608011001180122140a080a0200011202000212080a"
        "020001120200022a180a020001120c0a020001100118fcffffff0f18fcffffff0f32180a02000112"
        "0c0a020001100118fcffffff0f18fcffffff0f38f8ffffff0f40f7ffffff0f48f6ffffff0f50f5ff"
        "ffff0f58f4ffffff0f60f4ffffffffffffffff0168f2ffffff0f70f1ffffff0f20fbffffff0f",
        "md_name:\"a\" ma_name:\"b\" reply{destination_mac:\"\\x00\\x01\" "
        "source_mac:\"\\x00\\x02\" flags{terminal_mep:1 forwarded:1 use_fdb_only:1} "
        "egress_id{last{mac:\"\\x00\\x01\" id:\"\\x00\\x02\"} next{mac:\"\\x00\\x01\" "
        "id:\"\\x00\\x02\"}} reply_ingress{mac:\"\\x00\\x01\" "
        "port_id{value:\"\\x00\\x01\" present:1 subtype:4294967292} action:4294967292} "
        "reply_egress{mac:\"\\x00\\x01\" port_id{value:\"\\x00\\x01\" present:1 "
        "subtype:4294967292} action:4294967292} transaction_id:4294967288 "
        "vlan:4294967287 priority:4294967286 level:4294967285 ttl:4294967284 "
        "relay_action:-12 internal_vlan:4294967282 internal_priority:4294967281} "
        "mep_id:4294967291",
        "string string LinktraceReply uint32"),
    Row<client_server::OpLoopbackTriggerMsg>("OpLoopbackTriggerMsg",
        "0a016112016218fcffffff0f20fbffffff0f28faffffff0f30f9ffffff0f38f8ffffff0f",
        "md_name:\"a\" ma_name:\"b\" request_id:4294967292 mep_id:4294967291 "
        "remote_mep_id:4294967290 param_a:4294967289 param_b:4294967288",
        "string string uint32 uint32 uint32 uint32 uint32"),
    Row<client_server::OpLoopbackTriggerError>("OpLoopbackTriggerError",
        "0a016112016218fcffffff0f20fbffffff0f28faffffff0f30f9ffffff0f",
        "md_name:\"a\" ma_name:\"b\" request_id:4294967292 error_code:4294967291 "
        "mep_id:4294967290 remote_mep_id:4294967289",
        "string string uint32 uint32 uint32 uint32"),
    Row<client_server::OpLoopbackStarted>("OpLoopbackStarted",
        "0a02000110fdffffff0f",
        "mac_address:\"\\x00\\x01\" request_id:4294967293",
        "bytes uint32"),
    Row<client_server::OpLoopbackReplyRx>("OpLoopbackReplyRx",
        "0a02000110fdffffff0f18fcffffff0f",
        "mac_address:\"\\x00\\x01\" request_id:4294967293 transaction_id:4294967292",
        "bytes uint32 uint32"),
    Row<client_server::OpLoopbackEnded>("OpLoopbackEnded",
        "08ffffffffffffffffff0110feffffffffffffffff0118fdffffffffffffffff0120fcffffffffff"
        "ffffff0128faffffff0f",
        "expected_replies:18446744073709551615 in_order_replies:18446744073709551614 "
        "out_of_order_replies:18446744073709551613 "
        "wrong_payload_replies:18446744073709551612 request_id:4294967290",
        "uint64 uint64 uint64 uint64 uint32"),
    Row<client_server::OpDelayMeasurementTriggerMsg>("OpDelayMeasurementTriggerMsg",
        "0a016112016218fcffffff0f20fbffffff0f28faffffff0f30f9ffffff0f38f8ffffff0f40f7ffff"
        "ff0f48f6ffffff0f",
        "md_name:\"a\" ma_name:\"b\" request_id:4294967292 mep_id:4294967291 "
        "remote_mep_id:4294967290 param_a:4294967289 param_b:4294967288 "
        "param_c:4294967287 param_d:4294967286",
        "string string uint32 uint32 uint32 uint32 uint32 uint32 uint32"),
    Row<client_server::OpDelayMeasurementTriggerError>("OpDelayMeasurementTriggerError",
        "0a016112016218fcffffff0f20fbffffff0f28faffffff0f30f9ffffff0f",
        "md_name:\"a\" ma_name:\"b\" request_id:4294967292 error_code:4294967291 "
        "mep_id:4294967290 remote_mep_id:4294967289",
        "string string uint32 uint32 uint32 uint32"),
    Row<client_server::OpDelayMeasurementStarted>("OpDelayMeasurementStarted",
        "0a02000110fdffffff0f",
        "mac_address:\"\\x00\\x01\" request_id:4294967293",
        "bytes uint32"),
    Row<client_server::OpDelayMeasurementReplyRx>("OpDelayMeasurementReplyRx",
        "0a02000110fdffffff0f",
        "mac_address:\"\\x00\\x01\" request_id:4294967293",
        "bytes uint32"),
    Row<client_server::OpDelayMeasurementEnded>("OpDelayMeasurementEnded",
        "08ffffffffffffffffff0110feffffffffffffffff01190000000000000c40210000000000001240"
        "290000000000001640310000000000001a40390000000000001e4041000000000000214048f7ffff"
        "ffffffffffff0150f5ffffff0f",
        "rx_count:18446744073709551615 tx_count:18446744073709551614 result_1:3.5 "
        "result_2:4.5 result_3:5.5 result_4:6.5 result_5:7.5 result_6:8.5 "
        "extra_count:18446744073709551607 request_id:4294967285",
        "uint64 uint64 double double double double double double uint64 uint32"),
    Row<client_server::OpDelayMeasurementSessionEnded>("OpDelayMeasurementSessionEnded",
        "08feffffff0f10fdffffff0f18fcffffff0f20fbffffff0f28fbffffffffffffffff0130faffffff"
        "ffffffffff01390000000000001e4040f7ffffff0f48f6ffffff0f51000000000000254058f4ffff"
        "ff0f60f3ffffff0f68f2ffffff0f70f1ffffff0f790000000000002f408101000000000080304088"
        "01eeffffff0f",
        "s_word_1:4294967294 s_word_2:4294967293 s_byte:4294967292 s_word_3:4294967291 "
        "s_wide_1:18446744073709551611 s_wide_2:18446744073709551610 s_real_1:7.5 "
        "s_word_4:4294967287 s_word_5:4294967286 s_real_2:10.5 s_word_6:4294967284 "
        "s_word_7:4294967283 s_word_8:4294967282 s_word_9:4294967281 s_real_3:15.5 "
        "s_real_4:16.5 s_word_10:4294967278",
        "uint32 uint32 uint32 uint32 uint64 uint64 double uint32 uint32 double uint32 "
        "uint32 uint32 uint32 double double uint32"),
    Row<client_server::StatusLocalMaintenanceEndpoint>("StatusLocalMaintenanceEndpoint",
        "0a01611201621a02000320fbffffff0f28faffffff0f30f9ffffff0f38f8ffffff0f40f7ffffff0f"
        "48f6ffffff0f500158016001680170017801800101",
        "md_name:\"a\" ma_name:\"b\" mac_address:\"\\x00\\x03\" mep_id:4294967291 "
        "highest_defect_priority:4294967290 intf_status:4294967289 "
        "port_state:4294967288 block_state:4294967287 shutdown_state:4294967286 rdi:1 "
        "defect_mac_status:1 defect_remote_ccm:1 defect_error_ccm:1 defect_xcon_ccm:1 "
        "defect_rdi:1 defect_ais:1",
        "string string bytes uint32 uint32 uint32 uint32 uint32 uint32 bool bool bool "
        "bool bool bool bool"),
    Row<client_server::StatusRemoteMaintenanceEndpoint>("StatusRemoteMaintenanceEndpoint",
        "0a01611201621a02000322016428faffffff0f30f9ffffff0f38f8ffffff0f40f7ffffff0f48f6ff"
        "ffff0f500158f5ffffffffffffffff01",
        "md_name:\"a\" ma_name:\"b\" mac_address:\"\\x00\\x03\" sender_id:\"d\" "
        "mep_id:4294967290 remote_mep_id:4294967289 fsm_state:4294967288 "
        "port_state:4294967287 intf_status:4294967286 rdi:1 "
        "last_change_uptime:18446744073709551605",
        "string string bytes string uint32 uint32 uint32 uint32 uint32 bool uint64"),
    Row<client_server::RemovedLocalMaintenanceEndpoint>("RemovedLocalMaintenanceEndpoint",
        "0a016112016218fcffffff0f",
        "md_name:\"a\" ma_name:\"b\" mep_id:4294967292",
        "string string uint32"),
    Row<client_server::RemovedRemoteMaintenanceEndpoint>("RemovedRemoteMaintenanceEndpoint",
        "0a016112016218fcffffff0f20fbffffff0f",
        "md_name:\"a\" ma_name:\"b\" mep_id:4294967292 remote_mep_id:4294967291",
        "string string uint32 uint32"),
    Row<client_server::OpStatsClear>("OpStatsClear",
        "0a016112016218fcffffff0f",
        "md_name:\"a\" ma_name:\"b\" mep_id:4294967292",
        "string string uint32"),
    Row<client_server::LocalMepStats>("LocalMepStats",
        "0a016112016218fdffffffffffffffff0120fbffffff0f28faffffff0f30faffffffffffffffff01",
        "md_name:\"a\" ma_name:\"b\" ccm_rx_seq_errors:18446744073709551613 "
        "mep_id:4294967291 ccm_tx_seq_number:4294967290 "
        "ccm_tx_total:18446744073709551610",
        "string string uint64 uint32 uint32 uint64"),
    Row<client_server::RemoteMepStats>("RemoteMepStats",
        "0a016112016218fcffffff0f20fbffffff0f28faffffff0f",
        "md_name:\"a\" ma_name:\"b\" mep_id:4294967292 remote_mep_id:4294967291 "
        "last_ccm_seq_number:4294967290",
        "string string uint32 uint32 uint32"),
    Row<client_server::OpReplyAllStats>("OpReplyAllStats",
        "0a280a016112016218fdffffffffffffffff0120fbffffff0f28faffffff0f30faffffffffffffff"
        "ff0112180a016112016218fcffffff0f20fbffffff0f28faffffff0f",
        "local_mep_stats{md_name:\"a\" ma_name:\"b\" "
        "ccm_rx_seq_errors:18446744073709551613 mep_id:4294967291 "
        "ccm_tx_seq_number:4294967290 ccm_tx_total:18446744073709551610} "
        "remote_mep_stats{md_name:\"a\" ma_name:\"b\" mep_id:4294967292 "
        "remote_mep_id:4294967291 last_ccm_seq_number:4294967290}",
        "LocalMepStats RemoteMepStats"),
};
// clang-format on

class Wire : public testing::TestWithParam<Golden> {};

TEST_P(Wire, BytesMeanWhatTheyAlwaysMeant) {
  const Golden& golden = GetParam();
  EXPECT_EQ(Schema::Get().Text(golden.message, FromHex(golden.hex)), golden.text);
}

TEST_P(Wire, GeneratedCodeReadsAndWritesTheSameBytes) {
  const std::string bytes = FromHex(GetParam().hex);
  const auto [written, unknown] = GetParam().round_trip(bytes);
  EXPECT_EQ(written, bytes);
  EXPECT_EQ(unknown, "");
}

TEST_P(Wire, TheVectorHoldsEveryFieldOnce) {
  const Golden& golden = GetParam();
  const Schema::Message& fields = *Schema::Get().Find(golden.message);
  unsigned number = 0;
  std::size_t position = 0;
  for (const auto& [key, field] : fields) {
    EXPECT_EQ(key, ++number);
    const std::size_t found = golden.text.find(field.name, position);
    ASSERT_NE(found, std::string::npos) << field.name;
    position = found + field.name.size();
  }
}

// Strings and bytes, and numbers of like encoding, cannot be told apart on the wire.
TEST_P(Wire, FieldsHaveTheirTypes) {
  std::string types;
  for (const auto& [number, field] : *Schema::Get().Find(GetParam().message)) {
    types += (types.empty() ? "" : " ") + field.type;
  }
  EXPECT_EQ(types, GetParam().types);
}

INSTANTIATE_TEST_SUITE_P(Messages, Wire, testing::ValuesIn(kVectors),
                         [](const auto& vector) { return vector.param.message; });

TEST(Schema, EveryMessageHasAVector) {
  std::set<std::string> covered;
  for (const Golden& golden : kVectors) {
    covered.insert(golden.message);
  }
  std::set<std::string> known;
  for (const auto& [name, fields] : Schema::Get().messages()) {
    known.insert(name);
  }
  EXPECT_EQ(covered, known);
}

TEST(Schema, NoFieldIsRequiredAndNumbersRepeatPacked) {
  for (const auto& [name, fields] : Schema::Get().messages()) {
    for (const auto& [number, field] : fields) {
      const bool repeated_number = field.label == "repeated" && field.type == "uint32";
      EXPECT_EQ(field.options, repeated_number ? "[packed = true]" : "") << name << field.name;
    }
  }
}

}  // namespace
}  // namespace cfm_test
