// The parts of the public headers that are fixed for good: slots, widths, values.
#include <cfm/client.h>
#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

namespace cfm_test {
namespace {

// Where a pointer to a virtual member function leads to in the table, by the Itanium ABI.
template <typename Function>
std::size_t Slot(Function function) {
  std::size_t word = 0;
  std::memcpy(&word, &function, sizeof word);
  return (word - 1) / sizeof(void*);
}

TEST(PublicApi, ClientKeepsItsSlots) {
  using cfm::Client;
  EXPECT_EQ(Slot(&Client::RegisterStatusHandler), 0U);
  EXPECT_EQ(Slot(&Client::RegisterStatisticsHandler), 1U);
  EXPECT_EQ(Slot(&Client::RegisterLinktraceHandler), 2U);
  EXPECT_EQ(Slot(&Client::RegisterLoopbackHandler), 3U);
  EXPECT_EQ(Slot(&Client::RegisterDelayMeasurementHandler), 4U);
  // The destructor, declared sixth, takes two entries.
  EXPECT_EQ(Slot(&Client::UpdateConfig), 7U);
  EXPECT_EQ(Slot(&Client::UpdateConfigProbe), 8U);
  EXPECT_EQ(Slot(&Client::RequestStatistics), 9U);
  EXPECT_EQ(Slot(&Client::ClearStatistics), 10U);
  EXPECT_EQ(Slot(&Client::LinktraceTrigger), 11U);
  EXPECT_EQ(Slot(&Client::LoopbackTrigger), 12U);
  EXPECT_EQ(Slot(&Client::DelayMeasurementTrigger), 13U);
}

TEST(PublicApi, HandlersKeepTheirSlots) {
  using Status = cfm::ReceivedStatusHandlerIntf;
  EXPECT_EQ(Slot(&Status::OnStatusLocalMep), 0U);
  EXPECT_EQ(Slot(&Status::OnStatusRemoteMep), 1U);
  EXPECT_EQ(Slot(&Status::OnRemovedLocalMep), 2U);
  EXPECT_EQ(Slot(&Status::OnRemovedRemoteMep), 3U);
  EXPECT_EQ(Slot(&Status::OnMepLinktraceStarted), 4U);
  EXPECT_EQ(Slot(&Status::OnMepLinktraceEnded), 5U);
  EXPECT_EQ(Slot(&Status::OnMepLinktraceReplyRx), 6U);
  EXPECT_EQ(Slot(&Status::OnDelayMeasurementSessionEnded), 7U);
  EXPECT_EQ(Slot(&Status::OnServerFound), 8U);
  using Statistics = cfm::ReceivedStatisticsHandlerIntf;
  EXPECT_EQ(Slot(&Statistics::OnStatsReplyLocalMep), 0U);
  EXPECT_EQ(Slot(&Statistics::OnStatsReplyRemoteMep), 1U);
  EXPECT_EQ(Slot(&Statistics::OnStatsReply), 2U);
  using Linktrace = cfm::ReceivedLinktraceHandlerIntf;
  EXPECT_EQ(Slot(&Linktrace::OnMepLinktraceStarted), 0U);
  EXPECT_EQ(Slot(&Linktrace::OnMepLinktraceEnded), 1U);
  EXPECT_EQ(Slot(&Linktrace::OnMepLinktraceReplyRx), 2U);
  EXPECT_EQ(Slot(&Linktrace::OnLinktraceTriggerError), 3U);
  using Loopback = cfm::ReceivedLoopbackHandlerIntf;
  EXPECT_EQ(Slot(&Loopback::OnLoopbackTriggerError), 0U);
  EXPECT_EQ(Slot(&Loopback::OnLoopbackStarted), 1U);
  EXPECT_EQ(Slot(&Loopback::OnLoopbackReplyRx), 2U);
  EXPECT_EQ(Slot(&Loopback::OnLoopbackEnded), 3U);
  using Delay = cfm::ReceivedDelayMeasurementHandlerIntf;
  EXPECT_EQ(Slot(&Delay::OnDelayMeasurementTriggerError), 0U);
  EXPECT_EQ(Slot(&Delay::OnDelayMeasurementStarted), 1U);
  EXPECT_EQ(Slot(&Delay::OnDelayMeasurementReplyRx), 2U);
  EXPECT_EQ(Slot(&Delay::OnDelayMeasurementEnded), 3U);
}

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
