// SPDX-License-Identifier: Apache-2.0
#include "engine/mep_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pdu/ais.h"
#include "samples.h"

namespace cfm_mgr::engine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

MepSettings Resolve(const Association& association, const DomainSettings& domain = SampleDomain()) {
  return ResolveMep(SampleMa(), domain, association, association.meps.begin()->first);
}

MepSettings ResolveSample(const Mep& mep) { return Resolve(WithMep(SampleAssociation(), 1, mep)); }

TEST(MepSettings, TakeTheAssociationsFirstVidUnlessTheMepHasItsOwn) {
  Association association = WithMep(SampleAssociation(), 1, SampleMep());
  association.settings.vids = {300, 100, 200, 100};
  EXPECT_EQ(300, Resolve(association).service.vid);
  EXPECT_THAT(Resolve(association).vids, ElementsAre(100, 200, 300));
  association.meps[1].primary_vid = 250;
  EXPECT_EQ(250, Resolve(association).service.vid);
  EXPECT_THAT(Resolve(association).vids, ElementsAre(100, 200, 250, 300));
  association.meps[1].inner_vid = 7;
  EXPECT_EQ(7, Resolve(association).service.inner_vid);
}

TEST(MepSettings, HaveNoTagWithoutVids) {
  Association association = WithMep(SampleAssociation(), 1, SampleMep());
  association.settings.vids.clear();
  association.meps[1].inner_vid = 7;
  EXPECT_EQ(0, Resolve(association).service.vid);
  EXPECT_EQ(0, Resolve(association).service.inner_vid) << "no tag to be inside of";
  EXPECT_THAT(Resolve(association).vids, ElementsAre(0));
}

TEST(MepSettings, CountAllOtherMepsOfTheListAsRemote) {
  Association association = WithMep(SampleAssociation(), 5, SampleMep());
  association.settings.mep_ids = {2, 5, 9};
  EXPECT_THAT(Resolve(association).remotes, ElementsAre(2, 9));
  association.settings.mep_ids = {5};
  EXPECT_THAT(Resolve(association).remotes, IsEmpty());
}

TEST(MepSettings, FillInTheDefaultsOfTheAlarmTimes) {
  Mep mep = SampleMep();
  mep.lowest_prio_defect = 0;
  AlarmSettings alarms = ResolveSample(mep).alarms;
  EXPECT_EQ(milliseconds(2500), alarms.alarm_time);
  EXPECT_EQ(seconds(10), alarms.reset_time);
  EXPECT_EQ(2U, alarms.lowest_priority);
  mep.fng_alarm_time = 300;
  mep.fng_reset_time = 999;
  mep.lowest_prio_defect = 6;
  alarms = ResolveSample(mep).alarms;
  EXPECT_EQ(seconds(3), alarms.alarm_time);
  EXPECT_EQ(milliseconds(9990), alarms.reset_time);
  EXPECT_EQ(6U, alarms.lowest_priority);
}

TEST(MepSettings, LeaveSenderIdPermissionToTheDomainWhenDeferred) {
  DomainSettings domain = SampleDomain();
  AssociationSettings association = SampleAssociation().settings;
  for (std::int32_t code = 1; code <= 4; ++code) {
    association.sender_id = code;
    EXPECT_EQ(code, static_cast<std::int32_t>(ResolveSenderId(domain, association)));
  }
  association.sender_id = 5;
  for (std::int32_t code = 1; code <= 4; ++code) {
    domain.sender_id = code;
    EXPECT_EQ(code, static_cast<std::int32_t>(ResolveSenderId(domain, association)));
  }
  domain.sender_id = 5;
  EXPECT_EQ(SenderIdPermission::None, ResolveSenderId(domain, association));
}

