// SPDX-License-Identifier: Apache-2.0
// Getting in step: whose configuration counts, and what is sent then.
#include <cfm/identifiers.h>

#include "client_fixture.h"

namespace cfm_test {
namespace {

constexpr char kReceived[] = "log 10 ReqCacheReply:710 Cache reply received";
constexpr char kApply[] =
    "log 10 ReqCacheReply:719 Cache sync apply: pending requests will be processed, if any";

class Cache : public ClientTest {
 protected:
  Cache() { host.ServerFound(); }

  // All that a cache reply brings about.
  std::vector<std::string> Reply(const client_server::OpCacheSync& cache) {
    host.Take();
    host.Signal(CFM_MGR_S2C_SIG_CACHE_REPLY, cache.SerializeAsString());
    return host.Take();
  }
};

std::vector<std::string> Filter(const std::vector<std::string>& record, const std::string& prefix) {
  std::vector<std::string> result;
  for (const std::string& entry : record) {
    if (entry.compare(0, prefix.size(), prefix) == 0) {
      result.push_back(entry.substr(prefix.size()));
    }
  }
  return result;
}

// What the server holds of OneMa({1}).
client_server::OpCacheSync OneMaCache() {
  client_server::OpCacheSync cache;
  cache.add_mds()->set_md_name("D");
  auto& ma = *cache.add_mas();
  ma.set_md_name("D");
  ma.set_ma_name("A");
  auto& mep = *cache.add_meps();
  mep.set_md_name("D");
  mep.set_ma_name("A");
  mep.set_mep_id(1);
  mep.set_ifindex(1001);
  return cache;
}

cfm::probe OneProbe() {
  cfm::probe config;
  config.probes[5] = {5, 60, "D", "A", 1, 2, {{1, {10, 20, 64, 3}}}};
  return config;
}

client_server::OpCacheSync OneProbeCache() {
  client_server::OpCacheSync cache;
  auto& probe = *cache.add_probes();
  probe.set_probe_id(5);
  probe.set_interval(60);
  probe.set_md_name("D");
  probe.set_ma_name("A");
  probe.set_lmep_id(1);
  probe.set_rmep_id(2);
  auto& session = *cache.add_sessions();
  session.set_probe_id(5);
  session.set_session_id(1);
  session.set_count(10);
  session.set_interval(20);
  session.set_size(64);
  session.set_pcp(3);
  return cache;
}

TEST_F(Cache, BothEmptyAndNothingHandedInAsksForStatusOnly) {
  EXPECT_THAT(
      Reply({}),
      ElementsAre(kReceived,
                  "log 10 ReqCacheReplyHierarchy:790 Client and server caches are empty, nothing "
                  "to do",
                  "log 10 ReqCacheReplyProbe:860 Client and server caches are empty, nothing to do",
                  kApply, "log 10 Apply:340 Applying CFM config...",
                  "log 10 Apply:341 CFM Hierarchy\n",
                  "log 10 ApplyDelayMeasurementProbe:620 Applying CFM Delay Measurement Probes "
                  "config...",
                  "log 10 ApplyDelayMeasurementProbe:621 CFM Delay Measurement Probes\n",
                  "send 77 STATUS_GET_ALL no payload"));
}

TEST_F(Cache, AFirstStartSendsAllThatWasHandedIn) {
  client->UpdateConfig(OneMa({1}));
  client->UpdateConfigProbe(OneProbe());
  EXPECT_THAT(Brief(Filter(Reply({}), "send 77 ")),
              ElementsAre("MD_CREATE D", "MA_CREATE D A", "MEP_CREATE D A 1",
                          "DM_PROBE_CREATE A D 5", "DM_SESSION_CREATE 5 1", "STATUS_GET_ALL"));
}

TEST_F(Cache, ARestartedApplicationSendsOnlyTheDifference) {
  cfm::hierarchy config = OneMa({1, 2});
  client->UpdateConfig(config);
  cfm::probe probes = OneProbe();
  probes.probes[6] = {6, 60, "D", "A", 1, 2, {}};
  client->UpdateConfigProbe(probes);
  client_server::OpCacheSync cache = OneMaCache();
  cache.MergeFrom(OneProbeCache());
  const auto record = Reply(cache);
  EXPECT_THAT(
      Filter(record, "log 10 ReqCacheReply"),
      ElementsAre(testing::_, "Hierarchy:794 App died, will use last cached status from server",
                  "Probe:864 App died, will use last cached status from server", testing::_));
  EXPECT_THAT(Brief(Filter(record, "send 77 ")),
              ElementsAre("MEP_CREATE D A 2", "MD_UPDATE D", "MA_UPDATE D A", "MEP_UPDATE D A 1",
                          "DM_PROBE_CREATE A D 6", "STATUS_GET_ALL"));
}

TEST_F(Cache, AnApplicationThatHandsInNothingDeletesTheServersConfiguration) {
  client_server::OpCacheSync cache = OneMaCache();
  cache.MergeFrom(OneProbeCache());
  EXPECT_THAT(Brief(Filter(Reply(cache), "send 77 ")),
              ElementsAre("MD_DELETE D", "DM_PROBE_DELETE 5", "STATUS_GET_ALL"));
}

TEST_F(Cache, ARestartedServerGetsEverythingAgainDepthFirst) {
  cfm::hierarchy config = OneMa({2, 1});
  config.mds["D"].mas["B"] = Ma("D", "B", {3});
  config.mds["C"].mas["Z"] = Ma("C", "Z", {});
  client->UpdateConfig(config);
  client->UpdateConfigProbe(OneProbe());
  Reply({});
  host.ServerLost();
  host.ServerFound();
  const auto record = Reply({});
  EXPECT_THAT(
      Filter(record, "log 10 ReqCacheReply"),
      ElementsAre(testing::_,
                  "Hierarchy:799 Server died, will re-apply using last cached status of client",
                  "Probe:869 App and server have an existing configuration, assume that from the "
                  "server",
                  testing::_));
  EXPECT_THAT(
      Brief(Filter(record, "send 77 ")),
      ElementsAre("MD_CREATE C", "MA_CREATE C Z", "MD_CREATE D", "MA_CREATE D A",
                  "MEP_CREATE D A 1", "MEP_CREATE D A 2", "MA_CREATE D B", "MEP_CREATE D B 3",
                  "MD_UPDATE C", "MD_UPDATE D", "MA_UPDATE C Z", "MA_UPDATE D A", "MA_UPDATE D B",
                  "MEP_UPDATE D A 1", "MEP_UPDATE D A 2", "MEP_UPDATE D B 3",
                  "DM_PROBE_CREATE A D 5", "DM_SESSION_CREATE 5 1", "STATUS_GET_ALL"));
}

TEST_F(Cache, ARestartedServerGetsTheOldConfigurationAndThenTheDifference) {
  client->UpdateConfig(OneMa({1}));
  Reply({});
  host.ServerLost();
  client->UpdateConfig(OneMa({2}));
  host.ServerFound();
  EXPECT_THAT(Brief(Filter(Reply({}), "send 77 ")),
              ElementsAre("MD_CREATE D", "MA_CREATE D A", "MEP_CREATE D A 1", "MEP_DELETE D A 1",
                          "MEP_CREATE D A 2", "MD_UPDATE D", "MA_UPDATE D A", "STATUS_GET_ALL"));
}

TEST_F(Cache, RecreationAddressesEntitiesByTheNamesTheyHold) {
  cfm::hierarchy config;
  config.mds["key"].mas["assoc"].md_name = "held";
  config.mds["key"].mas["assoc"].meps[1] = Mep("m", "a", 5);
  client->UpdateConfig(config);
  Reply({});
  host.ServerFound();
  const auto sent = Brief(Filter(Reply({}), "send 77 "));
  ASSERT_GE(sent.size(), 3U);
  EXPECT_EQ(sent[0], "MD_CREATE key");
  EXPECT_EQ(sent[1], "MA_CREATE held assoc");
  EXPECT_EQ(sent[2], "MEP_CREATE m a 5");
}

TEST_F(Cache, WhenBothHoldAConfigurationTheServersCounts) {
  client->UpdateConfig(OneMa({1, 2}));
  client->UpdateConfigProbe(OneProbe());
  Reply({});
  client_server::OpCacheSync cache = OneMaCache();
  cache.MergeFrom(OneProbeCache());
  cache.mutable_sessions(0)->set_pcp(4);
  const auto record = Reply(cache);
  EXPECT_THAT(Filter(record, "log 10 ReqCacheReply"),
              ElementsAre(testing::_,
                          "Hierarchy:812 App and server have an existing configuration, assume "
                          "that from the server",
                          "Probe:869 App and server have an existing configuration, assume that "
                          "from the server",
                          testing::_));
  EXPECT_THAT(Brief(Filter(record, "send 77 ")),
              ElementsAre("MEP_CREATE D A 2", "MD_UPDATE D", "MA_UPDATE D A", "MEP_UPDATE D A 1",
                          "DM_SESSION_CREATE 5 1", "STATUS_GET_ALL"));
}

TEST_F(Cache, AnEqualProbeInTheServersCacheIsNotSentAgain) {
  client->UpdateConfigProbe(OneProbe());
  EXPECT_THAT(Brief(Filter(Reply(OneProbeCache()), "send 77 ")), ElementsAre("STATUS_GET_ALL"));
}

TEST_F(Cache, AnUnreadablePayloadCountsAsAnEmptyCache) {
  host.Take();
  host.Signal(CFM_MGR_S2C_SIG_CACHE_REPLY, "\xff\xff\xff");
  const auto record = host.Take();
  EXPECT_THAT(Filter(record, "log 10 ReqCacheReplyHierarchy:790 "), testing::SizeIs(1));
  EXPECT_THAT(Filter(record, "send 77 "), ElementsAre("STATUS_GET_ALL no payload"));
}

TEST_F(Cache, ANullPayloadCountsAsAnEmptyCache) {
  host.Take();
  host.SignalNull(CFM_MGR_S2C_SIG_CACHE_REPLY);
  EXPECT_THAT(host.Take("send 77 "), ElementsAre("STATUS_GET_ALL no payload"));
}

TEST_F(Cache, ATruncatedPayloadCountsAsFarAsItWasRead) {
  client_server::OpCacheSync cache;
  cache.add_mds()->set_md_name("D");
  cache.add_mds()->set_md_name("E");
  std::string bytes = cache.SerializeAsString();
  bytes.pop_back();
  host.Take();
  host.Signal(CFM_MGR_S2C_SIG_CACHE_REPLY, bytes);
  EXPECT_THAT(Brief(host.Take("send 77 ")), testing::Contains("MD_DELETE D"));
}

TEST_F(Cache, AfterTheReplyConfigurationIsSentAtOnce) {
  Reply({});
  EXPECT_THAT(Brief(Sent([&] { client->UpdateConfig(OneMa({})); })),
              ElementsAre("MD_CREATE D", "MA_CREATE D A"));
}

TEST_F(Cache, AnEndpointIsReadBackSoThatAnEqualOneIsNotRecreated) {
  cfm::hierarchy config = OneMa({1});
  config.mds["D"].cfg.level = 5;
  config.mds["D"].mas["A"].cfg.vids = {10, 10, 20};
  cfm::st_maintenance_endpoint_cfg& cfg = config.mds["D"].mas["A"].meps[1].cfg;
  cfg.port = 2;
  cfg.direction = cfm::MepDirection::Up;
  cfg.primary_vid = 10;
  cfg.inner_vid = 20;
  client->UpdateConfig(config);
  client_server::OpCacheSync cache = OneMaCache();
  cache.mutable_mds(0)->set_level(5 + 256);
  for (const unsigned vid : {10U, 10U + 65536U, 20U}) {
    cache.mutable_mas(0)->add_vids(vid);
  }
  auto& mep = *cache.mutable_meps(0);
  mep.set_ifindex(1002);
  mep.set_direction(2);
  mep.set_primary_vid(10 + 65536);
  mep.set_inner_vid(20 + 65536);
  EXPECT_THAT(Brief(Filter(Reply(cache), "send 77 ")),
              ElementsAre("MD_UPDATE D", "MA_UPDATE D A", "MEP_UPDATE D A 1", "STATUS_GET_ALL"));
}

TEST_F(Cache, NamesOfAnyBytesComeBackAsTheyAre) {
  const std::string name("\0\xff\xc3 \"", 5);
  cfm::hierarchy config;
  config.mds[name].mas[name] = Ma(name, name, {1});
  client->UpdateConfig(config);
  client_server::OpCacheSync cache = OneMaCache();
  cache.mutable_mds(0)->set_md_name(name);
  cache.mutable_mas(0)->set_md_name(name);
  cache.mutable_mas(0)->set_ma_name(name);
  cache.mutable_meps(0)->set_md_name(name);
  cache.mutable_meps(0)->set_ma_name(name);
  // Had any of them been read otherwise, something would be created or deleted.
  EXPECT_THAT(
      Filter(Reply(cache), "send 77 "),
      ElementsAre(testing::StartsWith("MD_UPDATE "), testing::StartsWith("MA_UPDATE "),
                  testing::StartsWith("MEP_UPDATE "), testing::StartsWith("STATUS_GET_ALL")));
}

TEST_F(Cache, AnEndpointWithoutParentsIsDeletedWithTheParentsMadeUpForIt) {
  client_server::OpCacheSync cache;
  auto& mep = *cache.add_meps();
  mep.set_md_name("D");
  mep.set_ma_name("A");
  mep.set_mep_id(1);
  cfm::hierarchy config;
  config.mds["D"];
  client->UpdateConfig(config);
  // The association made up for it holds no domain name.
  EXPECT_THAT(Filter(Reply(cache), "send 77 "),
              ElementsAre("MA_DELETE md_name:\"\" ma_name:\"A\"",
                          "MD_UPDATE md_name:\"D\" sender_id:0 mhf_creation:0",
                          "STATUS_GET_ALL no payload"));
}

TEST_F(Cache, ASessionWithoutItsProbeMakesTheDesiredProbeCountAsChanged) {
  cfm::probe config;
  config.probes[9].id = 9;
  config.probes[9].sessions[1] = {1, 2, 3, 4};
  client->UpdateConfigProbe(config);
  client_server::OpCacheSync cache = OneProbeCache();
  cache.clear_probes();
  cache.mutable_sessions(0)->set_probe_id(9);
  auto& session = *cache.mutable_sessions(0);
  session.set_count(1);
  session.set_interval(2);
  session.set_size(3);
  session.set_pcp(4 + 256);
  EXPECT_THAT(Brief(Filter(Reply(cache), "send 77 ")),
              ElementsAre("DM_PROBE_CREATE   9", "STATUS_GET_ALL"));
}

TEST_F(Cache, AProbeIdentifierKeepsItsLowSixteenBits) {
  client->UpdateConfigProbe(OneProbe());
  client_server::OpCacheSync cache = OneProbeCache();
  cache.mutable_probes(0)->set_probe_id(65541);
  EXPECT_THAT(Brief(Filter(Reply(cache), "send 77 ")), ElementsAre("STATUS_GET_ALL"));
}

}  // namespace
}  // namespace cfm_test
