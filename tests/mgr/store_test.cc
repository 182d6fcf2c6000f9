// SPDX-License-Identifier: Apache-2.0
#include "store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "messages.h"
#include "store_fixture.h"

namespace cfm_mgr_test {
namespace {

using cfm_mgr::Outcome;
using cfm_mgr::SizeOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

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

}  // namespace
}  // namespace cfm_mgr_test
