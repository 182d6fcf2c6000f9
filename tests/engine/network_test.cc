// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "samples.h"
#include "virtual_network.h"

namespace cfm_mgr::engine {
namespace {

/** Two bridges, joined at port 1 of each; port 2 of each is outside. */
class NetworkTest : public testing::Test {
 protected:
  NetworkTest() {
    for (Bridge* bridge : {&a_, &b_}) {
      bridge->SetPort(1);
      bridge->SetPort(2);
    }
    network_.Connect(a_, 1, b_, 1);
  }
  /** MEP 1 on the one bridge, MEP 2 on the other. */
  void AddPair(const MaKey& key, std::uint32_t level, std::int32_t direction, PortId port) {
    Mep mep = SampleMep();
    mep.direction = direction;
    mep.ifindex = port;
    const DomainSettings domain = SampleDomain(level);
    a_.engine().SetAssociation(network_.now(), key, domain, WithMep(SampleAssociation(), 1, mep));
    b_.engine().SetAssociation(network_.now(), key, domain, WithMep(SampleAssociation(), 2, mep));
  }
  void Cut(bool cut) {
    network_.SetLinkRule([cut](const Frame&) -> std::optional<Time> {
      if (cut) return std::nullopt;
      return milliseconds(1);
    });
  }
  LocalMepStatus StatusOf(Bridge& bridge, const MaKey& key, std::uint32_t mep_id) {
    return *bridge.engine().LocalStatus({key, mep_id});
  }

  VirtualNetwork network_;
  Bridge& a_ = network_.AddBridge(1);
  Bridge& b_ = network_.AddBridge(2);
};

TEST_F(NetworkTest, BothEndsOfALinkFindEachOther) {
  AddPair(SampleMa(), 3, kDown, 1);
  network_.Run(seconds(2));
  const auto seen = *a_.engine().RemoteStatus(SampleKey(1), 2);
  EXPECT_EQ(4U, seen.state);
  EXPECT_EQ(b_.MacOf(1), seen.mac);
  EXPECT_EQ(4U, b_.engine().RemoteStatus(SampleKey(2), 1)->state);
  network_.Run(hours(2));
  EXPECT_TRUE(a_.alarms.empty());
  EXPECT_EQ(0U, a_.engine().Counters(SampleKey(1))->ccm_sequence_errors);
  EXPECT_GE(a_.engine().Counters(SampleKey(1))->ccms_sent, 7200U);
}

TEST_F(NetworkTest, ACutLinkAlarmsAtBothEndsAndHeals) {
  AddPair(SampleMa(), 3, kDown, 1);
  Cut(false);
  network_.Run(minutes(1));
  Cut(true);
  network_.Run(seconds(10));
  for (Bridge* bridge : {&a_, &b_}) {
    ASSERT_EQ(1U, bridge->alarms.size());
    EXPECT_EQ(3U, bridge->alarms[0].priority);
  }
  Cut(false);
  network_.Run(seconds(3));
  EXPECT_FALSE(StatusOf(a_, SampleMa(), 1).defect_remote_ccm);
  EXPECT_FALSE(StatusOf(a_, SampleMa(), 1).defect_rdi);
  EXPECT_EQ(1U, a_.engine().Counters(SampleKey(1))->ccm_sequence_errors) << "one gap";
  network_.Run(hours(1));
  EXPECT_EQ(1U, a_.alarms.size());
}

TEST_F(NetworkTest, AnEndThatHearsNothingIsTellingTheOther) {
  AddPair(SampleMa(), 3, kDown, 1);
  const Mac deaf = a_.MacOf(1);
  network_.SetLinkRule([deaf](const Frame& frame) -> std::optional<Time> {
    if (frame.source != deaf) return std::nullopt;
    return Time{};
  });
  network_.Run(seconds(10));
  EXPECT_TRUE(StatusOf(a_, SampleMa(), 1).defect_remote_ccm);
  EXPECT_FALSE(StatusOf(b_, SampleMa(), 2).defect_remote_ccm);
  EXPECT_TRUE(StatusOf(b_, SampleMa(), 2).defect_rdi);
  ASSERT_EQ(1U, b_.alarms.size());
  EXPECT_EQ(1U, b_.alarms[0].priority);
}

TEST_F(NetworkTest, UpMepsSeeEachOtherThroughDownMepsOfALowerLevel) {
  const MaKey outer{"D1", "outer"};
  const MaKey link{"D1", "link"};
  AddPair(outer, 5, kUp, 2);
  AddPair(link, 1, kDown, 1);
  network_.Run(minutes(1));
  EXPECT_EQ(4U, a_.engine().RemoteStatus({outer, 1}, 2)->state);
  EXPECT_EQ(4U, b_.engine().RemoteStatus({link, 2}, 1)->state);
  EXPECT_EQ(0U, StatusOf(a_, outer, 1).highest_defect_priority);
  EXPECT_EQ(0U, StatusOf(a_, link, 1).highest_defect_priority);
}

TEST_F(NetworkTest, CcmsOfALinkDoNotLeaveIt) {
  AddPair(SampleMa(), 1, kDown, 1);
  Bridge& beyond = network_.AddBridge(3);
  beyond.SetPort(1);
  network_.Connect(b_, 2, beyond, 1);
  Association association = WithMep(SampleAssociation(), 9, SampleMep());
  association.settings.mep_ids = {1, 2, 9};
  beyond.engine().SetAssociation({}, SampleMa(), SampleDomain(1), association);
  network_.Run(minutes(1));
  EXPECT_EQ(3U, beyond.engine().RemoteStatus(SampleKey(9), 1)->state);
  EXPECT_EQ(3U, beyond.engine().RemoteStatus(SampleKey(9), 2)->state);
}

TEST_F(NetworkTest, TwoMepsOfOneBridgeAreRemoteToEachOther) {
  Mep one = SampleMep();
  one.direction = kUp;
  Mep two = one;
  two.ifindex = 2;
  Association association = WithMep(WithMep(SampleAssociation(), 1, one), 2, two);
  a_.engine().SetAssociation({}, SampleMa(), SampleDomain(), association);
  network_.Run(seconds(5));
  EXPECT_EQ(4U, a_.engine().RemoteStatus(SampleKey(1), 2)->state);
  EXPECT_EQ(4U, a_.engine().RemoteStatus(SampleKey(2), 1)->state);
}

TEST_F(NetworkTest, AnInterfaceGoingDownIsToldBeforeItsCcmsStop) {
  AddPair(SampleMa(), 3, kUp, 2);
  network_.Run(seconds(5));
  a_.SetPort(2, 2, 2);
  network_.Run(seconds(5));
  EXPECT_TRUE(StatusOf(b_, SampleMa(), 2).defect_mac_status);
  EXPECT_FALSE(StatusOf(b_, SampleMa(), 2).defect_remote_ccm);
  EXPECT_EQ(2, b_.engine().RemoteStatus(SampleKey(2), 1)->interface_status);
  EXPECT_TRUE(StatusOf(a_, SampleMa(), 1).defect_rdi);
}

}  // namespace
}  // namespace cfm_mgr::engine
