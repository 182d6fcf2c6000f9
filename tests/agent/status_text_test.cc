#include "core/status_text.h"

#include <gtest/gtest.h>

#include <locale>

#include "core/columns.h"

namespace cfm_agent {
namespace {

constexpr cfm::st_mac kMac = {{{0x00, 0x1a, 0xff, 0x00, 0x00, 0x01}}};

TEST(LocalStatusText, OfAHealthyEndpoint) {
  cfm::local_mep_status status;
  status.mac = kMac;
  status.intf_status = 1;
  status.port_state = 2;
  EXPECT_EQ(Describe(status), "00:1a:ff:00:00:01, port up, interface up, no defect");
}

TEST(LocalStatusText, NamesEveryDefectTheHighestFirst) {
  cfm::local_mep_status status;
  status.intf_status = 7;
  status.port_state = 1;
  status.rdi = true;
  status.block_state = 1;
  status.shutdown_state = 2;
  status.highest_defect_priority = 5;
  status.defect_rdi = status.defect_mac_status = status.defect_remote_ccm = true;
  status.defect_error_ccm = status.defect_xcon_ccm = status.defect_ais = true;
  EXPECT_EQ(DescribeState(status),
            "port blocked, interface lower layer down, block state 1, shutdown state 2, sends RDI, "
            "defects: cross-connected CCMs, erroneous CCMs, missing CCMs, MAC status, RDI, AIS "
            "(highest: cross-connected CCMs)");
}

TEST(LocalStatusText, TellsAHighestDefectWithoutADefect) {
  cfm::local_mep_status status;
  status.highest_defect_priority = 3;
  EXPECT_EQ(DescribeState(status),
            "port unknown, interface unknown, defects: none (highest: missing CCMs)");
}

TEST(LocalStatusText, ShowsNumbersItDoesNotKnow) {
  cfm::local_mep_status status;
  status.intf_status = 99;
  status.port_state = 4294967295U;
  EXPECT_EQ(DescribeState(status), "port 4294967295, interface 99, no defect");
}

TEST(RemoteStatusText, TellsAllThereIs) {
  cfm::remote_mep_status status;
  status.fsm_state = 4;
  status.last_change_uptime = 18446744073709551615U;
  status.mac = kMac;
  status.rdi = true;
  status.port_state = 2;
  status.intf_status = 2;
  status.sender_id = "edge\n7";
  EXPECT_EQ(Describe(status),
            "00:1a:ff:00:00:01, ok, port up, interface down, sends RDI, sender id \"edge\\x0a7\", "
            "since uptime 18446744073709551615");
}

TEST(RemoteStatusText, NamesEveryState) {
  const auto state = [](std::uint32_t number) {
    cfm::remote_mep_status status;
    status.fsm_state = number;
    return DescribeState(status).substr(0, DescribeState(status).find(','));
  };
  EXPECT_EQ(state(1), "idle");
  EXPECT_EQ(state(2), "start");
  EXPECT_EQ(state(3), "failed");
  EXPECT_EQ(state(4), "ok");
  EXPECT_EQ(state(5), "5");
}

TEST(StatisticsText, OfBothKinds) {
  EXPECT_EQ(Describe(cfm::local_mep_stats{1, 2, 3}),
            "CCMs sent 2, last sequence number sent 3, received out of sequence 1");
  EXPECT_EQ(Describe(cfm::remote_mep_stats{4}), "last sequence number received 4");
}

TEST(LinktraceReplyText, OfABareReply) {
  cfm::LinktraceReplyEntry reply;
  reply.source_mac = kMac;
  reply.ttl = 63;
  reply.relay_action = 1;
  EXPECT_EQ(Describe(reply), "from 00:1a:ff:00:00:01, TTL 63, relay action hit");
}

TEST(LinktraceReplyText, OfAFullReply) {
  cfm::LinktraceReplyEntry reply;
  reply.source_mac = kMac;
  reply.relay_action = 3;
  reply.terminal_mep = true;
  reply.forwarded = true;
  reply.reply_ingress = std::make_unique<cfm::LtrReplyPort>();
  reply.reply_ingress->action = 1;
  reply.reply_ingress->mac = kMac;
  reply.reply_ingress->port_id_present = true;
  reply.reply_ingress->port_id = "eth0";
  reply.reply_egress = std::make_unique<cfm::LtrReplyPort>();
  reply.reply_egress->action = 4;
  EXPECT_EQ(Describe(reply),
            "from 00:1a:ff:00:00:01, TTL 0, relay action MPDB, terminal MEP, forwarded, ingress OK "
            "at 00:1a:ff:00:00:01 port \"eth0\", egress VID at 00:00:00:00:00:00");
}

TEST(SessionResultText, GivesEveryNumberItsName) {
  cfm::DelayMeasurementSessionResult result;
  result.s_word_1 = 1;
  result.s_byte = 255;
  result.s_wide_2 = 18446744073709551615U;
  result.s_real_4 = 0.1;
  EXPECT_EQ(Describe(result),
            "word 1: 1, word 2: 0, byte: 255, word 3: 0, wide 1: 0, wide 2: 18446744073709551615, "
            "word 4: 0, real 1: 0, real 2: 0, word 5: 0, word 6: 0, word 7: 0, word 8: 0, word 9: "
            "0, word 10: 0, real 3: 0, real 4: 0.1");
}

TEST(DecimalText, IsShortAndExact) {
  EXPECT_EQ(Decimal(0), "0");
  EXPECT_EQ(Decimal(-1.5), "-1.5");
  EXPECT_EQ(Decimal(0.1), "0.1");
  EXPECT_EQ(Decimal(1e300), "1e+300");
}

TEST(Columns, LineUpAndEndWithoutBlanks) {
  EXPECT_EQ(AlignColumns({{"A", "BB", "C"}, {"aaa", "b"}, {"\xC3\xBC", "b", "c"}}, 2),
            (std::vector<std::string>{"  A    BB  C", "  aaa  b", "  \xC3\xBC    b   c"}));
  EXPECT_TRUE(AlignColumns({}, 2).empty());
}

}  // namespace
}  // namespace cfm_agent
