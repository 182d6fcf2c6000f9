// SPDX-License-Identifier: Apache-2.0
#include "net/simulated/simulated_network.h"

#include <gmock/gmock.h>

#include <map>
#include <stdexcept>

#include "net/frame_codec.h"
#include "recording_notifications.h"
#include "sample_network.h"

namespace cfm_mgr::net {
namespace {

using engine::Frame;
using engine::Time;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

// Numbers of the MIB.
constexpr std::uint32_t kFailed = 3;
constexpr std::uint32_t kOk = 4;
constexpr std::uint32_t kRemoteCcmPriority = 3;
constexpr std::uint8_t kInterfaceDown = 2;

constexpr engine::PortId kEast = 2;

class SimulatedNetworkTest : public testing::Test {
 protected:
  void Start(const NetworkDescription& description, std::uint64_t seed = 1, Time start = {}) {
    network_.emplace(description, notifications_, seed, start);
    now_ = start;
    network_->SetTap([this](const Passage& passage) {
      passages_.push_back(std::string(passage.bridge) + "." + std::string(passage.port));
      times_.push_back(passage.at);
    });
  }

  void RunFor(Time time) { network_->Advance(now_ += time); }

  // MEP 1 of the sample association on the local bridge.
  void AddLocalMep(std::int32_t direction = kDown, engine::PortId port = kEast) {
    network_->engine().SetAssociation(now_, SampleMa(), SampleDomain(),
                                      SampleAssociation(1, port, direction));
  }

  std::uint32_t RemoteState() {
    const auto status = network_->engine().RemoteStatus(SampleMep(1), 2);
    return status ? status->state : 0;
  }

  engine::LocalMepStatus LocalStatus() {
    return network_->engine().LocalStatus(SampleMep(1)).value_or(engine::LocalMepStatus{});
  }

  // What leaves which port after a frame has come in.
  std::vector<std::string> PassagesOf(const PortName& port, const Frame& frame) {
    passages_.clear();
    network_->Inject(port, frame);
    RunFor(seconds(1));
    return passages_;
  }

