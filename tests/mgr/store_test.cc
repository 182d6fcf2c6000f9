// SPDX-License-Identifier: Apache-2.0
#include "store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "convert.h"
#include "messages.h"
#include "render.h"

namespace cfm_mgr_test {
namespace {

using cfm_mgr::Outcome;
using cfm_mgr::SizeOf;
using cfm_mgr::Store;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/** A store with D1/A1 (MEP list 1 2 3; MEPs 1 and 2), D1/A2, D2 and probe 1 with two sessions. */
class StoreTest : public testing::Test {
 protected:
  StoreTest() {
    Done(CreateMd("D1"));
    Done(CreateMd("D2"));
    Done(CreateMa("D1", "A1", {1, 2, 3}));
    Done(CreateMa("D1", "A2"));
    Done(CreateMep("D1", "A1", 1));
    Done(CreateMep("D1", "A1", 2));
    Done(CreateProbe(1));
    Done(CreateSession(1, 1));
    Done(CreateSession(1, 2));
  }

  /** Applies a request that must be accepted. */
  template <class Message>
  Outcome Done(const Message& message) {
    Outcome outcome = store_.Apply(message);
    EXPECT_FALSE(outcome.refused) << outcome.subject << ": " << outcome.text;
    return outcome;
  }

  /** Applies a request that must be refused without a trace; gives the reason. */
  template <class Message>
  std::string ReasonAgainst(const Message& message) {
    const std::string before = Text();
    const Outcome outcome = store_.Apply(message);
    EXPECT_TRUE(outcome.refused) << outcome.subject << ": " << outcome.text;
    EXPECT_FALSE(outcome.changed);
    EXPECT_THAT(outcome.removed, IsEmpty());
    EXPECT_EQ(Text(), before);
    return outcome.text;
  }

  std::string Text() const { return cfm_mgr::Render(store_.tree()); }
  const cfm_mgr::Domain& Md(const std::string& md) const { return store_.tree().domains.at(md); }
  const cfm_mgr::Association& Ma(const std::string& ma) const {
    return Md("D1").associations.at(ma);
  }
  const cfm_mgr::Mep& MepOf(std::uint32_t id) const { return Ma("A1").meps.at(id); }

