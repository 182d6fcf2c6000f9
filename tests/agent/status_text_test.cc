// SPDX-License-Identifier: Apache-2.0
#include "core/status_text.h"

#include <gtest/gtest.h>

#include <limits>

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
  EXPECT_EQ(Describe(status),
            "00:00:00:00:00:00, port blocked, interface lower layer down, block state 1, shutdown "
            "state 2, sends RDI, "
            "defects: cross-connected CCMs, erroneous CCMs, missing CCMs, MAC status, RDI, AIS "
            "(highest: cross-connected CCMs)");
}

TEST(LocalStatusText, TellsAHighestDefectWithoutADefect) {
  cfm::local_mep_status status;
  status.highest_defect_priority = 3;
  EXPECT_EQ(Describe(status),
            "00:00:00:00:00:00, port unknown, interface unknown, defects: none (highest: missing "
            "CCMs)");
}

TEST(LocalStatusText, ShowsNumbersItDoesNotKnow) {
  cfm::local_mep_status status;
  status.intf_status = 99;
  status.port_state = 4294967295U;
  EXPECT_EQ(Describe(status), "00:00:00:00:00:00, port 4294967295, interface 99, no defect");
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
            "since uptime 18446744073709551615 ms");
}

TEST(RemoteStatusText, NamesEveryState) {
  const auto state = [](std::uint32_t number) {
    cfm::remote_mep_status status;
    status.fsm_state = number;
    return StateSpan(status).text;
  };
  EXPECT_EQ(state(1), "idle");
  EXPECT_EQ(state(2), "start");
  EXPECT_EQ(state(3), "failed");
  EXPECT_EQ(state(4), "ok");
  EXPECT_EQ(state(5), "5");
}

TEST(SessionResultText, GivesEveryNumberItsMeaningAndUnit) {
  cfm::DelayMeasurementSessionResult result;
  result.s_word_1 = 7;
  result.s_word_2 = 3;
  result.s_word_3 = 12;
  result.s_wide_1 = 5000;
  result.s_wide_2 = 18446744073709551615U;
  result.s_word_4 = 20;
  result.s_word_5 = 19;
  result.s_word_10 = 2;
  result.s_real_4 = 0.05;
  result.s_word_6 = 10462;
  result.s_real_1 = 10636.9079;
  result.s_word_7 = 10905;
  result.s_real_2 = 120.46;
  result.s_word_8 = 1;
  result.s_real_3 = 20.34;
  result.s_word_9 = 44;
  EXPECT_EQ(Describe(result),
            "probe 7 session 3 run 12: complete, 20 sent, 19 received, 5.0 % lost, 2 not counted, "
            "delay 10462 / 10636.9 / 10905 us, deviation 120.5 us, variation 1 / 20.3 / 44 us, "
            "uptime 5000 to 18446744073709551615 ms");
}

TEST(SessionResultText, LeavesOutWhatNoReplyTells) {
  cfm::DelayMeasurementSessionResult result;
  result.s_byte = 2;
  result.s_word_4 = 10;
  result.s_real_4 = 1;
  EXPECT_EQ(Describe(result),
            "probe 0 session 0 run 0: endpoint gone, 10 sent, 0 received, 100.0 % lost, 0 not "
            "counted, uptime 0 to 0 ms");
  result.s_byte = 255;
  EXPECT_EQ(Describe(result).substr(0, 28), "probe 0 session 0 run 0: 255");
}

TEST(DecimalText, IsShortAndExact) {
  EXPECT_EQ(Decimal(0), "0");
  EXPECT_EQ(Decimal(-1.5), "-1.5");
  EXPECT_EQ(Decimal(0.1), "0.1");
  EXPECT_EQ(Decimal(1e300), "1e+300");
}

TEST(FixedText, HasItsDecimalsUnlessNobodyCouldReadIt) {
  EXPECT_EQ(Fixed(0, 3), "0.000");
  EXPECT_EQ(Fixed(-1.25, 1), "-1.2");
  EXPECT_EQ(Fixed(1e300, 3), "1e+300");
  EXPECT_EQ(Fixed(std::numeric_limits<double>::quiet_NaN(), 3), "nan");
  EXPECT_EQ(Fixed(std::numeric_limits<double>::infinity(), 3), "inf");
}

TEST(StatusText, IsColouredByWhatItSays) {
  const Style colour = {true, false};
  cfm::local_mep_status local;
  EXPECT_NE(Describe(local, colour).find("\x1b[32mno defect\x1b[0m"), std::string::npos);
  local.defect_rdi = true;
  EXPECT_NE(Describe(local, colour).find("\x1b[31mdefects: RDI"), std::string::npos);
  cfm::remote_mep_status remote;
  remote.fsm_state = 3;
  EXPECT_NE(Describe(remote, colour).find("\x1b[31mfailed\x1b[0m"), std::string::npos);
}

}  // namespace
}  // namespace cfm_agent
