// The numbers, types and order of every field of every message, as bytes. A vector that has to be
// changed means a schema that old peers no longer understand.
#include <cfm/client_server.pb.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>

#include "wire_text.h"

namespace cfm_test {
namespace {

struct Golden {
  std::string message;
  std::string hex;
  std::string text;
  // The bytes after a round trip through the generated code, and what it did not know of them.
  std::function<std::pair<std::string, std::string>(const std::string&)> round_trip;
};

template <typename Message>
Golden Row(std::string name, std::string hex, std::string text) {
  return {std::move(name), std::move(hex), std::move(text), [](const std::string& bytes) {
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
        "0a016110feffffffffffffffff0118810120fcffffffffffffffff0128fbffffffffffffffff01",
        "md_name:\"a\" format:-2 level:129 sender_id:-4 mhf_creation:-5"),
    Row<client_server::OpUpdateMaintenanceDomain>("OpUpdateMaintenanceDomain",
        "0a016110feffffffffffffffff0118fdffffffffffffffff01",
        "md_name:\"a\" sender_id:-2 mhf_creation:-3"),
    Row<client_server::OpDeleteMaintenanceDomain>("OpDeleteMaintenanceDomain",
        "0a0161",
        "md_name:\"a\""),
    Row<client_server::Ais>("Ais",
        "080110800118810120fbffffff0f2a0305fe1f3001",
        "enabled:1 octet_a:128 word_b:129 octet_c:4294967291 id_set:[5 4094] flag_d:1"),
    Row<client_server::OpCreateMaintenanceAssociation>("OpCreateMaintenanceAssociation",
        "0a0301fe1f120302fe1f1a01632201642a15080110800118810120fbffffff0f2a0305fe1f300130"
        "faffffffffffffffff0138f9ffffffffffffffff0140f8ffffffffffffffff0148f7ffffffffffff"
        "ffff01",
        "vids:[1 4094] mep_ids:[2 4094] md_name:\"c\" ma_name:\"d\" ais{enabled:1 "
        "octet_a:128 word_b:129 octet_c:4294967291 id_set:[5 4094] flag_d:1} format:-6 "
        "ccm_interval:-7 sender_id:-8 mhf_creation:-9"),
    Row<client_server::OpUpdateMaintenanceAssociation>("OpUpdateMaintenanceAssociation",
        "0a016112016218fdffffffffffffffff0120fcffffffffffffffff0128fbffffffffffffffff0132"
        "0306fe1f3a15080110800118810120fbffffff0f2a0305fe1f3001",
        "md_name:\"a\" ma_name:\"b\" ccm_interval:-3 sender_id:-4 mhf_creation:-5 "
        "mep_ids:[6 4094] ais{enabled:1 octet_a:128 word_b:129 octet_c:4294967291 "
        "id_set:[5 4094] flag_d:1}"),
    Row<client_server::OpDeleteMaintenanceAssociation>("OpDeleteMaintenanceAssociation",
        "0a0161120162",
        "md_name:\"a\" ma_name:\"b\""),
    Row<client_server::OpCreateMaintenanceEndpoint>("OpCreateMaintenanceEndpoint",
        "0a016112016218810120fcffffffffffffffff0128830130840138850140f7ffffff0f4801500158"
        "0160f4ffffffffffffffff01688b01708c0178f1ffffffffffffffff01",
        "md_name:\"a\" ma_name:\"b\" mep_id:129 direction:-4 ifindex:131 "
        "primary_vid:132 inner_vid:133 ccm_priority:4294967287 admin_state:1 "
        "ccm_enabled:1 aux_flag:1 lowest_prio_defect:-12 fng_alarm_time:139 "
        "fng_reset_time:140 fault_action:-15"),
    Row<client_server::OpUpdateMaintenanceEndpoint>("OpUpdateMaintenanceEndpoint",
        "0a016112016218810120fbffffff0f2883013001380140f7ffffff0f48f7ffffffffffffffff0150"
        "880158890160f4ffffffffffffffff016801",
        "md_name:\"a\" ma_name:\"b\" mep_id:129 primary_vid:4294967291 inner_vid:131 "
        "admin_state:1 ccm_enabled:1 ccm_priority:4294967287 lowest_prio_defect:-9 "
        "fng_alarm_time:136 fng_reset_time:137 fault_action:-12 aux_flag:1"),
    Row<client_server::OpDeleteMaintenanceEndpoint>("OpDeleteMaintenanceEndpoint",
        "0a0161120162188101",
        "md_name:\"a\" ma_name:\"b\" mep_id:129"),
    Row<client_server::OpCreateDelayMeasurementProbe>("OpCreateDelayMeasurementProbe",
        "0a016112016218810120fbffffff0f288301308401",
        "ma_name:\"a\" md_name:\"b\" probe_id:129 interval:4294967291 lmep_id:131 "
        "rmep_id:132"),
    Row<client_server::OpDeleteDelayMeasurementProbe>("OpDeleteDelayMeasurementProbe",
        "087f",
        "probe_id:127"),
    Row<client_server::OpCreateDelayMeasurementSession>("OpCreateDelayMeasurementSession",
        "087f10800118810120fbffffff0f288301308401",
        "probe_id:127 session_id:128 interval:129 count:4294967291 size:131 pcp:132"),
    Row<client_server::OpDeleteDelayMeasurementSession>("OpDeleteDelayMeasurementSession",
        "087f108001",
        "probe_id:127 session_id:128"),
    Row<client_server::OpCacheSync>("OpCacheSync",
        "0a270a016110feffffffffffffffff0118810120fcffffffffffffffff0128fbffffffffffffffff"
        "0112530a0301fe1f120302fe1f1a01632201642a15080110800118810120fbffffff0f2a0305fe1f"
        "300130faffffffffffffffff0138f9ffffffffffffffff0140f8ffffffffffffffff0148f7ffffff"
        "ffffffffff011a450a016112016218810120fcffffffffffffffff0128830130840138850140f7ff"
        "ffff0f48015001580160f4ffffffffffffffff01688b01708c0178f1ffffffffffffffff0122150a"
        "016112016218810120fbffffff0f2883013084012a14087f10800118810120fbffffff0f28830130"
        "8401",
        "mds{md_name:\"a\" format:-2 level:129 sender_id:-4 mhf_creation:-5} "
        "mas{vids:[1 4094] mep_ids:[2 4094] md_name:\"c\" ma_name:\"d\" ais{enabled:1 "
        "octet_a:128 word_b:129 octet_c:4294967291 id_set:[5 4094] flag_d:1} format:-6 "
        "ccm_interval:-7 sender_id:-8 mhf_creation:-9} meps{md_name:\"a\" ma_name:\"b\" "
        "mep_id:129 direction:-4 ifindex:131 primary_vid:132 inner_vid:133 "
        "ccm_priority:4294967287 admin_state:1 ccm_enabled:1 aux_flag:1 "
        "lowest_prio_defect:-12 fng_alarm_time:139 fng_reset_time:140 fault_action:-15} "
        "probes{ma_name:\"a\" md_name:\"b\" probe_id:129 interval:4294967291 "
        "lmep_id:131 rmep_id:132} sessions{probe_id:127 session_id:128 interval:129 "
        "count:4294967291 size:131 pcp:132}"),
    Row<client_server::OpLinktraceTriggerKey>("OpLinktraceTriggerKey",
        "0a016112016218810120fbffffff0f288301",
        "md_name:\"a\" ma_name:\"b\" request_id:129 mep_id:4294967291 remote_mep_id:131"),
    Row<client_server::OpLinktraceTriggerMsg>("OpLinktraceTriggerMsg",
        "0a120a016112016218810120fbffffff0f288301108001",
        "key{md_name:\"a\" ma_name:\"b\" request_id:129 mep_id:4294967291 "
        "remote_mep_id:131} ttl:128"),
    Row<client_server::OpLinktraceTriggerError>("OpLinktraceTriggerError",
        "0a120a016112016218810120fbffffff0f288301108001",
        "key{md_name:\"a\" ma_name:\"b\" request_id:129 mep_id:4294967291 "
        "remote_mep_id:131} error_code:128"),
    Row<client_server::OpLinktraceStarted>("OpLinktraceStarted",
        "0a01611201621a02000320fbffffff0f288301308401388501",
        "md_name:\"a\" ma_name:\"b\" mac_address:\"\\x00\\x03\" mep_id:4294967291 "
        "transaction_id:131 remote_mep_id:132 started_value:133"),
    Row<client_server::OpLinktraceEnded>("OpLinktraceEnded",
        "0a016112016218810120fbffffff0f",
        "md_name:\"a\" ma_name:\"b\" mep_id:129 transaction_id:4294967291"),
    Row<client_server::LtrFlags>("LtrFlags",
        "080110011801",
        "terminal_mep:1 forwarded:1 use_fdb_only:1"),
    Row<client_server::EgressId>("EgressId",
        "0a02000112020002",
        "mac:\"\\x00\\x01\" id:\"\\x00\\x02\""),
    Row<client_server::LtrEgressId>("LtrEgressId",
        "0a080a0200011202000212080a02000112020002",
        "last{mac:\"\\x00\\x01\" id:\"\\x00\\x02\"} next{mac:\"\\x00\\x01\" "
        "id:\"\\x00\\x02\"}"),
    Row<client_server::PortId>("PortId",
        "0a0200011001188101",
        "value:\"\\x00\\x01\" present:1 subtype:129"),
    Row<client_server::LtrReplyEgressIngress>("LtrReplyEgressIngress",
        "0a02000112090a0200011001188101188101",
        "mac:\"\\x00\\x01\" port_id{value:\"\\x00\\x01\" present:1 subtype:129} "
        "action:129"),
    Row<client_server::LinktraceReply>("LinktraceReply",
        "0a020001120200021a0608011001180122140a080a0200011202000212080a020001120200022a12"
        "0a02000112090a020001100118810118810132120a02000112090a02000110011881011881013885"
        "0140f7ffffff0f48870150880158890160f4ffffffffffffffff01688b01708c01",
        "destination_mac:\"\\x00\\x01\" source_mac:\"\\x00\\x02\" flags{terminal_mep:1 "
        "forwarded:1 use_fdb_only:1} egress_id{last{mac:\"\\x00\\x01\" "
        "id:\"\\x00\\x02\"} next{mac:\"\\x00\\x01\" id:\"\\x00\\x02\"}} "
        "reply_ingress{mac:\"\\x00\\x01\" port_id{value:\"\\x00\\x01\" present:1 "
        "subtype:129} action:129} reply_egress{mac:\"\\x00\\x01\" "
        "port_id{value:\"\\x00\\x01\" present:1 subtype:129} action:129} "
        "transaction_id:133 vlan:4294967287 priority:135 level:136 ttl:137 "
        "relay_action:-12 internal_vlan:139 internal_priority:140"),
    Row<client_server::OpLinktraceReplyRx>("OpLinktraceReplyRx",
        "0a01611201621a710a020001120200021a0608011001180122140a080a0200011202000212080a02"
        "0001120200022a120a02000112090a020001100118810118810132120a02000112090a0200011001"
        "18810118810138850140f7ffffff0f48870150880158890160f4ffffffffffffffff01688b01708c"
        "0120fbffffff0f",
        "md_name:\"a\" ma_name:\"b\" reply{destination_mac:\"\\x00\\x01\" "
        "source_mac:\"\\x00\\x02\" flags{terminal_mep:1 forwarded:1 use_fdb_only:1} "
        "egress_id{last{mac:\"\\x00\\x01\" id:\"\\x00\\x02\"} next{mac:\"\\x00\\x01\" "
        "id:\"\\x00\\x02\"}} reply_ingress{mac:\"\\x00\\x01\" "
        "port_id{value:\"\\x00\\x01\" present:1 subtype:129} action:129} "
        "reply_egress{mac:\"\\x00\\x01\" port_id{value:\"\\x00\\x01\" present:1 "
        "subtype:129} action:129} transaction_id:133 vlan:4294967287 priority:135 "
        "level:136 ttl:137 relay_action:-12 internal_vlan:139 internal_priority:140} "
        "mep_id:4294967291"),
    Row<client_server::OpLoopbackTriggerMsg>("OpLoopbackTriggerMsg",
        "0a016112016218810120fbffffff0f288301308401388501",
        "md_name:\"a\" ma_name:\"b\" request_id:129 mep_id:4294967291 remote_mep_id:131 "
        "param_a:132 param_b:133"),
    Row<client_server::OpLoopbackTriggerError>("OpLoopbackTriggerError",
        "0a016112016218810120fbffffff0f288301308401",
        "md_name:\"a\" ma_name:\"b\" request_id:129 error_code:4294967291 mep_id:131 "
        "remote_mep_id:132"),
    Row<client_server::OpLoopbackStarted>("OpLoopbackStarted",
        "0a020001108001",
        "mac_address:\"\\x00\\x01\" request_id:128"),
    Row<client_server::OpLoopbackReplyRx>("OpLoopbackReplyRx",
        "0a020001108001188101",
        "mac_address:\"\\x00\\x01\" request_id:128 transaction_id:129"),
    Row<client_server::OpLoopbackEnded>("OpLoopbackEnded",
        "08ffffffffffffffffff0110feffffffffffffffff0118fdffffffffffffffff0120fcffffffffff"
        "ffffff01288301",
        "expected_replies:18446744073709551615 in_order_replies:18446744073709551614 "
        "out_of_order_replies:18446744073709551613 "
        "wrong_payload_replies:18446744073709551612 request_id:131"),
    Row<client_server::OpDelayMeasurementTriggerMsg>("OpDelayMeasurementTriggerMsg",
        "0a016112016218810120fbffffff0f28830130840138850140f7ffffff0f488701",
        "md_name:\"a\" ma_name:\"b\" request_id:129 mep_id:4294967291 remote_mep_id:131 "
        "param_a:132 param_b:133 param_c:4294967287 param_d:135"),
    Row<client_server::OpDelayMeasurementTriggerError>("OpDelayMeasurementTriggerError",
        "0a016112016218810120fbffffff0f288301308401",
        "md_name:\"a\" ma_name:\"b\" request_id:129 error_code:4294967291 mep_id:131 "
        "remote_mep_id:132"),
    Row<client_server::OpDelayMeasurementStarted>("OpDelayMeasurementStarted",
        "0a020001108001",
        "mac_address:\"\\x00\\x01\" request_id:128"),
    Row<client_server::OpDelayMeasurementReplyRx>("OpDelayMeasurementReplyRx",
        "0a020001108001",
        "mac_address:\"\\x00\\x01\" request_id:128"),
    Row<client_server::OpDelayMeasurementEnded>("OpDelayMeasurementEnded",
        "08ffffffffffffffffff0110feffffffffffffffff01190000000000000c40210000000000001240"
        "290000000000001640310000000000001a40390000000000001e4041000000000000214048f7ffff"
        "ffffffffffff01508801",
        "rx_count:18446744073709551615 tx_count:18446744073709551614 result_1:3.5 "
        "result_2:4.5 result_3:5.5 result_4:6.5 result_5:7.5 result_6:8.5 "
        "extra_count:18446744073709551607 request_id:136"),
    Row<client_server::OpDelayMeasurementSessionEnded>("OpDelayMeasurementSessionEnded",
        "087f10800118810120fbffffff0f28fbffffffffffffffff0130faffffffffffffffff0139000000"
        "0000001e4040f7ffffff0f48870151000000000000254058890160f3ffffff0f688b01708c017900"
        "00000000002f408101000000000080304088018f01",
        "s_word_1:127 s_word_2:128 s_byte:129 s_word_3:4294967291 "
        "s_wide_1:18446744073709551611 s_wide_2:18446744073709551610 s_real_1:7.5 "
        "s_word_4:4294967287 s_word_5:135 s_real_2:10.5 s_word_6:137 "
        "s_word_7:4294967283 s_word_8:139 s_word_9:140 s_real_3:15.5 s_real_4:16.5 "
        "s_word_10:143"),
    Row<client_server::StatusLocalMaintenanceEndpoint>("StatusLocalMaintenanceEndpoint",
        "0a01611201621a02000320fbffffff0f28830130840138850140f7ffffff0f488701500158016001"
        "680170017801800101",
        "md_name:\"a\" ma_name:\"b\" mac_address:\"\\x00\\x03\" mep_id:4294967291 "
        "highest_defect_priority:131 intf_status:132 port_state:133 "
        "block_state:4294967287 shutdown_state:135 rdi:1 defect_mac_status:1 "
        "defect_remote_ccm:1 defect_error_ccm:1 defect_xcon_ccm:1 defect_rdi:1 "
        "defect_ais:1"),
    Row<client_server::StatusRemoteMaintenanceEndpoint>("StatusRemoteMaintenanceEndpoint",
        "0a01611201621a02000322016428830130840138850140f7ffffff0f488701500158f5ffffffffff"
        "ffffff01",
        "md_name:\"a\" ma_name:\"b\" mac_address:\"\\x00\\x03\" sender_id:\"d\" "
        "mep_id:131 remote_mep_id:132 fsm_state:133 port_state:4294967287 "
        "intf_status:135 rdi:1 last_change_uptime:18446744073709551605"),
    Row<client_server::RemovedLocalMaintenanceEndpoint>("RemovedLocalMaintenanceEndpoint",
        "0a0161120162188101",
        "md_name:\"a\" ma_name:\"b\" mep_id:129"),
    Row<client_server::RemovedRemoteMaintenanceEndpoint>("RemovedRemoteMaintenanceEndpoint",
        "0a016112016218810120fbffffff0f",
        "md_name:\"a\" ma_name:\"b\" mep_id:129 remote_mep_id:4294967291"),
    Row<client_server::OpStatsClear>("OpStatsClear",
        "0a0161120162188101",
        "md_name:\"a\" ma_name:\"b\" mep_id:129"),
    Row<client_server::LocalMepStats>("LocalMepStats",
        "0a016112016218fdffffffffffffffff0120fbffffff0f28830130faffffffffffffffff01",
        "md_name:\"a\" ma_name:\"b\" ccm_rx_seq_errors:18446744073709551613 "
        "mep_id:4294967291 ccm_tx_seq_number:131 ccm_tx_total:18446744073709551610"),
    Row<client_server::RemoteMepStats>("RemoteMepStats",
        "0a016112016218810120fbffffff0f288301",
        "md_name:\"a\" ma_name:\"b\" mep_id:129 remote_mep_id:4294967291 "
        "last_ccm_seq_number:131"),
    Row<client_server::OpReplyAllStats>("OpReplyAllStats",
        "0a250a016112016218fdffffffffffffffff0120fbffffff0f28830130faffffffffffffffff0112"
        "120a016112016218810120fbffffff0f288301",
        "local_mep_stats{md_name:\"a\" ma_name:\"b\" "
        "ccm_rx_seq_errors:18446744073709551613 mep_id:4294967291 ccm_tx_seq_number:131 "
        "ccm_tx_total:18446744073709551610} remote_mep_stats{md_name:\"a\" "
        "ma_name:\"b\" mep_id:129 remote_mep_id:4294967291 last_ccm_seq_number:131}"),
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