  Store store_;
};

TEST_F(StoreTest, TellsWhomARequestNamesAndWhatItDid) {
  const Outcome outcome = Done(CreateMep("D1", "A1", 3));
  EXPECT_EQ(outcome.subject, R"(md "D1" ma "A1" mep 3)");
  EXPECT_EQ(outcome.text, "created");
  EXPECT_TRUE(outcome.changed);
}

TEST_F(StoreTest, CreatesADomainWithItsSettings) {
  auto request = CreateMd("D3");
  request.set_format(2);
  request.set_level(7);
  request.set_sender_id(4);
  request.set_mhf_creation(3);
  Done(request);
  const auto& settings = Md("D3").settings;
  EXPECT_EQ(settings.format, 2);
  EXPECT_EQ(settings.level, 7U);
  EXPECT_EQ(settings.sender_id, 4);
  EXPECT_EQ(settings.mhf_creation, 3);
}

TEST_F(StoreTest, ACreateOfADomainThereReplacesItsSettingsAndKeepsWhatItHolds) {
  auto request = CreateMd("D1");
  request.set_level(5);
  const Outcome outcome = Done(request);
  EXPECT_EQ(outcome.text, "replaced: level 3 -> 5");
  EXPECT_EQ(Md("D1").settings.level, 5U);
  EXPECT_THAT(Md("D1").associations, SizeIs(2));
  EXPECT_THAT(Ma("A1").meps, SizeIs(2));
}

TEST_F(StoreTest, ACreateThatChangesNothingSaysSo) {
  const Outcome outcome = Done(CreateMd("D1"));
  EXPECT_EQ(outcome.text, "replaced: no change");
  EXPECT_FALSE(outcome.changed);
}

TEST_F(StoreTest, UpdatesADomainsSenderIdAndMhfCreationOnly) {
  auto request = UpdateMd("D1");
  request.set_sender_id(2);
  request.set_mhf_creation(3);
  const Outcome outcome = Done(request);
  EXPECT_EQ(outcome.text,
            "updated: sender id 1 (none) -> 2 (chassis); MHF creation 1 (none) -> 3 (explicit)");
  EXPECT_EQ(Md("D1").settings.level, 3U);
  EXPECT_EQ(Md("D1").settings.format, 4);
  EXPECT_EQ(Done(UpdateMd("D2")).text, "updated: no change");
}

TEST_F(StoreTest, DeletingADomainRemovesItsAssociationsAndEndpoints) {
  const Outcome outcome = Done(DeleteMd("D1"));
  EXPECT_EQ(outcome.text, "removed with 2 associations and 2 endpoints");
  ASSERT_THAT(outcome.removed, SizeIs(2));
  EXPECT_EQ(outcome.removed[0].ma.ma_name, "A1");
  EXPECT_EQ(outcome.removed[0].mep_id, 1U);
  EXPECT_EQ(outcome.removed[1].mep_id, 2U);
  const auto size = SizeOf(store_.tree());
  EXPECT_EQ(size.domains, 1U);
  EXPECT_EQ(size.associations, 0U);
  EXPECT_EQ(size.meps, 0U);
  EXPECT_EQ(size.probes, 1U) << "a probe stands on its own";
}

TEST_F(StoreTest, CreatesAnAssociationWithItsSettings) {
  auto request = CreateMa("D1", "A3", {5, 3, 5});
  request.add_vids(100);
  request.add_vids(20);
  SetAis(*request.mutable_ais());
  Done(request);
  const auto& settings = Ma("A3").settings;
  EXPECT_THAT(settings.vids, ElementsAre(100, 100, 20)) << "order and duplicates are kept";
  EXPECT_THAT(settings.mep_ids, ElementsAre(3, 5));
  EXPECT_TRUE(settings.ais.enabled);
  EXPECT_EQ(settings.ais.word_b, 70000U);
  EXPECT_THAT(settings.ais.id_set, ElementsAre(7, 4000));
}

TEST_F(StoreTest, ACreateOfAnAssociationThereReplacesItsSettingsAndKeepsItsEndpoints) {
  auto request = CreateMa("D1", "A1", {1, 2, 3});
  request.set_vids(0, 200);
  EXPECT_EQ(Done(request).text, "replaced: VIDs 100 -> 200");
  EXPECT_THAT(Ma("A1").meps, SizeIs(2));
}

TEST_F(StoreTest, UpdatesAnAssociationButNotItsFormatAndVids) {
  auto request = UpdateMa("D1", "A1", {1, 2, 4});
  request.set_ccm_interval(5);
  SetAis(*request.mutable_ais());
  const Outcome outcome = Done(request);
  EXPECT_EQ(outcome.text,
            "updated: CCM interval 4 (1 s) -> 5 (10 s); MEP ids 1 2 3 -> 1 2 4; "
            "AIS off, flag D no -> on, octet A 5, word B 70000, octet C 255, ids 7 4000, flag D "
            "yes");
  EXPECT_THAT(Ma("A1").settings.vids, ElementsAre(100));
  EXPECT_EQ(Ma("A1").settings.format, 2);
  EXPECT_THAT(Ma("A1").meps, SizeIs(2));
}

TEST_F(StoreTest, AisThatIsOffHasNoValues) {
  auto request = CreateMa("D1", "A3");
  SetAis(*request.mutable_ais());
  request.mutable_ais()->set_enabled(false);
  Done(request);
  const auto& ais = Ma("A3").settings.ais;
  EXPECT_EQ(ais.octet_a, 0U);
  EXPECT_THAT(ais.id_set, IsEmpty());
  EXPECT_TRUE(ais.flag_d);
}

TEST_F(StoreTest, DeletingAnAssociationRemovesItsEndpoints) {
  EXPECT_EQ(Done(DeleteMa("D1", "A1")).text, "removed with 2 endpoints");
  EXPECT_EQ(SizeOf(store_.tree()).meps, 0U);
  EXPECT_THAT(Md("D1").associations, SizeIs(1));
}

TEST_F(StoreTest, CreatesAnEndpointWithItsSettings) {
  auto request = CreateMep("D1", "A1", 3);
  request.set_direction(2);
  request.set_ifindex(4000000000U);
  request.set_inner_vid(4094);
  request.set_fault_action(2);
  request.set_aux_flag(true);
  Done(request);
  EXPECT_EQ(MepOf(3).direction, 2);
  EXPECT_EQ(MepOf(3).ifindex, 4000000000U);
  EXPECT_EQ(MepOf(3).inner_vid, 4094U);
  EXPECT_EQ(MepOf(3).fault_action, 2);
  EXPECT_TRUE(MepOf(3).aux_flag);
}

TEST_F(StoreTest, AnEndpointMayComeBeforeTheListThatNamesIt) {
  EXPECT_EQ(Done(CreateMep("D1", "A1", 9)).text, "created, not in the association's MEP list");
  Done(UpdateMa("D1", "A1", {1, 2, 3, 9}));
  EXPECT_EQ(Done(CreateMep("D1", "A1", 9)).text, "replaced: no change");
}

TEST_F(StoreTest, ACreateOfAnEndpointThereReplacesItsSettings) {
  auto request = CreateMep("D1", "A1", 1);
  request.set_direction(2);
  EXPECT_EQ(Done(request).text, "replaced: direction 1 (down) -> 2 (up)");
  EXPECT_EQ(MepOf(1).direction, 2);
}

TEST_F(StoreTest, UpdatesAnEndpointButNotItsDirectionAndInterface) {
  auto request = UpdateMep("D1", "A1", 1);
  request.set_ccm_priority(3);
  request.set_admin_state(false);
  EXPECT_EQ(Done(request).text, "updated: active yes -> no; CCM priority 7 -> 3");
  EXPECT_EQ(MepOf(1).direction, 1);
  EXPECT_EQ(MepOf(1).ifindex, 7U);
  EXPECT_EQ(MepOf(2).ccm_priority, 7U) << "the other endpoint is another";
}

TEST_F(StoreTest, DeletesOneEndpoint) {
  const Outcome outcome = Done(DeleteMep("D1", "A1", 1));
  EXPECT_EQ(outcome.text, "removed");
  ASSERT_THAT(outcome.removed, SizeIs(1));
  EXPECT_EQ(outcome.removed[0].mep_id, 1U);
  EXPECT_THAT(Ma("A1").meps, SizeIs(1));
}

TEST_F(StoreTest, ACreateOfAProbeThereReplacesItsFieldsAndKeepsItsSessions) {
  auto request = CreateProbe(1);
  request.set_ma_name("A2");
  request.set_rmep_id(3);
  EXPECT_EQ(Done(request).text, R"(replaced: ma "A1" -> "A2"; remote mep 2 -> 3)");
  EXPECT_THAT(store_.tree().probes.at(1).sessions, SizeIs(2));
}

TEST_F(StoreTest, DeletingAProbeRemovesItsSessions) {
  EXPECT_EQ(Done(DeleteProbe(1)).text, "removed with 2 sessions");
  Done(CreateProbe(1));
  EXPECT_THAT(store_.tree().probes.at(1).sessions, IsEmpty());
}

TEST_F(StoreTest, ACreateOfASessionThereReplacesIt) {
  auto request = CreateSession(1, 2);
  request.set_pcp(0);
  EXPECT_EQ(Done(request).text, "replaced: pcp 5 -> 0");
  EXPECT_THAT(store_.tree().probes.at(1).sessions, SizeIs(2));
}

TEST_F(StoreTest, SessionsOfTwoProbesMayShareAnIdentifier) {
  Done(CreateProbe(2));
  Done(CreateSession(2, 1));
  Done(DeleteSession(1, 1));
  EXPECT_EQ(store_.tree().probes.at(1).sessions.count(1), 0U);
  EXPECT_EQ(store_.tree().probes.at(2).sessions.count(1), 1U);
}

TEST_F(StoreTest, RefusesWhatNamesAnEntityThatIsNotThere) {
  EXPECT_EQ(ReasonAgainst(UpdateMd("x")), R"(no domain "x")");
  EXPECT_EQ(ReasonAgainst(DeleteMd("x")), R"(no domain "x")");
  EXPECT_EQ(ReasonAgainst(CreateMa("x", "A1")), R"(no domain "x")");
  EXPECT_EQ(ReasonAgainst(UpdateMa("D2", "A1")), R"(no association "A1" in domain "D2")");
  EXPECT_EQ(ReasonAgainst(DeleteMa("D1", "x")), R"(no association "x" in domain "D1")");
  EXPECT_EQ(ReasonAgainst(CreateMep("x", "A1", 1)), R"(no domain "x")");
  EXPECT_EQ(ReasonAgainst(CreateMep("D1", "x", 1)), R"(no association "x" in domain "D1")");
  EXPECT_EQ(ReasonAgainst(UpdateMep("D1", "A1", 3)),
            R"(no endpoint 3 in association "A1" of domain "D1")");
  EXPECT_EQ(ReasonAgainst(DeleteMep("D1", "A1", 3)),
            R"(no endpoint 3 in association "A1" of domain "D1")");
  EXPECT_EQ(ReasonAgainst(DeleteProbe(9)), "no probe 9");
  EXPECT_EQ(ReasonAgainst(CreateSession(9, 1)), "no probe 9");
  EXPECT_EQ(ReasonAgainst(DeleteSession(9, 1)), "no probe 9");
  EXPECT_EQ(ReasonAgainst(DeleteSession(1, 9)), "no session 9 of probe 1");
}

TEST_F(StoreTest, RefusesARequestWithoutANameOrAnIdentifier) {
  auto md = CreateMd("D3");
  md.clear_md_name();
  EXPECT_EQ(ReasonAgainst(md), "md_name is missing");
  EXPECT_EQ(store_.Apply(md).subject, "md ?");
  auto ma = DeleteMa("D1", "A1");
  ma.clear_ma_name();
  EXPECT_EQ(ReasonAgainst(ma), "ma_name is missing");
  auto mep = UpdateMep("D1", "A1", 1);
  mep.clear_mep_id();
  EXPECT_EQ(ReasonAgainst(mep), "mep_id is missing");
  auto probe = CreateProbe(1);
  probe.clear_probe_id();
  EXPECT_EQ(ReasonAgainst(probe), "probe_id is missing");
  probe = CreateProbe(1);
  probe.clear_ma_name();
  EXPECT_EQ(ReasonAgainst(probe), "ma_name is missing");
  auto session = DeleteSession(1, 1);
  session.clear_session_id();
  EXPECT_EQ(ReasonAgainst(session), "session_id is missing");
  EXPECT_EQ(ReasonAgainst(client_server::OpDeleteMaintenanceEndpoint()),
            "md_name is missing; ma_name is missing; mep_id is missing");
}

/** A value of one field of a request that must be refused, and the reason. */
template <class Message>
struct Bad {
  void (*spoil)(Message&);
  const char* reason;
};

TEST_F(StoreTest, RefusesDomainSettingsOutsideTheirRange) {
  using Message = client_server::OpCreateMaintenanceDomain;
  const Bad<Message> kBad[] = {
      {[](Message& m) { m.set_level(8); }, "level 8: expected 0 to 7"},
      {[](Message& m) { m.set_level(256); }, "level 256: expected 0 to 7"},
      {[](Message& m) { m.set_format(5); },
       "format 5: expected 1 (none), 2 (DNS-like), 3 (MAC and number), 4 (character string)"},
      {[](Message& m) { m.set_format(-1); }, "format -1: expected 1 (none)"},
      {[](Message& m) { m.set_sender_id(5); }, "sender id 5: expected 1 (none)"},
      {[](Message& m) { m.set_mhf_creation(4); }, "MHF creation 4: expected 1 (none)"},
      {[](Message& m) { m.clear_mhf_creation(); }, "MHF creation 0: expected 1 (none)"},
  };
  for (const auto& [spoil, reason] : kBad) {
    auto request = CreateMd("D1");
    spoil(request);
    EXPECT_THAT(ReasonAgainst(request), HasSubstr(reason));
  }
  auto update = UpdateMd("D1");
  update.set_sender_id(0);
  EXPECT_THAT(ReasonAgainst(update), HasSubstr("sender id 0: expected"));
}

TEST_F(StoreTest, RefusesAssociationSettingsOutsideTheirRange) {
  using Message = client_server::OpCreateMaintenanceAssociation;
  const Bad<Message> kBad[] = {
      {[](Message& m) { m.set_format(5); }, "format 5: expected 1 (primary VID)"},
      {[](Message& m) { m.add_vids(4095); }, "VIDs 4095: expected 1 to 4094"},
      {[](Message& m) { m.add_vids(0); }, "VIDs 0: expected 1 to 4094"},
      {[](Message& m) { m.set_ccm_interval(8); }, "CCM interval 8: expected 0 (invalid)"},
      {[](Message& m) { m.add_mep_ids(8192); }, "MEP ids 8192: expected 1 to 8191"},
      {[](Message& m) { m.add_mep_ids(0); }, "MEP ids 0: expected 1 to 8191"},
      {[](Message& m) { m.set_sender_id(6); }, "sender id 6: expected 1 (none)"},
      {[](Message& m) { m.set_mhf_creation(5); }, "MHF creation 5: expected 1 (none)"},
  };
  for (const auto& [spoil, reason] : kBad) {
    auto request = CreateMa("D1", "A1", {1, 2, 3});
    spoil(request);
    EXPECT_THAT(ReasonAgainst(request), HasSubstr(reason));
  }
  EXPECT_EQ(ReasonAgainst(UpdateMa("D1", "A1", {1, 70000})), "MEP ids 70000: expected 1 to 8191");
}

TEST_F(StoreTest, RefusesEndpointSettingsOutsideTheirRange) {
  using Message = client_server::OpCreateMaintenanceEndpoint;
  const Bad<Message> kBad[] = {
      {[](Message& m) { m.set_mep_id(0); }, "mep_id 0: expected 1 to 8191"},
      {[](Message& m) { m.set_mep_id(65537); }, "mep_id 65537: expected 1 to 8191"},
      {[](Message& m) { m.set_direction(0); }, "direction 0: expected 1 (down), 2 (up)"},
      {[](Message& m) { m.set_primary_vid(4095); }, "primary VID 4095: expected 0 to 4094"},
      {[](Message& m) { m.set_inner_vid(4095); }, "inner VID 4095: expected 0 to 4094"},
      {[](Message& m) { m.set_ccm_priority(8); }, "CCM priority 8: expected 0 to 7"},
      {[](Message& m) { m.set_lowest_prio_defect(7); }, "lowest alarm priority 7: expected"},
      {[](Message& m) { m.set_fng_alarm_time(249); }, "alarm time 249: expected 250 to 1000"},
      {[](Message& m) { m.set_fng_reset_time(1001); }, "reset time 1001: expected 250 to 1000"},
      {[](Message& m) { m.set_fault_action(3); },
       "fault action 3: expected 0 (none), 1 (block), 2 (shutdown)"},
  };
  for (const auto& [spoil, reason] : kBad) {
    auto request = CreateMep("D1", "A1", 1);
    spoil(request);
    EXPECT_THAT(ReasonAgainst(request), HasSubstr(reason));
  }
  auto update = UpdateMep("D1", "A1", 1);
  update.set_ccm_priority(9);
  update.set_primary_vid(5000);
  EXPECT_EQ(ReasonAgainst(update),
            "primary VID 5000: expected 0 to 4094; CCM priority 9: expected 0 to 7");
}

TEST_F(StoreTest, RefusesProbesAndSessionsOutsideTheirRange) {
  auto probe = CreateProbe(65536);
  EXPECT_EQ(ReasonAgainst(probe), "probe_id 65536: expected 0 to 65535");
  probe = CreateProbe(1);
  probe.set_lmep_id(0);
  probe.set_rmep_id(8192);
  probe.set_interval(65536);
  EXPECT_EQ(ReasonAgainst(probe),
            "local mep 0: expected 1 to 8191; remote mep 8192: expected 1 to 8191; "
            "interval 65536: expected 0 to 65535");
  EXPECT_EQ(ReasonAgainst(CreateSession(1, 65536)), "session_id 65536: expected 0 to 65535");
  auto session = CreateSession(1, 1);
  session.set_pcp(8);
  session.set_size(70000);
  EXPECT_EQ(ReasonAgainst(session), "size 70000: expected 0 to 65535; pcp 8: expected 0 to 7");
}

TEST_F(StoreTest, NamesMustFitIntoTheMaid) {
  Done(CreateMd(std::string(43, 'd')));
  EXPECT_EQ(ReasonAgainst(CreateMd(std::string(44, 'd'))),
            "md_name is 44 octets long: expected 0 to 43");
  Done(CreateMa(std::string(43, 'd'), "a"));
  EXPECT_EQ(ReasonAgainst(CreateMa(std::string(43, 'd'), "ab")),
            "names of domain and association are 45 octets long together: expected at most 44");
  EXPECT_EQ(ReasonAgainst(CreateMa("D1", "")), "ma_name is 0 octets long: expected 1 to 45");
}

TEST_F(StoreTest, NamesTakeTheRoomThatTheirFormatsHave) {
  const std::string mac_and_number = "02:00:5e:00:00:01/65535";  // 8 octets
  auto md = CreateMd(mac_and_number);
  md.set_format(3);
  Done(md);
  Done(CreateMa(mac_and_number, std::string(36, 'a')));
  EXPECT_THAT(ReasonAgainst(CreateMa(mac_and_number, std::string(37, 'a'))),
              HasSubstr("45 octets long together"));
  Done(CreateMd(std::string(31, 'd')));
  auto icc = CreateMa(std::string(31, 'd'), "ACME");  // 13 octets
  icc.set_format(32);
  Done(icc);
  icc.set_format(33);  // 15 octets
  EXPECT_THAT(ReasonAgainst(icc), HasSubstr("46 octets long together"));
}

TEST_F(StoreTest, SaysThatNamesAreNotAsTheirFormatsAsk) {
  auto vid = CreateMa("D1", "100");
  vid.set_format(1);
  EXPECT_EQ(Done(vid).text, "created");
  vid.set_ma_name("A100");
  EXPECT_EQ(Done(vid).text,
            "created, but the names are not as their formats ask: its endpoints stay inactive");
}

TEST_F(StoreTest, ADomainWithoutAnMdNameLeavesAllRoomToItsAssociations) {
  EXPECT_EQ(ReasonAgainst(CreateMd("")), "md_name is empty: expected a name, or format 1 (none)");
  auto request = CreateMd("");
  request.set_format(1);
  Done(request);
  Done(CreateMa("", std::string(45, 'a')));
  EXPECT_THAT(ReasonAgainst(CreateMa("", std::string(46, 'a'))), HasSubstr("46 octets long"));
}

TEST_F(StoreTest, ANameFormatUnderWhichAnAssociationsNameIsTooLongIsRefused) {
  auto request = CreateMd("D3");
  request.set_format(1);
  Done(request);
  Done(CreateMa("D3", std::string(45, 'a')));
  EXPECT_THAT(ReasonAgainst(CreateMd("D3")), HasSubstr("47 octets long together"));
}

TEST_F(StoreTest, NamesMayHoldAnyBytes) {
  const std::string md("\0\xff\n\"", 4);
  Done(CreateMd(md));
  Done(CreateMa(md, "a"));
  EXPECT_EQ(store_.tree().domains.count(md), 1U);
  EXPECT_EQ(Done(DeleteMd(md)).subject, R"(md "\x00\xff\x0a\"")");
}

TEST_F(StoreTest, WhatItHoldsComesBackAsItWasSent) {
  auto domain = CreateMd("D0");
  auto association = CreateMa("D0", "A", {3, 4});
  association.add_vids(7);
  association.add_vids(7);
  SetAis(*association.mutable_ais());
  auto mep = CreateMep("D0", "A", 3);
  mep.set_ifindex(4294967295U);
  mep.set_aux_flag(true);
  Done(domain);
  Done(association);
  Done(mep);
  const auto cache = cfm_mgr::ToCacheSync(store_.tree());
  ASSERT_EQ(cache.mds_size(), 3);
  ASSERT_EQ(cache.mas_size(), 3);
  ASSERT_EQ(cache.meps_size(), 3);
  ASSERT_EQ(cache.probes_size(), 1);
  ASSERT_EQ(cache.sessions_size(), 2);
  EXPECT_EQ(cache.mds(0).SerializeAsString(), domain.SerializeAsString());
  EXPECT_EQ(cache.mas(0).SerializeAsString(), association.SerializeAsString());
  EXPECT_EQ(cache.meps(0).SerializeAsString(), mep.SerializeAsString());
  EXPECT_EQ(cache.mas(1).SerializeAsString(), CreateMa("D1", "A1", {1, 2, 3}).SerializeAsString())
      << "AIS that is off carries its two flags only";
  EXPECT_EQ(cache.probes(0).SerializeAsString(), CreateProbe(1).SerializeAsString());
  EXPECT_EQ(cache.sessions(1).SerializeAsString(), CreateSession(1, 2).SerializeAsString());
}

TEST_F(StoreTest, LoadsAWholeConfiguration) {
  Store other;
  EXPECT_THAT(other.Load(cfm_mgr::ToCacheSync(store_.tree())), IsEmpty());
  EXPECT_EQ(cfm_mgr::Render(other.tree()), Text());
}

TEST_F(StoreTest, LoadingKeepsWhatIsGoodAndNamesTheRest) {
  auto cache = cfm_mgr::ToCacheSync(store_.tree());
  cache.mutable_meps(0)->set_ccm_priority(8);
  *cache.add_sessions() = CreateSession(7, 1);
  Store other;
  EXPECT_THAT(other.Load(cache),
              ElementsAre(R"(md "D1" ma "A1" mep 1: CCM priority 8: expected 0 to 7)",
                          "probe 7 session 1: no probe 7"));
  EXPECT_EQ(SizeOf(other.tree()).meps, 1U);
  EXPECT_EQ(SizeOf(other.tree()).sessions, 2U);
}

}  // namespace
}  // namespace cfm_mgr_test
