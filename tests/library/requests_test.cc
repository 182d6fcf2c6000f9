// SPDX-License-Identifier: Apache-2.0
// What each request for a domain, association or endpoint carries.
#include "client_fixture.h"

namespace cfm_test {
namespace {

class Requests : public InStepTest {
 protected:
  std::vector<std::string> SentFor(const cfm::hierarchy& config) {
    return Sent([&] { client->UpdateConfig(config); });
  }
};

cfm::hierarchy FullConfig() {
  cfm::hierarchy config;
  cfm::hierarchy_md& md = config.mds["D"];
  md.cfg = {cfm::MdNameFormat::CharString, 5, cfm::SenderIdTlvContent::Manage,
            cfm::MhfCreationMode::Explicit};
  cfm::hierarchy_ma& ma = md.mas["A"];
  ma.md_name = "D";
  ma.cfg.format = cfm::MaNameFormat::IccBased;
  ma.cfg.vids = {20, 10, 10};
  ma.cfg.ccm_interval = cfm::CcmInterval::Interval10s;
  ma.cfg.mep_ids = {7, 3};
  ma.cfg.sender_id = cfm::SenderIdTlvContent::Defer;
  ma.cfg.mhf_creation = cfm::MhfCreationMode::Defer;
  ma.cfg.ais.enabled = true;
  ma.cfg.ais.octet_a = 255;
  ma.cfg.ais.word_b = 4000000000;
  ma.cfg.ais.id_set = {65535, 2};
  ma.cfg.ais.octet_c = 8;
  ma.cfg.ais.flag_d = true;
  cfm::hierarchy_mep& mep = ma.meps[3];
  mep.md_name = "D";
  mep.ma_name = "A";
  mep.cfg = {
      3,    cfm::MepDirection::Up,      2,   100, 200, true, true, 6, cfm::Defects::Xcon, 250,
      1000, cfm::FaultAction::Shutdown, true};
  return config;
}

TEST_F(Requests, CreatesCarryEverySetting) {
  EXPECT_THAT(
      SentFor(FullConfig()),
      ElementsAre(
          "MD_CREATE md_name:\"D\" format:4 level:5 sender_id:3 mhf_creation:3",
          "MA_CREATE vids:[20 10 10] mep_ids:[3 7] md_name:\"D\" ma_name:\"A\" ais{enabled:1 "
          "octet_a:255 word_b:4000000000 octet_c:8 id_set:[2 65535] flag_d:1} format:32 "
          "ccm_interval:5 sender_id:5 mhf_creation:4",
          "MEP_CREATE md_name:\"D\" ma_name:\"A\" mep_id:3 direction:2 ifindex:1002 "
          "primary_vid:100 inner_vid:200 ccm_priority:6 admin_state:1 ccm_enabled:1 aux_flag:1 "
          "lowest_prio_defect:5 fng_alarm_time:250 fng_reset_time:1000 fault_action:2"));
}

TEST_F(Requests, UpdatesLeaveOutWhatOnlyRecreationChanges) {
  SentFor(FullConfig());
  EXPECT_THAT(
      SentFor(FullConfig()),
      ElementsAre("MD_UPDATE md_name:\"D\" sender_id:3 mhf_creation:3",
                  "MA_UPDATE md_name:\"D\" ma_name:\"A\" ccm_interval:5 sender_id:5 "
                  "mhf_creation:4 mep_ids:[3 7] ais{enabled:1 octet_a:255 word_b:4000000000 "
                  "octet_c:8 id_set:[2 65535] flag_d:1}",
                  "MEP_UPDATE md_name:\"D\" ma_name:\"A\" mep_id:3 primary_vid:100 inner_vid:200 "
                  "admin_state:1 ccm_enabled:1 ccm_priority:6 lowest_prio_defect:5 "
                  "fng_alarm_time:250 fng_reset_time:1000 fault_action:2 aux_flag:1"));
}

TEST_F(Requests, DeletesCarryTheNamesOnly) {
  cfm::hierarchy config = FullConfig();
  config.mds["E"].mas["B"] = Ma("E", "B", {9});
  SentFor(config);
  config.mds.erase("D");
  config.mds["E"].mas.erase("B");
  EXPECT_THAT(SentFor(config),
              ElementsAre("MA_DELETE md_name:\"E\" ma_name:\"B\"", "MD_DELETE md_name:\"D\"",
                          "MD_UPDATE md_name:\"E\" sender_id:0 mhf_creation:0"));
  config.mds["E"].mas["B"] = Ma("E", "B", {9});
  SentFor(config);
  config.mds["E"].mas["B"].meps.clear();
  EXPECT_EQ(SentFor(config).front(), "MEP_DELETE md_name:\"E\" ma_name:\"B\" mep_id:9");
}

TEST_F(Requests, ZerosAndEmptyStringsArePresentAndEmptyListsAreNot) {
  cfm::hierarchy config;
  config.mds[""].mas[""].meps[0];
  EXPECT_THAT(SentFor(config),
              ElementsAre("MD_CREATE md_name:\"\" format:0 level:0 sender_id:0 mhf_creation:0",
                          "MA_CREATE md_name:\"\" ma_name:\"\" ais{enabled:0 flag_d:0} format:0 "
                          "ccm_interval:0 sender_id:0 mhf_creation:0",
                          "MEP_CREATE md_name:\"\" ma_name:\"\" mep_id:0 direction:0 ifindex:0 "
                          "primary_vid:0 inner_vid:0 ccm_priority:0 admin_state:0 ccm_enabled:0 "
                          "aux_flag:0 lowest_prio_defect:0 fng_alarm_time:0 fng_reset_time:0 "
                          "fault_action:0"));
}

TEST_F(Requests, DisabledAisCarriesOnlyItsTwoFlags) {
  cfm::hierarchy config = FullConfig();
  config.mds["D"].mas["A"].cfg.ais.enabled = false;
  EXPECT_THAT(SentFor(config)[1], testing::HasSubstr("ais{enabled:0 flag_d:1}"));
  EXPECT_THAT(SentFor(config)[1], testing::HasSubstr("ais{enabled:0 flag_d:1}"));
}

TEST_F(Requests, EnabledAisCarriesZerosToo) {
  cfm::hierarchy config = OneMa({});
  config.mds["D"].mas["A"].cfg.ais.enabled = true;
  EXPECT_THAT(SentFor(config)[1],
              testing::HasSubstr("ais{enabled:1 octet_a:0 word_b:0 octet_c:0 flag_d:0}"));
}

TEST_F(Requests, TheEndpointsOwnIdentifierIsSentNotItsKey) {
  cfm::hierarchy config = OneMa({1});
  config.mds["D"].mas["A"].meps[1].cfg.mep_id = 77;
  EXPECT_THAT(Brief(SentFor(config)),
              ElementsAre("MD_CREATE D", "MA_CREATE D A", "MEP_CREATE D A 77"));
  EXPECT_THAT(Brief(SentFor(config)),
              ElementsAre("MD_UPDATE D", "MA_UPDATE D A", "MEP_UPDATE D A 77"));
  config.mds["D"].mas["A"].meps.clear();
  EXPECT_EQ(Brief(SentFor(config)).front(), "MEP_DELETE D A 77");
}

TEST_F(Requests, UnknownEnumerationValuesPassThrough) {
  cfm::hierarchy config = OneMa({1});
  config.mds["D"].cfg.format = static_cast<cfm::MdNameFormat>(-7);
  config.mds["D"].cfg.mhf_creation = static_cast<cfm::MhfCreationMode>(2147483647);
  config.mds["D"].mas["A"].meps[1].cfg.lowest_prio_defect = static_cast<cfm::Defects>(255);
  const auto sent = SentFor(config);
  EXPECT_EQ(sent[0],
            "MD_CREATE md_name:\"D\" format:-7 level:0 sender_id:0 mhf_creation:2147483647");
  EXPECT_THAT(sent[2], testing::HasSubstr("lowest_prio_defect:255"));
}

TEST_F(Requests, NamesMayHoldAnyBytes) {
  const std::string name("\0\xff\xc3 \"", 5);
  cfm::hierarchy config;
  config.mds[name].mas[name].md_name = name;
  EXPECT_THAT(SentFor(config),
              ElementsAre(testing::HasSubstr("md_name:\"\\x00\\xff\\xc3 \\x22\""),
                          testing::HasSubstr("ma_name:\"\\x00\\xff\\xc3 \\x22\"")));
}

TEST_F(Requests, APortWithoutAnInterfaceSendsWhatTheMappingLeft) {
  cfm::hierarchy config = OneMa({1});
  config.mds["D"].mas["A"].meps[1].cfg.port = 99;
  EXPECT_THAT(SentFor(config)[2], testing::HasSubstr("ifindex:0 "));
}

TEST_F(Requests, FullWidthNumbersAreWidened) {
  cfm::hierarchy config = OneMa({65535});
  cfm::st_maintenance_endpoint_cfg& cfg = config.mds["D"].mas["A"].meps[65535].cfg;
  cfg.primary_vid = 65535;
  cfg.ccm_priority = 255;
  cfg.fng_alarm_time = 65535;
  config.mds["D"].cfg.level = 255;
  const auto sent = SentFor(config);
  EXPECT_THAT(sent[0], testing::HasSubstr("level:255"));
  EXPECT_THAT(sent[2], testing::HasSubstr("mep_id:65535 "));
  EXPECT_THAT(sent[2], testing::HasSubstr("primary_vid:65535 "));
  EXPECT_THAT(sent[2], testing::HasSubstr("ccm_priority:255 "));
  EXPECT_THAT(sent[2], testing::HasSubstr("fng_alarm_time:65535 "));
}

}  // namespace
}  // namespace cfm_test
