// SPDX-License-Identifier: Apache-2.0
#include "engine/mip_creation.h"

#include <gtest/gtest.h>

namespace cfm_mgr::engine {
namespace {

constexpr PortId kPort = 7;
constexpr PortId kOtherPort = 8;
constexpr std::uint16_t kVid = 100;

MipAssociation AtLevel(std::uint8_t level, MhfCreation creation) {
  MipAssociation association;
  association.level = level;
  association.vids = {kVid};
  association.creation = creation;
  return association;
}

MipAssociation WithMep(MipAssociation association, PortId port, bool up = true) {
  association.mep_ports.insert(port);
  association.has_up_mep |= up;
  return association;
}

Mips Level(std::uint8_t level) { return {{kVid, {level, SenderIdPermission::None}}}; }
const Mips kNoMip;

TEST(MipCreation, MakesNoneUnlessAskedFor) {
  EXPECT_EQ(kNoMip, FindMips(kPort, {}));
  EXPECT_EQ(kNoMip, FindMips(kPort, {AtLevel(3, MhfCreation::None)}));
}

TEST(MipCreation, ByDefaultMakesOneAtTheLowestActiveLevel) {
  EXPECT_EQ(Level(3), FindMips(kPort, {AtLevel(3, MhfCreation::Default)}));
  EXPECT_EQ(Level(3),
            FindMips(kPort, {AtLevel(5, MhfCreation::Default), AtLevel(3, MhfCreation::Default)}));
}

TEST(MipCreation, ByDefaultMakesNoneAboveAnActiveLevelWithoutMep) {
  EXPECT_EQ(kNoMip,
            FindMips(kPort, {AtLevel(2, MhfCreation::None), AtLevel(5, MhfCreation::Default)}));
}

TEST(MipCreation, ByDefaultMakesOneRightAboveAMep) {
  EXPECT_EQ(Level(5), FindMips(kPort, {WithMep(AtLevel(2, MhfCreation::None), kPort),
                                       AtLevel(5, MhfCreation::Default)}));
  EXPECT_EQ(Level(5), FindMips(kPort, {WithMep(AtLevel(2, MhfCreation::Default), kPort),
                                       AtLevel(5, MhfCreation::Default)}));
}

TEST(MipCreation, ByExplicitNeedsAMepAtTheNextActiveLevelBelow) {
  const auto level5 = AtLevel(5, MhfCreation::Explicit);
  const auto level2 = WithMep(AtLevel(2, MhfCreation::None), kPort);
  EXPECT_EQ(kNoMip, FindMips(kPort, {level5}));
  EXPECT_EQ(Level(5), FindMips(kPort, {level2, level5}));
  EXPECT_EQ(kNoMip, FindMips(kPort, {level2, AtLevel(3, MhfCreation::None), level5}));
  EXPECT_EQ(kNoMip, FindMips(kOtherPort, {level2, level5}));
}

TEST(MipCreation, MakesOnlyOneForAVidAndPort) {
  EXPECT_EQ(Level(2),
            FindMips(kPort, {AtLevel(2, MhfCreation::Default), AtLevel(4, MhfCreation::Default),
                             AtLevel(6, MhfCreation::Default)}));
}

TEST(MipCreation, MakesNoneAtOrBelowAMepOfThePort) {
  EXPECT_EQ(kNoMip, FindMips(kPort, {AtLevel(3, MhfCreation::Default),
                                     WithMep(AtLevel(5, MhfCreation::None), kPort)}));
  EXPECT_EQ(kNoMip, FindMips(kPort, {WithMep(AtLevel(5, MhfCreation::Default), kPort)}));
  EXPECT_EQ(Level(3), FindMips(kOtherPort, {AtLevel(3, MhfCreation::Default),
                                            WithMep(AtLevel(5, MhfCreation::None), kPort)}));
}

TEST(MipCreation, IsActiveOnAllPortsForAnAssociationWithAnUpMep) {
  const auto level4 = WithMep(AtLevel(4, MhfCreation::Default), kPort, true);
  EXPECT_EQ(kNoMip, FindMips(kPort, {level4}));
  EXPECT_EQ(Level(4), FindMips(kOtherPort, {level4}));
}

TEST(MipCreation, DoesNotCountAnAssociationWhoseDownMepsAreOnOtherPorts) {
  const auto level2 = WithMep(AtLevel(2, MhfCreation::Default), kOtherPort, false);
  EXPECT_EQ(kNoMip, FindMips(kPort, {level2}));
  EXPECT_EQ(Level(5), FindMips(kPort, {level2, AtLevel(5, MhfCreation::Default)}));
}

TEST(MipCreation, LooksAtEachVidAlone) {
  auto both = AtLevel(4, MhfCreation::Default);
  both.vids = {10, 20};
  auto low = AtLevel(1, MhfCreation::None);
  low.vids = {20};
  EXPECT_EQ((Mips{{10, {4, SenderIdPermission::None}}}), FindMips(kPort, {both, low}));
}

struct Described {
  std::int32_t association;
  std::int32_t domain;
  MhfCreation creation;
};

TEST(MipCreation, GivesAMipThePermissionOfItsAssociation) {
  auto asking = AtLevel(4, MhfCreation::Default);
  asking.sender_id = SenderIdPermission::Chassis;
  auto other = AtLevel(4, MhfCreation::None);
  other.sender_id = SenderIdPermission::Both;
  EXPECT_EQ((Mips{{kVid, {4, SenderIdPermission::Chassis}}}), FindMips(kPort, {asking, other}));
}

TEST(MipCreation, IsTheAssociationsOrTheDomainsWhenItDefers) {
  const Described cases[] = {
      {1, 2, MhfCreation::None},    {2, 1, MhfCreation::Default},  {3, 1, MhfCreation::Explicit},
      {4, 2, MhfCreation::Default}, {4, 3, MhfCreation::Explicit}, {4, 1, MhfCreation::None},
      {4, 4, MhfCreation::None},    {0, 2, MhfCreation::None},     {9, 2, MhfCreation::None},
  };
  for (const Described& c : cases) {
    DomainSettings domain;
    domain.mhf_creation = c.domain;
    Association association;
    association.settings.mhf_creation = c.association;
    EXPECT_EQ(c.creation, DescribeForMips(domain, association).creation)
        << c.association << ' ' << c.domain;
  }
}

TEST(MipCreation, SeesLevelVidsAndEndpointsOfAnAssociation) {
  DomainSettings domain;
  domain.level = 6;
  Association association;
  association.settings.vids = {30, 10, 30};
  association.meps[1].ifindex = 3;
  association.meps[1].direction = 1;
  association.meps[2].ifindex = 4;
  association.meps[2].direction = 2;
  association.meps[2].primary_vid = 77;
  const MipAssociation described = DescribeForMips(domain, association);
  EXPECT_EQ(6, described.level);
  EXPECT_EQ((std::set<std::uint16_t>{10, 30, 77}), described.vids);
  EXPECT_EQ((std::set<PortId>{3, 4}), described.mep_ports);
  EXPECT_TRUE(described.has_up_mep);
}

TEST(MipCreation, TakesAnAssociationWithoutVidsForFramesWithoutTag) {
  EXPECT_EQ((std::set<std::uint16_t>{0}), DescribeForMips({}, {}).vids);
}

}  // namespace
}  // namespace cfm_mgr::engine
