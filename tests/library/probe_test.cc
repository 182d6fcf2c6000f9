// SPDX-License-Identifier: Apache-2.0
// From one set of delay-measurement probes to the next.
#include "client_fixture.h"

namespace cfm_test {
namespace {

cfm::probe_cfg Probe(std::uint16_t id,
                     const std::map<std::uint16_t, cfm::session_cfg>& sessions = {}) {
  return {id, 60, "D", "A", 1, 2, sessions};
}

class Probes : public InStepTest {
 protected:
  std::vector<std::string> SentFor(const cfm::probe& config) {
    return Sent([&] { client->UpdateConfigProbe(config); });
  }

  std::vector<std::string> Between(const cfm::probe& before, const cfm::probe& after) {
    client->UpdateConfigProbe(before);
    return Brief(SentFor(after));
  }
};

TEST_F(Probes, CreatesCarryEverySetting) {
  cfm::probe config;
  config.probes[7] = {9, 60, "domain", "assoc", 1, 65535, {{3, {10, 20, 64, 7}}}};
  EXPECT_THAT(SentFor(config),
              ElementsAre("DM_PROBE_CREATE ma_name:\"assoc\" md_name:\"domain\" probe_id:7 "
                          "interval:60 lmep_id:1 rmep_id:65535",
                          "DM_SESSION_CREATE probe_id:7 session_id:3 interval:20 count:10 size:64 "
                          "pcp:7"));
}

TEST_F(Probes, ZerosAndEmptyNamesArePresent) {
  cfm::probe config;
  config.probes[0].sessions[0];
  EXPECT_THAT(SentFor(config),
              ElementsAre("DM_PROBE_CREATE ma_name:\"\" md_name:\"\" probe_id:0 interval:0 "
                          "lmep_id:0 rmep_id:0",
                          "DM_SESSION_CREATE probe_id:0 session_id:0 interval:0 count:0 size:0 "
                          "pcp:0"));
}

TEST_F(Probes, DeletesCarryTheIdentifiersOnly) {
  cfm::probe config;
  config.probes[7] = Probe(7, {{3, {}}, {4, {}}});
  config.probes[8] = Probe(8);
  SentFor(config);
  config.probes[7].sessions.erase(3);
  config.probes.erase(8);
  EXPECT_THAT(SentFor(config), ElementsAre("DM_SESSION_DELETE probe_id:7 session_id:3",
                                           "DM_PROBE_DELETE probe_id:8"));
}

TEST_F(Probes, DeletesCarryTheKeyNotTheProbesOwnIdentifier) {
  cfm::probe config;
  config.probes[7] = Probe(70, {{3, {}}});
  config.probes[8] = Probe(80);
  SentFor(config);
  config.probes[7].sessions.clear();
  config.probes.erase(8);
  EXPECT_THAT(SentFor(config), ElementsAre("DM_SESSION_DELETE probe_id:7 session_id:3",
                                           "DM_PROBE_DELETE probe_id:8"));
}

TEST_F(Probes, TheSameSessionIdentifierUnderTwoProbesIsTwoSessions) {
  cfm::probe config;
  config.probes[1] = Probe(1, {{1, {}}});
  config.probes[2] = Probe(2, {{1, {}}});
  EXPECT_THAT(Between({}, config), ElementsAre("DM_PROBE_CREATE A D 1", "DM_SESSION_CREATE 1 1",
                                               "DM_PROBE_CREATE A D 2", "DM_SESSION_CREATE 2 1"));
}

TEST_F(Probes, TheSameConfigurationAgainSendsNothingButLogs) {
  cfm::probe config;
  config.probes[1] = Probe(1, {{1, {}}});
  EXPECT_THAT(Between(config, config), IsEmpty());
  host.Take();
  client->UpdateConfigProbe(config);
  EXPECT_EQ(host.Take().size(), 2U);
}

class ChangesTheProbe : public Probes,
                        public testing::WithParamInterface<void (*)(cfm::probe_cfg&)> {};

TEST_P(ChangesTheProbe, IsOneCreateWithoutItsSessions) {
  cfm::probe before;
  before.probes[5] = Probe(5, {{1, {}}, {2, {}}});
  cfm::probe after = before;
  GetParam()(after.probes[5]);
  client->UpdateConfigProbe(before);
  const auto sent = SentFor(after);
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_THAT(sent[0], testing::StartsWith("DM_PROBE_CREATE "));
  EXPECT_THAT(sent[0], testing::HasSubstr("probe_id:5 "));
}

INSTANTIATE_TEST_SUITE_P(
    Probes, ChangesTheProbe,
    testing::Values([](auto& probe) { probe.id = 6; }, [](auto& probe) { probe.interval = 1; },
                    [](auto& probe) { probe.ma = "B"; }, [](auto& probe) { probe.md = "E"; },
                    [](auto& probe) { probe.lmep = 9; }, [](auto& probe) { probe.rmep = 9; }));

class ChangesTheSession : public Probes,
                          public testing::WithParamInterface<void (*)(cfm::session_cfg&)> {};

TEST_P(ChangesTheSession, IsOneCreateOfThatSession) {
  cfm::probe before;
  before.probes[5] = Probe(5, {{1, {}}, {2, {}}});
  cfm::probe after = before;
  GetParam()(after.probes[5].sessions[2]);
  EXPECT_THAT(Between(before, after), ElementsAre("DM_SESSION_CREATE 5 2"));
}

INSTANTIATE_TEST_SUITE_P(Probes, ChangesTheSession,
                         testing::Values([](auto& session) { session.count = 1; },
                                         [](auto& session) { session.interval = 1; },
                                         [](auto& session) { session.size = 1; },
                                         [](auto& session) { session.pcp = 1; }));

TEST_F(Probes, ANewSessionIsOneCreate) {
  cfm::probe before;
  before.probes[5] = Probe(5, {{2, {}}});
  cfm::probe after = before;
  after.probes[5].sessions[1];
  EXPECT_THAT(Between(before, after), ElementsAre("DM_SESSION_CREATE 5 1"));
}

TEST_F(Probes, AllCreatesPrecedeAllDeletes) {
  cfm::probe before;
  before.probes[1] = Probe(1, {{1, {}}});
  before.probes[3] = Probe(3, {{1, {}}, {2, {}}});
  cfm::probe after;
  after.probes[2] = Probe(2, {{9, {}}});
  after.probes[3] = Probe(3, {{2, {}}});
  after.probes[3].interval = 1;
  after.probes[4] = Probe(4);
  EXPECT_THAT(Between(before, after),
              ElementsAre("DM_PROBE_CREATE A D 2", "DM_SESSION_CREATE 2 9", "DM_PROBE_CREATE A D 3",
                          "DM_PROBE_CREATE A D 4", "DM_PROBE_DELETE 1", "DM_SESSION_DELETE 3 1"));
}

TEST_F(Probes, AnEmptyConfigurationDeletesEveryProbeInOrder) {
  cfm::probe before;
  before.probes[9] = Probe(9, {{1, {}}});
  before.probes[65535] = Probe(65535);
  before.probes[10] = Probe(10);
  EXPECT_THAT(Between(before, {}),
              ElementsAre("DM_PROBE_DELETE 9", "DM_PROBE_DELETE 10", "DM_PROBE_DELETE 65535"));
}

TEST_F(Probes, DumpsTheConfigurationAsOneRecordBeforeItSends) {
  cfm::probe config;
  config.probes[7] = {9, 60, "domain", "assoc", 1, 2, {{3, {10, 20, 64, 65}}, {1, {}}}};
  config.probes[2] = {};
  host.Take();
  client->UpdateConfigProbe(config);
  const auto record = host.Take();
  ASSERT_GE(record.size(), 3U);
  EXPECT_EQ(
      record[0],
      "log 10 ApplyDelayMeasurementProbe:620 Applying CFM Delay Measurement Probes config...");
  EXPECT_EQ(record[1],
            "log 10 ApplyDelayMeasurementProbe:621 CFM Delay Measurement Probes\n"
            "+ Probe Id: 2, Interval: 0, MA: , MD: , LMEP: 0, RMEP: 0, Sessions: \n"
            "+ Probe Id: 7, Interval: 60, MA: assoc, MD: domain, LMEP: 1, RMEP: 2, Sessions: \n"
            "  + Session Id: 1, Count: 0, Interval: 0, Size: 0, Pcp: 0\n"
            "  + Session Id: 3, Count: 10, Interval: 20, Size: 64, Pcp: 65\n");
  EXPECT_THAT(record[2], testing::StartsWith("send "));
}

TEST_F(Probes, OfSeveralConfigurationsHandedInMeanwhileTheLastCounts) {
  host.ServerLost();
  cfm::probe config;
  config.probes[1] = Probe(1);
  client->UpdateConfigProbe(config);
  client->UpdateConfigProbe({});
  config.probes.clear();
  config.probes[2] = Probe(2);
  client->UpdateConfigProbe(config);
  host.ServerFound();
  host.Take();
  host.Signal(ServerSignals()[0], "");
  EXPECT_THAT(Brief(host.Take("send 77 ")), ElementsAre("DM_PROBE_CREATE A D 2", "STATUS_GET_ALL"));
}

}  // namespace
}  // namespace cfm_test
