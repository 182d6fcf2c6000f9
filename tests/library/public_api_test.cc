// SPDX-License-Identifier: Apache-2.0
// The parts of the public headers that are fixed for good: widths, values. The slots are in
// vtable_test.cc.
#include <cfm/client.h>
#include <gtest/gtest.h>

#include <type_traits>

namespace cfm_test {
namespace {

TEST(PublicApi, ClientHoldsItsTableAndOnePointer) {
  EXPECT_EQ(sizeof(cfm::Client), 2 * sizeof(void*));
  EXPECT_FALSE(std::is_copy_constructible_v<cfm::Client>);
}

template <typename Enum, typename Underlying>
constexpr bool kHasWidth = std::is_same_v<std::underlying_type_t<Enum>, Underlying>;

TEST(PublicApi, EnumerationsHaveFixedWidths) {
  EXPECT_TRUE((kHasWidth<cfm::SenderIdTlvContent, std::int32_t>));
  EXPECT_TRUE((kHasWidth<cfm::MhfCreationMode, std::int32_t>));
  EXPECT_TRUE((kHasWidth<cfm::CcmInterval, std::int32_t>));
  EXPECT_TRUE((kHasWidth<cfm::FaultAction, std::int32_t>));
  EXPECT_TRUE((kHasWidth<cfm::MdNameFormat, std::int32_t>));
  EXPECT_TRUE((kHasWidth<cfm::MaNameFormat, std::int32_t>));
  EXPECT_TRUE((kHasWidth<cfm::MepDirection, std::int32_t>));
  EXPECT_TRUE((kHasWidth<cfm::Defects, std::uint8_t>));
}

TEST(PublicApi, RecordsStartAtZero) {
  const cfm::hierarchy_mep mep;
  EXPECT_EQ(mep.cfg.mep_id, 0);
  EXPECT_EQ(mep.cfg.direction, cfm::MepDirection{});
  EXPECT_EQ(mep.cfg.port, 0U);
  EXPECT_FALSE(mep.cfg.admin_state || mep.cfg.ccm_enabled || mep.cfg.aux_flag);
  const cfm::hierarchy_ma ma;
  EXPECT_TRUE(ma.md_name.empty() && ma.meps.empty() && ma.cfg.vids.empty());
  EXPECT_FALSE(ma.cfg.ais.enabled || ma.cfg.ais.flag_d);
  EXPECT_EQ(cfm::hierarchy_md().cfg.level, 0);
}

TEST(PublicApi, DefaultProbesCompareEqual) {
  EXPECT_EQ(cfm::probe_cfg(), cfm::probe_cfg());
  EXPECT_EQ(cfm::session_cfg(), cfm::session_cfg());
}

TEST(PublicApi, ProbesDifferInEachMember) {
  const auto differs = [](auto change) {
    cfm::probe_cfg changed;
    change(changed);
    return changed != cfm::probe_cfg();
  };
  EXPECT_TRUE(differs([](auto& probe) { probe.id = 1; }));
  EXPECT_TRUE(differs([](auto& probe) { probe.interval = 1; }));
  EXPECT_TRUE(differs([](auto& probe) { probe.md = "D"; }));
  EXPECT_TRUE(differs([](auto& probe) { probe.ma = "A"; }));
  EXPECT_TRUE(differs([](auto& probe) { probe.lmep = 1; }));
  EXPECT_TRUE(differs([](auto& probe) { probe.rmep = 1; }));
  EXPECT_TRUE(differs([](auto& probe) { probe.sessions[1].pcp = 1; }));
}

TEST(Mac, IsWrittenInLowerCaseWithLeadingZeros) {
  EXPECT_EQ((cfm::st_mac{{0x00, 0x1a, 0xff, 0x00, 0x00, 0x01}}.to_string()), "00:1a:ff:00:00:01");
  EXPECT_EQ(cfm::st_mac().to_string(), "00:00:00:00:00:00");
}

TEST(MaSettings, CopiesAreDeep) {
  cfm::st_maintenance_association_cfg original;
  original.vids = {10, 10, 20};
  original.mep_ids = {1, 3};
  original.ais.id_set = {7};
  cfm::st_maintenance_association_cfg copy = original;
  copy.vids.clear();
  copy.mep_ids.clear();
  copy.ais.id_set.clear();
  EXPECT_EQ(original.vids.size(), 3U);
  EXPECT_EQ(original.mep_ids.size(), 2U);
  EXPECT_EQ(original.ais.id_set.size(), 1U);
}

}  // namespace
}  // namespace cfm_test
