// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "samples.h"
#include "virtual_network.h"

namespace cfm_mgr::engine {
namespace {

using testing::IsEmpty;

/** MEP 1 of a bridge, whose remote MEP 2 was found before the configuration changes. */
class ConfigurationChange : public testing::Test {
 protected:
  ConfigurationChange() {
    bridge_.SetPort(1);
    bridge_.SetPort(2);
    association_ = WithMep(SampleAssociation(), 1, SampleMep());
    Apply();
    Receive();
    bridge_.local_changes.clear();
    bridge_.remote_changes.clear();
  }
  void Apply(std::uint32_t level = 3) {
    bridge_.engine().SetAssociation(network_.now(), SampleMa(), SampleDomain(level), association_);
  }
  void Receive(PortId port = 1) { bridge_.Receive(port, Side::Wire, FrameOf(SampleCcm())); }
  std::optional<std::uint32_t> RemoteState(std::uint32_t mep_id = 2) {
    const auto status = bridge_.engine().RemoteStatus(SampleKey(1), mep_id);
    if (!status) return std::nullopt;
    return status->state;
  }
  Mep& mep() { return association_.meps[1]; }

  static constexpr std::uint32_t kIdle = 1;
  static constexpr std::uint32_t kStart = 2;
  static constexpr std::uint32_t kFailed = 3;
  static constexpr std::uint32_t kOk = 4;

