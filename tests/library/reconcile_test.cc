// SPDX-License-Identifier: Apache-2.0
// From one configuration of domains, associations and endpoints to the next.
#include <locale>

#include "client_fixture.h"

namespace cfm_test {
namespace {

class Reconcile : public InStepTest {
 protected:
  // The requests that take the server from `before` to `after`.
  std::vector<std::string> Between(const cfm::hierarchy& before, const cfm::hierarchy& after) {
    client->UpdateConfig(before);
    return Brief(Sent([&] { client->UpdateConfig(after); }));
  }

  std::vector<std::string> Log(const cfm::hierarchy& config) {
    host.Take();
    client->UpdateConfig(config);
    return host.Take("log ");
  }
};

TEST_F(Reconcile, AnEmptyConfigurationSendsNothing) {
  EXPECT_THAT(Sent([&] { client->UpdateConfig({}); }), IsEmpty());
}

TEST_F(Reconcile, CreatesTopDownAndEndpointsInOrder) {
  EXPECT_THAT(Between({}, OneMa({2, 1})),
              ElementsAre("MD_CREATE D", "MA_CREATE D A", "MEP_CREATE D A 1", "MEP_CREATE D A 2"));
}

TEST_F(Reconcile, CreatesAllDomainsThenAllAssociationsThenAllEndpoints) {
  cfm::hierarchy config;
  config.mds["E"].mas["A"] = Ma("E", "A", {1});
  config.mds["D"].mas["B"] = Ma("D", "B", {3, 2});
  config.mds["D"].mas["A"] = Ma("D", "A", {9});
  EXPECT_THAT(
      Between({}, config),
      ElementsAre("MD_CREATE D", "MD_CREATE E", "MA_CREATE D A", "MA_CREATE D B", "MA_CREATE E A",
                  "MEP_CREATE D A 9", "MEP_CREATE D B 2", "MEP_CREATE D B 3", "MEP_CREATE E A 1"));
}

TEST_F(Reconcile, OrdersNamesByTheirBytes) {
  cfm::hierarchy config;
  for (const char* const name : {"b", "B", "a", "\xc3\xa4", "", "a b", "a-"}) {
    config.mds[name];
  }
  client->UpdateConfig({});
  const auto sent = Sent([&] { client->UpdateConfig(config); });
  std::vector<std::string> names;
  for (const std::string& entry : sent) {
    names.push_back(entry.substr(18, entry.find(" format") - 18));
  }
  EXPECT_THAT(
      names, ElementsAre("\"\"", "\"B\"", "\"a\"", "\"a b\"", "\"a-\"", "\"b\"", "\"\\xc3\\xa4\""));
}

TEST_F(Reconcile, TheSameConfigurationAgainSendsOneUpdateForEverything) {
  EXPECT_THAT(Between(OneMa({1, 2}), OneMa({1, 2})),
              ElementsAre("MD_UPDATE D", "MA_UPDATE D A", "MEP_UPDATE D A 1", "MEP_UPDATE D A 2"));
}

TEST_F(Reconcile, AChangedLevelRecreatesAllThatSurvives) {
  cfm::hierarchy after = OneMa({2, 3});
  after.mds["D"].cfg.level = 4;
  EXPECT_THAT(Between(OneMa({1, 2}), after),
              ElementsAre("MEP_DELETE D A 1", "MEP_DELETE D A 2", "MA_DELETE D A", "MD_DELETE D",
                          "MD_CREATE D", "MA_CREATE D A", "MEP_CREATE D A 2", "MEP_CREATE D A 3"));
}

TEST_F(Reconcile, AChangedLevelNamesOnlyAssociationsThatSurviveWithTheirEndpoints) {
  cfm::hierarchy before = OneMa({1});
  before.mds["D"].mas["B"] = Ma("D", "B", {5});
  cfm::hierarchy after = OneMa({1});
  after.mds["D"].cfg.level = 4;
  after.mds["D"].mas["C"] = Ma("D", "C", {7});
  EXPECT_THAT(Between(before, after),
              ElementsAre("MEP_DELETE D A 1", "MA_DELETE D A", "MA_DELETE D B", "MD_DELETE D",
                          "MD_CREATE D", "MA_CREATE D A", "MA_CREATE D C", "MEP_CREATE D A 1",
                          "MEP_CREATE D C 7"));
}

TEST_F(Reconcile, ARemovedDomainGetsASingleDelete) {
  EXPECT_THAT(Between(OneMa({1, 2}), {}), ElementsAre("MD_DELETE D"));
}

TEST_F(Reconcile, ARemovedAssociationGetsASingleDelete) {
  cfm::hierarchy after;
  after.mds["D"];
  EXPECT_THAT(Between(OneMa({1, 2}), after), ElementsAre("MA_DELETE D A", "MD_UPDATE D"));
}

TEST_F(Reconcile, ReorderedVidsRecreateTheAssociation) {
  cfm::hierarchy before = OneMa({1});
  before.mds["D"].mas["A"].cfg.vids = {10, 20};
  cfm::hierarchy after = OneMa({1});
  after.mds["D"].mas["A"].cfg.vids = {20, 10};
  EXPECT_THAT(Between(before, after),
              ElementsAre("MEP_DELETE D A 1", "MA_DELETE D A", "MA_CREATE D A", "MEP_CREATE D A 1",
                          "MD_UPDATE D"));
}

TEST_F(Reconcile, ADuplicatedVidRecreatesTheAssociation) {
  cfm::hierarchy before = OneMa({});
  before.mds["D"].mas["A"].cfg.vids = {10};
  cfm::hierarchy after = OneMa({});
  after.mds["D"].mas["A"].cfg.vids = {10, 10};
  EXPECT_THAT(Between(before, after), ElementsAre("MA_DELETE D A", "MA_CREATE D A", "MD_UPDATE D"));
}

TEST_F(Reconcile, RecreatedAssociationsComeInOrderWithNewOnes) {
  cfm::hierarchy before = OneMa({1});
  before.mds["D"].mas["C"] = Ma("D", "C", {3});
  before.mds["E"].mas["A"] = Ma("E", "A", {5});
  cfm::hierarchy after = before;
  after.mds["D"].mas["C"].cfg.vids = {9};
  after.mds["E"].mas["A"].cfg.vids = {9};
  after.mds["D"].mas["B"] = Ma("D", "B", {2});
  after.mds["D"].mas["A"].meps[4] = Mep("D", "A", 4);
  EXPECT_THAT(
      Between(before, after),
      ElementsAre("MEP_DELETE D C 3", "MEP_DELETE E A 5", "MA_DELETE D C", "MA_DELETE E A",
                  "MA_CREATE D B", "MA_CREATE D C", "MA_CREATE E A",
                  // re-created endpoints first, then the new ones
                  "MEP_CREATE D C 3", "MEP_CREATE E A 5", "MEP_CREATE D A 4", "MEP_CREATE D B 2",
                  "MD_UPDATE D", "MD_UPDATE E", "MA_UPDATE D A", "MEP_UPDATE D A 1"));
}

TEST_F(Reconcile, RecreatedDomainsComeInOrderWithNewOnes) {
  cfm::hierarchy before;
  before.mds["D"];
  before.mds["F"];
  cfm::hierarchy after = before;
  after.mds["F"].cfg.level = 1;
  after.mds["D"].cfg.level = 1;
  after.mds["E"];
  EXPECT_THAT(Between(before, after), ElementsAre("MD_DELETE D", "MD_DELETE F", "MD_CREATE D",
                                                  "MD_CREATE E", "MD_CREATE F"));
}

TEST_F(Reconcile, AChangedPriorityIsOneUpdate) {
  cfm::hierarchy after = OneMa({1});
  after.mds["D"].mas["A"].meps[1].cfg.ccm_priority = 7;
  EXPECT_THAT(Between(OneMa({1}), after),
              ElementsAre("MD_UPDATE D", "MA_UPDATE D A", "MEP_UPDATE D A 1"));
}

class RecreatesTheEndpoint
    : public Reconcile,
      public testing::WithParamInterface<void (*)(cfm::st_maintenance_endpoint_cfg&)> {};

TEST_P(RecreatesTheEndpoint, WhenItsPlaceChanges) {
  cfm::hierarchy after = OneMa({1, 2});
  GetParam()(after.mds["D"].mas["A"].meps[1].cfg);
  EXPECT_THAT(Between(OneMa({1, 2}), after),
              ElementsAre("MEP_DELETE D A 1", "MEP_CREATE D A 1", "MD_UPDATE D", "MA_UPDATE D A",
                          "MEP_UPDATE D A 2"));
}

INSTANTIATE_TEST_SUITE_P(Reconcile, RecreatesTheEndpoint,
                         testing::Values([](auto& cfg) { cfg.port = 2; },
                                         [](auto& cfg) { cfg.direction = cfm::MepDirection::Up; },
                                         [](auto& cfg) { cfg.primary_vid = 1; },
                                         [](auto& cfg) { cfg.inner_vid = 1; }));

class UpdatesTheEndpoint
    : public Reconcile,
      public testing::WithParamInterface<void (*)(cfm::st_maintenance_endpoint_cfg&)> {};

TEST_P(UpdatesTheEndpoint, WhenAnythingElseChanges) {
  cfm::hierarchy after = OneMa({1});
  GetParam()(after.mds["D"].mas["A"].meps[1].cfg);
  EXPECT_THAT(Between(OneMa({1}), after),
              ElementsAre("MD_UPDATE D", "MA_UPDATE D A", testing::StartsWith("MEP_UPDATE D A")));
}

INSTANTIATE_TEST_SUITE_P(
    Reconcile, UpdatesTheEndpoint,
    testing::Values([](auto& cfg) { cfg.mep_id = 99; }, [](auto& cfg) { cfg.admin_state = true; },
                    [](auto& cfg) { cfg.ccm_enabled = true; },
                    [](auto& cfg) { cfg.ccm_priority = 1; },
                    [](auto& cfg) { cfg.lowest_prio_defect = cfm::Defects::Xcon; },
                    [](auto& cfg) { cfg.fng_alarm_time = 1; },
                    [](auto& cfg) { cfg.fng_reset_time = 1; },
                    [](auto& cfg) { cfg.fault_action = cfm::FaultAction::Block; },
                    [](auto& cfg) { cfg.aux_flag = true; }));

TEST_F(Reconcile, AChangedFormatAloneIsNeverSent) {
  cfm::hierarchy after = OneMa({});
  after.mds["D"].cfg.format = cfm::MdNameFormat::DnsLike;
  after.mds["D"].mas["A"].cfg.format = cfm::MaNameFormat::Uint16;
  client->UpdateConfig(OneMa({}));
  const auto sent = Sent([&] { client->UpdateConfig(after); });
  EXPECT_THAT(Brief(sent), ElementsAre("MD_UPDATE D", "MA_UPDATE D A"));
  EXPECT_THAT(sent, testing::Each(testing::Not(testing::HasSubstr("format"))));
}

TEST_F(Reconcile, AddressesEntitiesByTheNamesTheyHold) {
  cfm::hierarchy config;
  config.mds["key"].mas["assoc"].md_name = "held";
  config.mds["key"].mas["assoc"].meps[1] = Mep("m", "a", 5);
  EXPECT_THAT(Between({}, config),
              ElementsAre("MD_CREATE key", "MA_CREATE held assoc", "MEP_CREATE m a 5"));
  // Endpoint 1 is found by step through the map and updated, but not under the name it holds,
  // so it is created too.
  EXPECT_THAT(
      Brief(Sent([&] { client->UpdateConfig(config); })),
      ElementsAre("MEP_CREATE m a 5", "MD_UPDATE key", "MA_UPDATE held assoc", "MEP_UPDATE m a 5"));
}

// A configuration whose entities hold other names and identifiers than their keys.
cfm::hierarchy Held(const std::string& md_name, const std::string& ma_name, std::uint16_t mep_id) {
  cfm::hierarchy config;
  config.mds["D"].mas["A"].md_name = md_name;
  config.mds["D"].mas["A"].meps[1] = Mep(md_name, ma_name, mep_id);
  return config;
}

TEST_F(Reconcile, RecreationDeletesUnderTheOldNamesAndCreatesUnderTheNew) {
  cfm::hierarchy after = Held("new", "to", 22);
  after.mds["D"].mas["A"].cfg.vids = {9};
  EXPECT_THAT(Between(Held("old", "from", 11), after),
              ElementsAre("MEP_DELETE old from 11", "MA_DELETE old A", "MA_CREATE new A",
                          "MEP_CREATE new to 22",
                          // not found under the association that it names now
                          "MEP_CREATE new to 22", "MD_UPDATE D"));
}

TEST_F(Reconcile, ARecreatedEndpointIsDeletedUnderItsOldName) {
  cfm::hierarchy after = Held("new", "A", 22);
  after.mds["D"].mas["A"].meps[1].cfg.port = 2;
  EXPECT_THAT(
      Between(Held("old", "A", 11), after),
      ElementsAre("MEP_DELETE old A 11", "MEP_CREATE new A 22", "MD_UPDATE D", "MA_UPDATE new A"));
}

TEST_F(Reconcile, RemovedEntitiesAreDeletedUnderTheNamesTheyHeld) {
  cfm::hierarchy after = Held("new", "A", 22);
  after.mds["D"].mas["A"].meps.clear();
  EXPECT_EQ(Between(Held("old", "A", 11), after).front(), "MEP_DELETE old A 11");
  after.mds["D"].mas.clear();
  EXPECT_EQ(Between(Held("old", "A", 11), after).front(), "MA_DELETE old A");
}

TEST_F(Reconcile, OrdersAssociationsByTheirKeysNotByTheNamesTheyHold) {
  cfm::hierarchy config;
  config.mds["D"].mas["A"].md_name = "z";
  config.mds["E"].mas["A"].md_name = "a";
  EXPECT_THAT(Between({}, config),
              ElementsAre("MD_CREATE D", "MD_CREATE E", "MA_CREATE z A", "MA_CREATE a A"));
  EXPECT_THAT(Brief(Sent([&] { client->UpdateConfig(config); })),
              ElementsAre("MD_UPDATE D", "MD_UPDATE E", "MA_UPDATE z A", "MA_UPDATE a A"));
  cfm::hierarchy after = config;
  after.mds["D"].mas.clear();
  after.mds["E"].mas.clear();
  EXPECT_THAT(Brief(Sent([&] { client->UpdateConfig(after); })),
              ElementsAre("MA_DELETE z A", "MA_DELETE a A", "MD_UPDATE D", "MD_UPDATE E"));
}

TEST_F(Reconcile, AnEndpointIsLookedUpUnderTheAssociationItNames) {
  cfm::hierarchy before = OneMa({1});
  before.mds["D"].mas["B"] = Ma("D", "B", {2});
  cfm::hierarchy after = before;
  after.mds["D"].mas["A"].meps[1].ma_name = "B";
  EXPECT_THAT(Between(before, after),
              ElementsAre("MEP_CREATE D B 1", "MD_UPDATE D", "MA_UPDATE D A", "MA_UPDATE D B",
                          "MEP_UPDATE D B 1", "MEP_UPDATE D B 2"));
}

TEST_F(Reconcile, AnEndpointFoundUnderTheAssociationItNamesIsNotCreated) {
  cfm::hierarchy before = OneMa({});
  before.mds["D"].mas["B"] = Ma("D", "B", {2});
  cfm::hierarchy after = before;
  after.mds["D"].mas["A"].meps[2] = Mep("D", "B", 2);
  EXPECT_THAT(Between(before, after),
              ElementsAre("MD_UPDATE D", "MA_UPDATE D A", "MA_UPDATE D B", "MEP_UPDATE D B 2"));
}

TEST_F(Reconcile, AnAssociationThatAnEarlierEndpointNamesIsTakenForOld) {
  cfm::hierarchy after = OneMa({1});
  after.mds["D"].mas["A"].meps[1].ma_name = "B";
  after.mds["D"].mas["B"] = Ma("D", "B", {2});
  EXPECT_THAT(Between(OneMa({1}), after),
              ElementsAre("MEP_CREATE D B 1", "MEP_CREATE D B 2", "MD_UPDATE D", "MA_UPDATE D A",
                          "MEP_UPDATE D B 1"));
  // Only for that one run: B is part of what is applied now.
  EXPECT_THAT(Brief(Sent([&] { client->UpdateConfig(after); })),
              ElementsAre("MEP_CREATE D B 1", "MD_UPDATE D", "MA_UPDATE D A", "MA_UPDATE D B",
                          "MEP_UPDATE D B 1", "MEP_UPDATE D B 2"));
}

TEST_F(Reconcile, AnEndpointOfAnAssociationTakenForOldIsLookedUpWhereItSays) {
  cfm::hierarchy after = OneMa({1, 5});
  after.mds["D"].mas["A"].meps[1].ma_name = "B";
  after.mds["D"].mas["B"] = Ma("D", "B", {2, 5});
  after.mds["D"].mas["B"].meps[5].ma_name = "A";
  EXPECT_THAT(Between(OneMa({1, 5}), after),
              ElementsAre("MEP_CREATE D B 1", "MEP_CREATE D B 2", "MD_UPDATE D", "MA_UPDATE D A",
                          "MEP_UPDATE D B 1", "MEP_UPDATE D A 5"));
}

TEST_F(Reconcile, AnAssociationThatALaterEndpointNamesIsStillNew) {
  cfm::hierarchy before;
  before.mds["D"].mas["B"] = Ma("D", "B", {1});
  cfm::hierarchy after = before;
  after.mds["D"].mas["B"].meps[1].ma_name = "A";
  after.mds["D"].mas["A"] = Ma("D", "A", {2});
  EXPECT_THAT(Between(before, after),
              ElementsAre("MA_CREATE D A", "MEP_CREATE D A 2", "MEP_CREATE D A 1", "MD_UPDATE D",
                          "MA_UPDATE D B", "MEP_UPDATE D A 1"));
}

TEST_F(Reconcile, ANameHeldInAnotherDomainDoesNotMakeAnAssociationOld) {
  cfm::hierarchy before = OneMa({1});
  before.mds["E"];
  cfm::hierarchy after = before;
  after.mds["D"].mas["A"].meps[1].ma_name = "B";
  after.mds["E"].mas["B"] = Ma("E", "B", {2});
  EXPECT_THAT(Between(before, after),
              ElementsAre("MA_CREATE E B", "MEP_CREATE D B 1", "MEP_CREATE E B 2", "MD_UPDATE D",
                          "MD_UPDATE E", "MA_UPDATE D A", "MEP_UPDATE D B 1"));
}

TEST_F(Reconcile, ANewAssociationsEndpointsAreCreatedWhateverTheyName) {
  cfm::hierarchy after = OneMa({1});
  after.mds["D"].mas["B"] = Ma("D", "B", {1});
  after.mds["D"].mas["B"].meps[1].ma_name = "A";
  EXPECT_THAT(Between(OneMa({1}), after),
              ElementsAre("MA_CREATE D B", "MEP_CREATE D A 1", "MD_UPDATE D", "MA_UPDATE D A",
                          "MEP_UPDATE D A 1"));
}

TEST_F(Reconcile, DumpsTheConfigurationAsOneRecord) {
  cfm::hierarchy config;
  config.mds["D"].cfg = {cfm::MdNameFormat::CharString, 200, cfm::SenderIdTlvContent::Chassis,
                         cfm::MhfCreationMode::Default};
  cfm::hierarchy_ma& ma = config.mds["D"].mas["A"];
  ma.md_name = "held D";
  ma.cfg.format = cfm::MaNameFormat::CharString;
  ma.cfg.vids = {20, 10};
  ma.cfg.ccm_interval = cfm::CcmInterval::Interval1s;
  ma.cfg.mep_ids = {3, 1};
  ma.cfg.sender_id = cfm::SenderIdTlvContent::Defer;
  ma.cfg.mhf_creation = cfm::MhfCreationMode::Defer;
  ma.cfg.ais.enabled = true;
  cfm::hierarchy_mep& mep = ma.meps[1];
  mep.md_name = "mD";
  mep.ma_name = "mA";
  mep.cfg = {1,    cfm::MepDirection::Down, 2,   100, 0, true, false, 65, cfm::Defects::Xcon, 250,
             1000, cfm::FaultAction::Block, true};
  config.mds["D"].mas["B"].md_name = "D";
  config.mds["E"];
  EXPECT_THAT(
      Log(config),
      ElementsAre(
          "10 Apply:340 Applying CFM config...",
          "10 Apply:341 CFM Hierarchy\n"
          "+ MD Id: D, Format: 4, Level: 200, Sender Id: 2, Mhf Creation: 2\n"
          "  + MA Id: A, MD Name: held D, Format: 2, VID List: { 20 10 }, CCM Interval: 4, "
          "MEP Id List : { 1 3 }, Sender Id: 5, Mhf Creation: 4\n"
          "    + MEP Id: 1, MD Name: mD, MA Name: mA, Id: 1, Direction: 1, Port: eth2, "
          "Primary VID: 100, Inner VID: 0, Admin State: 1, TX CCM Enabled: 0, CCM Priority: 65, "
          "LowestPrioDefectAllowed: 5, FNG Alarm Time: 250, FNG Reset Time: 1000, Action: 1\n"
          "  + MA Id: B, MD Name: D, Format: 0, VID List: { }, CCM Interval: 0, "
          "MEP Id List : { }, Sender Id: 0, Mhf Creation: 0\n"
          "+ MD Id: E, Format: 0, Level: 0, Sender Id: 0, Mhf Creation: 0\n"));
}

TEST_F(Reconcile, LogsBeforeItSends) {
  host.Take();
  client->UpdateConfig(OneMa({}));
  const auto record = host.Take();
  ASSERT_EQ(record.size(), 4U);
  EXPECT_THAT(record[0], testing::StartsWith("log 10 Apply:340 "));
  EXPECT_THAT(record[1], testing::StartsWith("log 10 Apply:341 "));
  EXPECT_THAT(record[2], testing::StartsWith("send "));
}

TEST_F(Reconcile, DumpsTheMapsKeyBesideTheEndpointsOwnIdentifier) {
  cfm::hierarchy config = OneMa({5});
  config.mds["D"].mas["A"].meps[5].cfg.mep_id = 6;
  EXPECT_THAT(Log(config)[1], testing::HasSubstr("+ MEP Id: 5, MD Name: D, MA Name: A, Id: 6,"));
}

TEST_F(Reconcile, DumpsUnknownPortsWithoutANameAndLongNamesUpToTheBuffer) {
  cfm::hierarchy config = OneMa({1});
  config.mds["D"].mas["A"].meps[1].cfg.port = 99;
  EXPECT_THAT(Log(config)[1], testing::HasSubstr("Port: , Primary"));
  host.interfaces[99] = std::string(100, 'x');
  EXPECT_THAT(Log(config)[1], testing::HasSubstr("Port: " + std::string(64, 'x') + ", Primary"));
}

TEST_F(Reconcile, DumpsPlainNumbersWhateverTheLocale) {
  struct Grouping : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale(), new Grouping));
  cfm::hierarchy config = OneMa({12345});
  const auto log = Log(config);
  std::locale::global(before);
  EXPECT_THAT(log[1], testing::HasSubstr("+ MEP Id: 12345,"));
}

}  // namespace
}  // namespace cfm_test