  RecordingNotifications notifications_;
  std::optional<SimulatedNetwork> network_;
  Time now_{};
  std::vector<std::string> passages_;
  std::vector<Time> times_;
};

TEST_F(SimulatedNetworkTest, CcmsCrossTheBridgesBetweenTwoMeps) {
  Start(WithFarMep(SampleLine(4, {milliseconds(5)})));
  AddLocalMep();
  RunFor(seconds(3));
  EXPECT_EQ(RemoteState(), kOk);
  EXPECT_EQ(network_->engine().RemoteStatus(SampleMep(1), 2)->mac,
            (engine::Mac{0x02, 0, 0, 0, 4, 1}));
  EXPECT_EQ(LocalStatus().highest_defect_priority, 0U);
  EXPECT_THAT(notifications_.alarms, IsEmpty());
  EXPECT_EQ(network_->FindEngine("b4")->RemoteStatus(SampleMep(2), 1)->state, kOk);
}

TEST_F(SimulatedNetworkTest, CcmsOfUpMepsLeaveByTheOtherPorts) {
  Start(WithFarMep(SampleLine(3)));
  AddLocalMep(kUp, 1);
  RunFor(seconds(3));
  EXPECT_EQ(RemoteState(), kOk);
  EXPECT_THAT(passages_, testing::Contains("b1.east"));
  EXPECT_THAT(passages_, testing::Not(testing::Contains("b1.west")));
}

TEST_F(SimulatedNetworkTest, ACutRaisesTheDefectAndMendingItClearsIt) {
  Start(WithFarMep(SampleLine(4)));
  AddLocalMep();
  RunFor(seconds(3));
  ASSERT_EQ(RemoteState(), kOk);
  network_->SetLinkUp({"b2", "east"}, false);
  RunFor(seconds(5));
  EXPECT_EQ(RemoteState(), kFailed);
  EXPECT_TRUE(LocalStatus().defect_remote_ccm);
  RunFor(seconds(3));
  EXPECT_THAT(notifications_.alarms, ElementsAre(kRemoteCcmPriority));
  network_->SetLinkUp({"b3", "west"}, true);
  RunFor(seconds(2));
  EXPECT_EQ(RemoteState(), kOk);
  EXPECT_FALSE(LocalStatus().defect_remote_ccm);
}

TEST_F(SimulatedNetworkTest, ACutIsSeenAtThePortsOfTheLink) {
  Start(SampleLine(2));
  AddLocalMep();
  network_->SetLinkUp({"b1", "east"}, false);
  EXPECT_EQ(LocalStatus().interface_status, kInterfaceDown);
  network_->SetLinkUp({"b1", "east"}, true);
  EXPECT_EQ(LocalStatus().interface_status, 1U);
}

TEST_F(SimulatedNetworkTest, LinksChangeAtTheTimesOfTheDescription) {
  NetworkDescription description = WithFarMep(SampleLine(2));
  description.links[0].changes = {{seconds(10), false}, {seconds(20), true}};
  Start(description, 1, hours(5));
  AddLocalMep();
  RunFor(seconds(9));
  EXPECT_EQ(LocalStatus().interface_status, 1U);
  RunFor(seconds(10));
  EXPECT_EQ(LocalStatus().interface_status, kInterfaceDown);
  EXPECT_EQ(RemoteState(), kFailed);
  RunFor(seconds(3));
  EXPECT_EQ(RemoteState(), kOk);
}

TEST_F(SimulatedNetworkTest, ALinkThatStartsDownCarriesNothing) {
  NetworkDescription description = WithFarMep(SampleLine(2));
  description.links[0].up = false;
  Start(description);
  AddLocalMep();
  RunFor(seconds(10));
  EXPECT_EQ(RemoteState(), kFailed);
  EXPECT_EQ(network_->counters().delivered, 0U);
}

TEST_F(SimulatedNetworkTest, ALinkThatLosesEverythingRaisesTheDefect) {
  Start(WithFarMep(SampleLine(2)));
  AddLocalMep();
  RunFor(seconds(3));
  LinkQuality quality;
  quality.loss = 1;
  network_->SetLinkQuality({"b1", "east"}, quality);
  RunFor(seconds(5));
  EXPECT_EQ(RemoteState(), kFailed);
  EXPECT_EQ(LocalStatus().interface_status, 1U);
}

TEST_F(SimulatedNetworkTest, WhatIsUnderWayIsLostInACut) {
  Start(SampleLine(2, {seconds(10)}));
  network_->Inject({"b1", "west"}, SampleFrame(1, 2, 100));
  RunFor(seconds(1));
  network_->SetLinkUp({"b1", "east"}, false);
  network_->SetLinkUp({"b1", "east"}, true);
  RunFor(seconds(20));
  EXPECT_THAT(passages_, ElementsAre("b1.east"));
  EXPECT_EQ(network_->counters().lost, 1U);
}

TEST_F(SimulatedNetworkTest, TheRelayFloodsWhatItDoesNotKnowAndLearns) {
  NetworkDescription description = SampleLine(1);
  description.bridges[0].ports.push_back({"north", 3, {0x02, 0, 0, 0, 1, 3}, {}});
  Start(description);
  EXPECT_THAT(PassagesOf({"b1", "west"}, SampleFrame(1, 2, 100)),
              ElementsAre("b1.east", "b1.north"));
  EXPECT_THAT(PassagesOf({"b1", "north"}, SampleFrame(2, 1, 100)), ElementsAre("b1.west"));
  EXPECT_THAT(PassagesOf({"b1", "west"}, SampleFrame(1, 2, 100)), ElementsAre("b1.north"));
  // Known in another VLAN only.
  EXPECT_THAT(PassagesOf({"b1", "west"}, SampleFrame(1, 2, 101)),
              ElementsAre("b1.east", "b1.north"));
  // Its destination is where it comes from.
  EXPECT_THAT(PassagesOf({"b1", "north"}, SampleFrame(3, 2, 100)), IsEmpty());
  EXPECT_EQ(network_->counters().unconnected, 6U);
}

TEST_F(SimulatedNetworkTest, TheRelayKeepsToTheVlansOfItsPorts) {
  NetworkDescription description = SampleLine(1);
  description.bridges[0].ports[1].vids = {100};
  description.bridges[0].ports.push_back({"north", 3, {0x02, 0, 0, 0, 1, 3}, {0, 200}});
  Start(description);
  EXPECT_THAT(PassagesOf({"b1", "west"}, SampleFrame(1, 9, 100)), ElementsAre("b1.east"));
  EXPECT_THAT(PassagesOf({"b1", "west"}, SampleFrame(1, 9, 200)), ElementsAre("b1.north"));
  EXPECT_THAT(PassagesOf({"b1", "west"}, SampleFrame(1, 9, 0)), ElementsAre("b1.north"));
  EXPECT_THAT(PassagesOf({"b1", "east"}, SampleFrame(1, 9, 200)), IsEmpty());
}

TEST_F(SimulatedNetworkTest, ACutForgetsWhatWasLearntThere) {
  NetworkDescription description = SampleLine(2);
  description.bridges[1].ports.push_back({"north", 3, {0x02, 0, 0, 0, 2, 3}, {}});
  Start(description);
  PassagesOf({"b1", "west"}, SampleFrame(1, 9, 100));
  EXPECT_THAT(PassagesOf({"b2", "east"}, SampleFrame(2, 1, 100)),
              ElementsAre("b2.west", "b1.west"));
  network_->SetLinkUp({"b2", "west"}, false);
  EXPECT_THAT(PassagesOf({"b2", "east"}, SampleFrame(2, 1, 100)),
              ElementsAre("b2.west", "b2.north"));
}

TEST_F(SimulatedNetworkTest, ACrossConnectionBringsFramesToAnotherVlan) {
  NetworkDescription description = WithFarMep(SampleLine(2));
  // The far bridge has another service of the same level, which leaks into the first one.
  BridgeDescription& far = description.bridges.back();
  far.ports.push_back({"north", 3, {0x02, 0, 0, 0, 2, 3}, {}});
  Association other = SampleAssociation(2, 3, kDown, 200);
  far.domains["D"].associations["B"] = other;
  CrossConnection cross;
  cross.from = {"b2", "north"};
  cross.to = {"b1", "east"};
  cross.vid = 200;
  cross.to_vid = 100;
  description.cross_connections = {cross};
  Start(description);
  AddLocalMep();
  RunFor(seconds(3));
  EXPECT_TRUE(LocalStatus().defect_xcon_ccm);
  EXPECT_EQ(RemoteState(), kOk);
  EXPECT_GT(network_->counters().misdelivered, 1U);
}

TEST_F(SimulatedNetworkTest, ALoopOfCrossConnectionsIsLeftInTheEnd) {
  NetworkDescription description = SampleLine(2);
  description.cross_connections = {{{"b2", "east"}, {"b1", "west"}, {}, {}}};
  Start(description);
  network_->Inject({"b1", "west"}, SampleFrame(1, 2, 100));
  RunFor(seconds(1));
  EXPECT_EQ(network_->counters().overwhelmed, 1U);
  EXPECT_FALSE(network_->NextDeadline());
}

TEST_F(SimulatedNetworkTest, NamesThePresentWhileTheEngineHasSentSomething) {
  Start(SampleLine(2, {milliseconds(7)}));
  EXPECT_FALSE(network_->NextDeadline());
  RunFor(seconds(2));
  Association association = SampleAssociation(1, kEast);
  network_->engine().SetAssociation(now_, SampleMa(), SampleDomain(), association);
  for (auto next = network_->NextDeadline(); next && times_.empty();
       next = network_->NextDeadline()) {
    ASSERT_GE(*next, now_);
    ASSERT_LE(*next, now_ + seconds(1));
    now_ = *next;
    network_->Advance(now_);
  }
  ASSERT_EQ(times_.size(), 1U);
  EXPECT_EQ(times_[0], now_);
  EXPECT_EQ(network_->NextDeadline(), now_ + milliseconds(7));
}

TEST_F(SimulatedNetworkTest, IsInTimeForEveryEventHoweverFarItIsAdvancedAtOnce) {
  Start(WithFarMep(SampleLine(3, {milliseconds(5)})));
  AddLocalMep();
  RunFor(hours(1));
  EXPECT_EQ(RemoteState(), kOk);
  EXPECT_THAT(notifications_.alarms, IsEmpty());
  const auto counters = network_->engine().Counters(SampleMep(1));
  EXPECT_NEAR(static_cast<double>(counters->ccms_sent), 3600, 1);
  EXPECT_EQ(counters->ccm_sequence_errors, 0U);
}

TEST_F(SimulatedNetworkTest, RepeatsItselfWithTheSameSeedOnly) {
  const LinkQuality quality{milliseconds(5), milliseconds(3), 0.1, 0.1, milliseconds(20)};
  const auto run = [&](std::uint64_t seed) {
    passages_.clear();
    times_.clear();
    Start(WithFarMep(SampleLine(4, quality)), seed);
    AddLocalMep();
    RunFor(seconds(100));
    return std::make_pair(passages_, times_);
  };
  const auto first = run(7);
  EXPECT_GT(first.first.size(), 300U);
  EXPECT_EQ(first, run(7));
  EXPECT_NE(first, run(8));
}

// A linktrace from bridge 1 to 4 over two bridges that have MIPs.
TEST_F(SimulatedNetworkTest, ALinktraceFindsEveryBridgeOnTheWay) {
  NetworkDescription description = WithFarMep(SampleLine(4, {milliseconds(5)}));
  constexpr std::int32_t kMhfDefault = 2;
  for (const std::size_t middle : {1U, 2U}) {
    Domain& domain = description.bridges[middle].domains["D"];
    domain.settings = SampleDomain();
    domain.settings.mhf_creation = kMhfDefault;
    domain.associations["A"] = SampleAssociation(2, kEast);
    domain.associations["A"].meps.clear();
  }
  Start(description);
  AddLocalMep();
  RunFor(seconds(3));
  engine::LinktraceRequest request;
  request.mep = SampleMep(1);
  request.remote_mep_id = 2;
  ASSERT_FALSE(network_->engine().StartLinktrace(now_, request).error);
  RunFor(seconds(10));
  std::map<int, engine::Mac> sources;
  for (const auto& reply : notifications_.linktrace_replies) sources[reply.ttl] = reply.source;
  EXPECT_THAT(sources, ElementsAre(testing::Pair(61, (engine::Mac{0x02, 0, 0, 0, 4, 1})),
                                   testing::Pair(62, (engine::Mac{0x02, 0, 0, 0, 3, 1})),
                                   testing::Pair(63, (engine::Mac{0x02, 0, 0, 0, 2, 1}))));
  EXPECT_EQ(notifications_.linktraces_ended, 1);
}

TEST_F(SimulatedNetworkTest, ADelayMeasurementFindsTheDelayOfTheLinks) {
  Start(WithFarMep(SampleLine(4, {milliseconds(5)})));
  AddLocalMep();
  RunFor(seconds(3));
  engine::DelayRequest request;
  request.mep = SampleMep(1);
  request.remote_mep_id = 2;
  ASSERT_FALSE(network_->engine().StartDelayMeasurement(now_, request).error);
  RunFor(seconds(10));
  ASSERT_EQ(notifications_.delay_results.size(), 1U);
  EXPECT_EQ(notifications_.delay_results[0].received, 10U);
  EXPECT_EQ(notifications_.delay_results[0].delay.min, milliseconds(30));
  EXPECT_EQ(notifications_.delay_results[0].delay.max, milliseconds(30));
}

TEST_F(SimulatedNetworkTest, RefusesNamesThatStandForNothing) {
  NetworkDescription description = SampleLine(2);
  description.local = "b3";
  EXPECT_THROW(Start(description), std::invalid_argument);
  description = SampleLine(2);
  description.links[0].ends[1].port = "south";
  EXPECT_THROW(Start(description), std::invalid_argument);
  Start(SampleLine(2));
  EXPECT_THROW(network_->SetLinkUp({"b1", "west"}, false), std::invalid_argument);
  EXPECT_THROW(network_->Inject({"b9", "west"}, {}), std::invalid_argument);
  EXPECT_EQ(network_->FindEngine("b9"), nullptr);
}

}  // namespace
}  // namespace cfm_mgr::net