TEST(MepSettings, TellTheAddressAsChassisWhereThatIsAllowed) {
  const Mac mac = {2, 0, 0, 0, 0, 1};
  EXPECT_FALSE(SenderIdOf(SenderIdPermission::None, mac));
  const auto manage = SenderIdOf(SenderIdPermission::Manage, mac);
  ASSERT_TRUE(manage);
  EXPECT_TRUE(manage->chassis_id.empty());
  for (const auto permission : {SenderIdPermission::Chassis, SenderIdPermission::Both}) {
    const auto sender = SenderIdOf(permission, mac);
    ASSERT_TRUE(sender);
    EXPECT_EQ("02:00:00:00:00:01", pdu::ToText(*sender));
  }
}

TEST(MepSettings, ReadTheAisSettingsAsThisServerMeansThem) {
  Association association = WithMep(SampleAssociation(), 1, SampleMep());
  association.settings.ais.enabled = true;
  AisSettings ais = Resolve(association).ais;
  EXPECT_TRUE(ais.enabled);
  EXPECT_EQ(4, ais.level) << "the level above";
  EXPECT_EQ(pdu::kAisOneSecond, ais.period);
  EXPECT_THAT(ais.services, ElementsAre(ServiceTags{100, 0}));
  EXPECT_FALSE(ais.suppresses_loss);

  association.settings.ais = {true, 6, 6, 5, {10, 20}, true};
  ais = Resolve(association).ais;
  EXPECT_EQ(6, ais.level);
  EXPECT_EQ(pdu::kAisOneMinute, ais.period);
  EXPECT_EQ(5, ais.priority);
  EXPECT_THAT(ais.services, ElementsAre(ServiceTags{10, 0}, ServiceTags{20, 0}));
  EXPECT_TRUE(ais.suppresses_loss);
}

TEST(MepSettings, SendAisToHigherLevelsOnly) {
  Association association = WithMep(SampleAssociation(), 1, SampleMep());
  association.settings.ais.enabled = true;
  EXPECT_FALSE(Resolve(association, SampleDomain(7)).ais.enabled) << "there is none";
  association.settings.ais.octet_a = 3;
  EXPECT_TRUE(Resolve(association, SampleDomain(2)).ais.enabled);
  EXPECT_FALSE(Resolve(association, SampleDomain(3)).ais.enabled);
  association.settings.ais.octet_a = 8;
  EXPECT_FALSE(Resolve(association, SampleDomain(3)).ais.enabled) << "there is no such level";
}

TEST(MepSettings, HaveNoMaidForNamesThatDoNotFit) {
  Association association = WithMep(SampleAssociation(), 1, SampleMep());
  EXPECT_TRUE(Resolve(association).maid);
  association.settings.format = 3;
  EXPECT_FALSE(Resolve(association).maid) << "\"A1\" is no number";
}

TEST(MepSettings, ArePutElsewhereByPortDirectionLevelVidAndMaid) {
  const Association sample = WithMep(SampleAssociation(), 1, SampleMep());
  const auto is_same = [&sample](const Association& other, std::uint32_t level = 3) {
    return IsSamePlace(Resolve(sample), Resolve(other, SampleDomain(level)));
  };
  EXPECT_TRUE(is_same(sample));
  EXPECT_FALSE(is_same(sample, 4));
  Association other = sample;
  other.meps[1].ifindex = 2;
  EXPECT_FALSE(is_same(other));
  other = sample;
  other.meps[1].direction = kUp;
  EXPECT_FALSE(is_same(other));
  other = sample;
  other.meps[1].inner_vid = 2;
  EXPECT_FALSE(is_same(other));
  other = sample;
  other.settings.vids = {100, 101};
  EXPECT_FALSE(is_same(other));
  other = sample;
  other.settings.format = 32;
  EXPECT_FALSE(is_same(other));
  other = sample;
  other.settings.ccm_interval = 5;
  other.settings.mep_ids = {1, 2, 3};
  other.meps[1].ccm_enabled = false;
  other.meps[1].admin_state = false;
  EXPECT_TRUE(is_same(other));
}

}  // namespace
}  // namespace cfm_mgr::engine
