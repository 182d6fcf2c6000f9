// SPDX-License-Identifier: Apache-2.0
// The server's lists as a configuration, field by field.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/hierarchy_cache.h"
#include "core/probe_cache.h"

namespace cfm_test {
namespace {

using testing::ElementsAre;

cfm::hierarchy Convert(const client_server::OpCacheSync& cache) {
  return cfm::core::HierarchyFromCache(
      cache, [](std::uint32_t ifindex) { return sepan_port_t{ifindex + 7}; });
}

TEST(HierarchyCache, EmptyListsAreAnEmptyConfiguration) { EXPECT_TRUE(Convert({}).mds.empty()); }

TEST(HierarchyCache, RestoresADomain) {
  client_server::OpCacheSync cache;
  auto& entry = *cache.add_mds();
  entry.set_md_name("D");
  entry.set_format(4);
  entry.set_level(256 + 5);
  entry.set_sender_id(99);
  entry.set_mhf_creation(-3);
  const auto cfg = Convert(cache).mds.at("D").cfg;
  EXPECT_EQ(cfg.format, cfm::MdNameFormat::CharString);
  EXPECT_EQ(cfg.level, 5);
  EXPECT_EQ(static_cast<std::int32_t>(cfg.sender_id), 99);
  EXPECT_EQ(static_cast<std::int32_t>(cfg.mhf_creation), -3);
}

TEST(HierarchyCache, ADomainListedTwiceKeepsTheSecond) {
  client_server::OpCacheSync cache;
  cache.add_mds()->set_level(3);
  cache.mutable_mds(0)->set_sender_id(1);
  cache.add_mds()->set_level(4);
  const auto config = Convert(cache);
  ASSERT_EQ(config.mds.size(), 1U);
  EXPECT_EQ(config.mds.at("").cfg.level, 4);
  EXPECT_EQ(config.mds.at("").cfg.sender_id, cfm::SenderIdTlvContent{});
}

TEST(HierarchyCache, RestoresAnAssociation) {
  client_server::OpCacheSync cache;
  auto& entry = *cache.add_mas();
  entry.set_md_name("D");
  entry.set_ma_name("A");
  for (const unsigned vid : {10U, 10U, 65536U + 20U}) {
    entry.add_vids(vid);
  }
  for (const unsigned id : {3U, 1U, 65536U + 3U}) {
    entry.add_mep_ids(id);
  }
  entry.set_format(32);
  entry.set_ccm_interval(7);
  entry.set_sender_id(5);
  entry.set_mhf_creation(4);
  auto& ais = *entry.mutable_ais();
  ais.set_enabled(true);
  ais.set_octet_a(256 + 1);
  ais.set_word_b(4000000000);
  ais.set_octet_c(256 + 2);
  ais.add_id_set(65536 + 9);
  ais.add_id_set(4);
  ais.set_flag_d(true);
  const cfm::hierarchy_ma ma = Convert(cache).mds.at("D").mas.at("A");
  EXPECT_EQ(ma.md_name, "D");
  EXPECT_THAT(ma.cfg.vids, ElementsAre(10, 10, 20));
  EXPECT_THAT(ma.cfg.mep_ids, ElementsAre(1, 3));
  EXPECT_EQ(ma.cfg.format, cfm::MaNameFormat::IccBased);
  EXPECT_EQ(ma.cfg.ccm_interval, cfm::CcmInterval::Interval10min);
  EXPECT_EQ(ma.cfg.sender_id, cfm::SenderIdTlvContent::Defer);
  EXPECT_EQ(ma.cfg.mhf_creation, cfm::MhfCreationMode::Defer);
  EXPECT_TRUE(ma.cfg.ais.enabled && ma.cfg.ais.flag_d);
  EXPECT_EQ(ma.cfg.ais.octet_a, 1);
  EXPECT_EQ(ma.cfg.ais.word_b, 4000000000);
  EXPECT_EQ(ma.cfg.ais.octet_c, 2);
  EXPECT_THAT(ma.cfg.ais.id_set, ElementsAre(4, 9));
}

TEST(HierarchyCache, AnAssociationWithoutAisHasTheDefaults) {
  client_server::OpCacheSync cache;
  cache.add_mas();
  const auto ais = Convert(cache).mds.at("").mas.at("").cfg.ais;
  EXPECT_FALSE(ais.enabled || ais.flag_d);
  EXPECT_EQ(ais.word_b, 0U);
  EXPECT_TRUE(ais.id_set.empty());
}

TEST(HierarchyCache, DisabledAisKeepsDefaultsButItsFlag) {
  client_server::OpCacheSync cache;
  auto& entry = *cache.add_mas()->mutable_ais();
  entry.set_octet_a(1);
  entry.set_word_b(2);
  entry.set_octet_c(3);
  entry.add_id_set(4);
  entry.set_flag_d(true);
  const auto ais = Convert(cache).mds.at("").mas.at("").cfg.ais;
  EXPECT_EQ(ais.octet_a, 0);
  EXPECT_EQ(ais.word_b, 0U);
  EXPECT_EQ(ais.octet_c, 0);
  EXPECT_TRUE(ais.id_set.empty());
  EXPECT_TRUE(ais.flag_d);
}

TEST(HierarchyCache, AnAssociationListedTwiceKeepsTheSecondWhole) {
  client_server::OpCacheSync cache;
  cache.add_mas()->add_vids(1);
  cache.add_mas()->add_mep_ids(2);
  const auto cfg = Convert(cache).mds.at("").mas.at("").cfg;
  EXPECT_TRUE(cfg.vids.empty());
  EXPECT_THAT(cfg.mep_ids, ElementsAre(2));
}

TEST(HierarchyCache, RestoresAnEndpoint) {
  client_server::OpCacheSync cache;
  auto& entry = *cache.add_meps();
  entry.set_md_name("D");
  entry.set_ma_name("A");
  entry.set_mep_id(65536 + 3);
  entry.set_direction(2);
  entry.set_ifindex(40);
  entry.set_primary_vid(65536 + 100);
  entry.set_inner_vid(65536 + 200);
  entry.set_ccm_priority(256 + 6);
  entry.set_admin_state(true);
  entry.set_ccm_enabled(true);
  entry.set_aux_flag(true);
  entry.set_lowest_prio_defect(256 + 5);
  entry.set_fng_alarm_time(65536 + 250);
  entry.set_fng_reset_time(65536 + 1000);
  entry.set_fault_action(77);
  const cfm::hierarchy_mep mep = Convert(cache).mds.at("D").mas.at("A").meps.at(3);
  EXPECT_EQ(mep.md_name, "D");
  EXPECT_EQ(mep.ma_name, "A");
  EXPECT_EQ(mep.cfg.mep_id, 3);
  EXPECT_EQ(mep.cfg.direction, cfm::MepDirection::Up);
  EXPECT_EQ(mep.cfg.port, 47U);
  EXPECT_EQ(mep.cfg.primary_vid, 100);
  EXPECT_EQ(mep.cfg.inner_vid, 200);
  EXPECT_EQ(mep.cfg.ccm_priority, 6);
  EXPECT_TRUE(mep.cfg.admin_state && mep.cfg.ccm_enabled && mep.cfg.aux_flag);
  EXPECT_EQ(mep.cfg.lowest_prio_defect, cfm::Defects::Xcon);
  EXPECT_EQ(mep.cfg.fng_alarm_time, 250);
  EXPECT_EQ(mep.cfg.fng_reset_time, 1000);
  EXPECT_EQ(static_cast<std::int32_t>(mep.cfg.fault_action), 77);
}

TEST(HierarchyCache, AnEndpointWithoutParentsCreatesThemWithDefaults) {
  client_server::OpCacheSync cache;
  auto& entry = *cache.add_meps();
  entry.set_md_name("D");
  entry.set_ma_name("A");
  entry.set_mep_id(1);
  const auto config = Convert(cache);
  const cfm::hierarchy_ma& ma = config.mds.at("D").mas.at("A");
  EXPECT_EQ(config.mds.at("D").cfg.level, 0);
  EXPECT_EQ(ma.md_name, "");
  EXPECT_EQ(ma.meps.size(), 1U);
}

TEST(HierarchyCache, AnAssociationWithoutItsDomainCreatesItWithDefaults) {
  client_server::OpCacheSync cache;
  cache.add_mas()->set_md_name("D");
  const auto config = Convert(cache);
  EXPECT_EQ(config.mds.at("D").cfg.format, cfm::MdNameFormat{});
  EXPECT_EQ(config.mds.at("D").mas.at("").md_name, "D");
}

TEST(HierarchyCache, AnEndpointListedTwiceKeepsTheSecond) {
  client_server::OpCacheSync cache;
  cache.add_meps()->set_mep_id(5);
  cache.mutable_meps(0)->set_primary_vid(1);
  cache.add_meps()->set_mep_id(65536 + 5);
  cache.mutable_meps(1)->set_inner_vid(2);
  const auto config = Convert(cache);
  const auto& meps = config.mds.at("").mas.at("").meps;
  ASSERT_EQ(meps.size(), 1U);
  EXPECT_EQ(meps.at(5).cfg.primary_vid, 0);
  EXPECT_EQ(meps.at(5).cfg.inner_vid, 2);
}

TEST(ProbeCache, EmptyListsAreNoProbes) {
  EXPECT_TRUE(cfm::core::ProbesFromCache({}).probes.empty());
}

TEST(ProbeCache, RestoresProbesAndSessionsInAnyOrder) {
  client_server::OpCacheSync cache;
  auto& session = *cache.add_sessions();
  session.set_probe_id(65536 + 5);
  session.set_session_id(65536 + 2);
  session.set_count(65536 + 10);
  session.set_interval(65536 + 20);
  session.set_size(65536 + 64);
  session.set_pcp(260);
  auto& probe = *cache.add_probes();
  probe.set_probe_id(65541);
  probe.set_interval(65536 + 60);
  probe.set_md_name("D");
  probe.set_ma_name("A");
  probe.set_lmep_id(65536 + 1);
  probe.set_rmep_id(65536 + 2);
  cfm::probe expected;
  expected.probes[5] = {5, 60, "D", "A", 1, 2, {{2, {10, 20, 64, 4}}}};
  EXPECT_EQ(cfm::core::ProbesFromCache(cache).probes, expected.probes);
}

TEST(ProbeCache, AProbeListedTwiceKeepsTheSecond) {
  client_server::OpCacheSync cache;
  cache.add_probes()->set_probe_id(5);
  cache.mutable_probes(0)->set_interval(1);
  cache.add_probes()->set_probe_id(5);
  cache.mutable_probes(1)->set_lmep_id(2);
  cfm::probe expected;
  expected.probes[5] = {5, 0, "", "", 2, 0, {}};
  EXPECT_EQ(cfm::core::ProbesFromCache(cache).probes, expected.probes);
}

TEST(ProbeCache, ASessionWithoutItsProbeCreatesAnEmptyOne) {
  client_server::OpCacheSync cache;
  cache.add_sessions()->set_probe_id(9);
  cache.mutable_sessions(0)->set_session_id(3);
  cfm::probe expected;
  expected.probes[9].sessions[3] = {};
  EXPECT_EQ(cfm::core::ProbesFromCache(cache).probes, expected.probes);
}

TEST(ProbeCache, ASessionListedTwiceKeepsTheSecond) {
  client_server::OpCacheSync cache;
  cache.add_sessions()->set_count(3);
  cache.add_sessions()->set_size(4);
  EXPECT_EQ(cfm::core::ProbesFromCache(cache).probes.at(0).sessions.at(0),
            (cfm::session_cfg{0, 0, 4, 0}));
}

}  // namespace
}  // namespace cfm_test