  VirtualNetwork network_;
  Bridge& bridge_ = network_.AddBridge();
  Association association_;
};

TEST_F(ConfigurationChange, OfNothingChangesNothing) {
  network_.Run(seconds(3));
  const auto before = *bridge_.engine().Counters(SampleKey(1));
  const auto deadline = bridge_.engine().NextDeadline();
  Apply();
  bridge_.SetPort(1);
  EXPECT_EQ(deadline, bridge_.engine().NextDeadline());
  EXPECT_EQ(before.ccms_sent, bridge_.engine().Counters(SampleKey(1))->ccms_sent);
  EXPECT_EQ(kOk, RemoteState());
  EXPECT_THAT(bridge_.local_changes, IsEmpty());
  EXPECT_THAT(bridge_.remote_changes, IsEmpty());
  network_.Run(milliseconds(500));
  EXPECT_EQ(kFailed, RemoteState()) << "its wait went on";
}

TEST_F(ConfigurationChange, OfPrioritiesAndAlarmsKeepsTheState) {
  mep().ccm_priority = 2;
  mep().lowest_prio_defect = 5;
  mep().fault_action = 1;
  Apply();
  EXPECT_EQ(kOk, RemoteState());
  bridge_.sent.clear();
  network_.Run(seconds(1));
  ASSERT_FALSE(bridge_.sent.empty());
  EXPECT_EQ(2, bridge_.sent[0].frame.tags.at(0).pcp);
}

TEST_F(ConfigurationChange, OfTheMepListKeepsTheOthers) {
  association_.settings.mep_ids = {1, 2, 3};
  Apply();
  EXPECT_EQ(kOk, RemoteState(2));
  EXPECT_EQ(kStart, RemoteState(3));
  association_.settings.mep_ids = {1, 3};
  Apply();
  EXPECT_FALSE(RemoteState(2));
  EXPECT_EQ(kStart, RemoteState(3));
  Receive();
  EXPECT_TRUE(bridge_.engine().LocalStatus(SampleKey(1))->defect_error_ccm);
}

TEST_F(ConfigurationChange, EndsTheDefectOfARemoteMepThatIsNotInTheListAnyMore) {
  association_.settings.mep_ids = {1, 2, 3};
  Apply();
  network_.Run(seconds(3));
  Receive();
  network_.Run(milliseconds(500));
  EXPECT_TRUE(bridge_.engine().LocalStatus(SampleKey(1))->defect_remote_ccm);
  association_.settings.mep_ids = {1, 2};
  Apply();
  EXPECT_FALSE(bridge_.engine().LocalStatus(SampleKey(1))->defect_remote_ccm);
}

TEST_F(ConfigurationChange, OfTheIntervalHoldsForSendingAndWaiting) {
  association_.settings.ccm_interval = 3;
  Apply();
  EXPECT_EQ(kOk, RemoteState());
  bridge_.sent.clear();
  network_.Run(milliseconds(349));
  EXPECT_EQ(kOk, RemoteState());
  EXPECT_GE(bridge_.sent.size(), 3U);
  network_.Run(milliseconds(1));
  EXPECT_EQ(kFailed, RemoteState());
  const auto ccm = pdu::DecodeCcm(bridge_.sent.back().frame.pdu);
  EXPECT_EQ(3, ccm->interval);
}

TEST_F(ConfigurationChange, OfPlaceBeginsAnew) {
  mep().ifindex = 2;
  Apply();
  EXPECT_EQ(kStart, RemoteState());
  EXPECT_EQ(0U, bridge_.engine().Counters(SampleKey(1))->ccms_sent);
  Receive(1);
  EXPECT_EQ(kStart, RemoteState()) << "it is not on port 1 any more";
  Receive(2);
  EXPECT_EQ(kOk, RemoteState());
  Apply(4);
  EXPECT_EQ(kStart, RemoteState());
}

TEST_F(ConfigurationChange, ToInactiveForgetsAllAndBackBeginsAnew) {
  mep().admin_state = false;
  Apply();
  EXPECT_EQ(kIdle, RemoteState());
  Receive();
  EXPECT_EQ(kIdle, RemoteState());
  EXPECT_FALSE(bridge_.engine().NextDeadline());
  EXPECT_EQ(1U, bridge_.remote_changes.size());
  mep().admin_state = true;
  Apply();
  EXPECT_EQ(kStart, RemoteState());
  Receive();
  EXPECT_EQ(kOk, RemoteState());
}

TEST_F(ConfigurationChange, ToInactiveEndsDefectsAndTheirActions) {
  mep().fault_action = 2;
  Apply();
  network_.Run(seconds(7));
  ASSERT_TRUE(bridge_.engine().LocalStatus(SampleKey(1))->shut_down);
  mep().admin_state = false;
  Apply();
  const LocalMepStatus status = *bridge_.engine().LocalStatus(SampleKey(1));
  EXPECT_FALSE(status.shut_down);
  EXPECT_FALSE(status.defect_remote_ccm);
  EXPECT_FALSE(status.rdi);
  EXPECT_EQ(0U, status.highest_defect_priority);
  EXPECT_EQ(1, status.interface_status) << "its port is still there";
}

TEST_F(ConfigurationChange, OfThePortIsSeenInTheStatus) {
  bridge_.SetPort(1, 2, 1);
  EXPECT_EQ(1U, bridge_.local_changes.size());
  EXPECT_EQ(2, bridge_.engine().LocalStatus(SampleKey(1))->interface_status);
  EXPECT_EQ(1U, bridge_.engine().LocalStatus(SampleKey(1))->port_status);
  EXPECT_EQ(kOk, RemoteState());
  bridge_.engine().RemovePort(network_.now(), 1);
  const LocalMepStatus status = *bridge_.engine().LocalStatus(SampleKey(1));
  EXPECT_EQ(6, status.interface_status) << "not present";
  EXPECT_EQ(0U, status.port_status);
  EXPECT_EQ(Mac{}, status.mac);
  EXPECT_EQ(kIdle, RemoteState());
  EXPECT_EQ(2U, bridge_.local_changes.size());
}

TEST_F(ConfigurationChange, RemovesMepsAndAssociations) {
  association_.meps.clear();
  Apply();
  EXPECT_FALSE(bridge_.engine().LocalStatus(SampleKey(1)));
  EXPECT_FALSE(bridge_.engine().RemoteStatus(SampleKey(1), 2));
  EXPECT_FALSE(bridge_.engine().Counters(SampleKey(1)));
  EXPECT_FALSE(bridge_.engine().LastSequenceNumber(SampleKey(1), 2));
  EXPECT_FALSE(bridge_.engine().NextDeadline());
  EXPECT_EQ(Verdict::Pass, bridge_.Receive(1, Side::Wire, FrameOf(SampleCcm())));

  association_ = WithMep(SampleAssociation(), 1, SampleMep());
  Apply();
  EXPECT_EQ(kStart, RemoteState());
  bridge_.engine().RemoveAssociation(network_.now(), SampleMa());
  EXPECT_FALSE(bridge_.engine().LocalStatus(SampleKey(1)));
  EXPECT_FALSE(bridge_.engine().NextDeadline());
  EXPECT_EQ(Verdict::Pass, bridge_.Receive(1, Side::Wire, FrameOf(SampleCcm())));
  bridge_.engine().RemoveAssociation(network_.now(), SampleMa());
  bridge_.engine().ClearCounters(SampleKey(1));
}

TEST_F(ConfigurationChange, KeepsUnknownRemotesUnknown) {
  EXPECT_FALSE(RemoteState(1)) << "itself";
  EXPECT_FALSE(RemoteState(3));
  EXPECT_FALSE(RemoteState(65538)) << "2 and a bit beyond 16";
}

}  // namespace
}  // namespace cfm_mgr::engine
