// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pdu/ais.h"
#include "samples.h"
#include "virtual_network.h"

namespace cfm_mgr::engine {
namespace {

using testing::IsEmpty;

/** CCMs of the right association that a MEP of it must not send. */
std::vector<pdu::Ccm> WrongCcms() {
  pdu::Ccm own = SampleCcm();
  own.mep_id = 1;
  pdu::Ccm unlisted = SampleCcm();
  unlisted.mep_id = 3;
  pdu::Ccm other_interval = SampleCcm();
  other_interval.interval = 3;
  return {own, unlisted, other_interval};
}

/** CCMs that have come from elsewhere. */
std::vector<pdu::Ccm> ForeignCcms() {
  pdu::Ccm other_name = SampleCcm();
  other_name.maid = *pdu::EncodeMaid(4, "D1", 2, "A2");
  pdu::Ccm other_format = SampleCcm();
  other_format.maid = *pdu::EncodeMaid(2, "D1", 2, "A1");
  pdu::Ccm lower = SampleCcm();
  lower.level = 2;
  pdu::Ccm lowest = other_name;
  lowest.level = 0;
  return {other_name, other_format, lower, lowest};
}

/** MEP 1 of a bridge, which sees the frames that a test gives it. */
class DefectsTest : public testing::Test {
 protected:
  DefectsTest() {
    bridge_.SetPort(1);
    Configure(SampleMep());
  }
  void Configure(const Mep& mep) {
    bridge_.engine().SetAssociation(network_.now(), SampleMa(), SampleDomain(),
                                    WithMep(association_, 1, mep));
  }
  void Receive(const pdu::Ccm& ccm) { bridge_.Receive(1, Side::Wire, FrameOf(ccm)); }
  LocalMepStatus Status() { return *bridge_.engine().LocalStatus(SampleKey(1)); }
  RemoteMepStatus Remote(std::uint32_t mep_id = 2) {
    return *bridge_.engine().RemoteStatus(SampleKey(1), mep_id);
  }
  /** The flag of RDI in the next CCM that is sent. */
  bool SendsRdi() {
    const std::size_t before = bridge_.sent.size();
    while (bridge_.sent.size() == before) {
      network_.Run(*bridge_.engine().NextDeadline() - network_.now());
    }
    return pdu::DecodeCcm(bridge_.sent.back().frame.pdu)->rdi;
  }
  /** Every half second for as long, a CCM that is in order. */
  void KeepUp(Time duration) {
    for (Time left = duration; left > Time{}; left -= milliseconds(500)) {
      Receive(SampleCcm());
      network_.Run(milliseconds(500));
    }
  }

  VirtualNetwork network_;
  Bridge& bridge_ = network_.AddBridge();
  Association association_ = SampleAssociation();
};

TEST_F(DefectsTest, AreNoneWhileCcmsAreInOrder) {
  KeepUp(minutes(1));
  const LocalMepStatus status = Status();
  EXPECT_EQ(0U, status.highest_defect_priority);
  EXPECT_FALSE(status.rdi || status.defect_rdi || status.defect_mac_status);
  EXPECT_FALSE(status.defect_remote_ccm || status.defect_error_ccm || status.defect_xcon_ccm);
  EXPECT_FALSE(status.defect_ais || status.blocked || status.shut_down);
  EXPECT_EQ(bridge_.MacOf(1), status.mac);
  EXPECT_EQ(1, status.interface_status);
  EXPECT_EQ(2U, status.port_status);
  EXPECT_EQ(4U, Remote().state);
  EXPECT_FALSE(SendsRdi());
  EXPECT_THAT(bridge_.alarms, IsEmpty());
}

TEST_F(DefectsTest, RemoteCcmComesWithLossAndGoesWithTheNextCcm) {
  Receive(SampleCcm());
  network_.Run(milliseconds(3499));
  EXPECT_FALSE(Status().defect_remote_ccm);
  network_.Run(milliseconds(1));
  EXPECT_TRUE(Status().defect_remote_ccm);
  EXPECT_EQ(3U, Status().highest_defect_priority);
  EXPECT_EQ(3U, Remote().state);
  EXPECT_TRUE(Status().rdi);
  EXPECT_TRUE(SendsRdi());
  Receive(SampleCcm());
  EXPECT_FALSE(Status().defect_remote_ccm);
  EXPECT_FALSE(SendsRdi());
}

TEST_F(DefectsTest, RemoteCcmStaysWhileOneOfManyIsLost) {
  association_.settings.mep_ids = {1, 2, 3};
  Configure(SampleMep());
  KeepUp(seconds(4));
  EXPECT_TRUE(Status().defect_remote_ccm);
  EXPECT_EQ(4U, Remote(2).state);
  EXPECT_EQ(3U, Remote(3).state);
  pdu::Ccm third = SampleCcm();
  third.mep_id = 3;
  Receive(third);
  EXPECT_FALSE(Status().defect_remote_ccm);
}

TEST_F(DefectsTest, RdiIsSeenButNotReturned) {
  pdu::Ccm ccm = SampleCcm();
  ccm.rdi = true;
  Receive(ccm);
  EXPECT_TRUE(Status().defect_rdi);
  EXPECT_TRUE(Remote().rdi);
  EXPECT_EQ(1U, Status().highest_defect_priority);
  EXPECT_FALSE(Status().rdi);
  EXPECT_FALSE(SendsRdi());
  Receive(SampleCcm());
  EXPECT_FALSE(Status().defect_rdi);
}

struct Report {
  std::optional<std::uint8_t> interface_status;
  std::optional<std::uint8_t> port_status;
  bool defect = false;
};

TEST_F(DefectsTest, MacStatusFollowsTheStatusTlvs) {
  const Report reports[] = {
      {{}, {}, false}, {1, 2, false}, {{}, 1, true}, {1, 1, true}, {2, 2, true},   {3, 2, true},
      {4, 2, true},    {5, 2, true},  {6, {}, true}, {7, 2, true}, {1, {}, false},
  };
  for (const Report& report : reports) {
    pdu::Ccm ccm = SampleCcm();
    ccm.interface_status = report.interface_status;
    ccm.port_status = report.port_status;
    Receive(ccm);
    EXPECT_EQ(report.defect, Status().defect_mac_status)
        << int{report.interface_status.value_or(0)};
    EXPECT_EQ(report.defect ? 2U : 0U, Status().highest_defect_priority);
    EXPECT_EQ(report.defect, Status().rdi);
  }
}

TEST_F(DefectsTest, MacStatusNeedsAllPortsBlockedButOneInterfaceDown) {
  association_.settings.mep_ids = {1, 2, 3};
  Configure(SampleMep());
  pdu::Ccm second = SampleCcm();
  second.port_status = 1;
  pdu::Ccm third = SampleCcm();
  third.mep_id = 3;
  third.port_status = 2;
  Receive(second);
  Receive(third);
  EXPECT_FALSE(Status().defect_mac_status);
  third.port_status = 1;
  Receive(third);
  EXPECT_TRUE(Status().defect_mac_status);
  second.port_status = 2;
  Receive(second);
  EXPECT_FALSE(Status().defect_mac_status);
  second.interface_status = 2;
  Receive(second);
  EXPECT_TRUE(Status().defect_mac_status);
}

TEST_F(DefectsTest, MacStatusNeedsARemoteMep) {
  association_.settings.mep_ids = {1};
  Configure(SampleMep());
  EXPECT_FALSE(Status().defect_mac_status);
}

TEST_F(DefectsTest, EndWhenTheMepIsMadeInactiveAndDoNotComeBackWithIt) {
  Receive(WrongCcms()[0]);
  Receive(ForeignCcms()[0]);
  bridge_.Receive(1, Side::Wire, TaggedFrame({100}, pdu::Encode(pdu::Ais{3, pdu::kAisOneSecond})));
  EXPECT_TRUE(Status().defect_error_ccm && Status().defect_xcon_ccm && Status().defect_ais);
  Mep inactive = SampleMep();
  inactive.admin_state = false;
  Configure(inactive);
  Configure(SampleMep());
  EXPECT_FALSE(Status().defect_error_ccm || Status().defect_xcon_ccm || Status().defect_ais);
}

TEST_F(DefectsTest, MacStatusGoesWhenTheRemoteMepIsLost) {
  pdu::Ccm ccm = SampleCcm();
  ccm.interface_status = 2;
  Receive(ccm);
  network_.Run(milliseconds(3500));
  EXPECT_FALSE(Status().defect_mac_status);
  EXPECT_TRUE(Status().defect_remote_ccm);
}

TEST_F(DefectsTest, ErrorCcmComesFromOwnOrUnlistedMepsAndOtherIntervals) {
  for (const pdu::Ccm& wrong : WrongCcms()) {
    KeepUp(seconds(4));
    EXPECT_FALSE(Status().defect_error_ccm);
    Receive(wrong);
    EXPECT_TRUE(Status().defect_error_ccm) << wrong.mep_id;
    EXPECT_FALSE(Status().defect_xcon_ccm);
    EXPECT_EQ(4U, Status().highest_defect_priority);
    EXPECT_TRUE(Status().rdi);
  }
}

TEST_F(DefectsTest, CcmsInErrorDoNotKeepTheRemoteMepAlive) {
  Receive(SampleCcm());
  pdu::Ccm wrong = SampleCcm();
  wrong.interval = 3;
  for (int i = 0; i < 40; ++i) {
    Receive(wrong);
    network_.Run(milliseconds(100));
  }
  EXPECT_TRUE(Status().defect_remote_ccm);
}

TEST_F(DefectsTest, ErrorCcmLastsThreeAndAHalfIntervalsOfTheFaultyCcm) {
  pdu::Ccm wrong = SampleCcm();
  wrong.interval = 3;
  Receive(wrong);
  network_.Run(milliseconds(349));
  EXPECT_TRUE(Status().defect_error_ccm);
  network_.Run(milliseconds(1));
  EXPECT_FALSE(Status().defect_error_ccm);
}

TEST_F(DefectsTest, ErrorCcmIsNotCutShortByAFasterFaultyCcm) {
  pdu::Ccm wrong = SampleCcm();
  wrong.interval = 5;
  Receive(wrong);
  wrong.interval = 1;
  Receive(wrong);
  network_.Run(milliseconds(34999));
  EXPECT_TRUE(Status().defect_error_ccm);
  network_.Run(milliseconds(1));
  EXPECT_FALSE(Status().defect_error_ccm);
}

TEST_F(DefectsTest, XconCcmComesFromOtherAssociationsAndLowerLevels) {
  for (const pdu::Ccm& foreign : ForeignCcms()) {
    Receive(foreign);
    EXPECT_TRUE(Status().defect_xcon_ccm) << int{foreign.level};
    EXPECT_FALSE(Status().defect_error_ccm);
    EXPECT_EQ(5U, Status().highest_defect_priority);
    EXPECT_TRUE(Status().rdi);
    network_.Run(milliseconds(3499));
    EXPECT_TRUE(Status().defect_xcon_ccm);
    network_.Run(milliseconds(1));
    EXPECT_FALSE(Status().defect_xcon_ccm);
  }
}

TEST_F(DefectsTest, TheHighestDefectIsTheOneOfHighestPriority) {
  pdu::Ccm ccm = SampleCcm();
  ccm.rdi = true;
  Receive(ccm);
  EXPECT_EQ(1U, Status().highest_defect_priority);
  ccm.interface_status = 2;
  Receive(ccm);
  EXPECT_EQ(2U, Status().highest_defect_priority);
  network_.Run(milliseconds(3500));
  EXPECT_EQ(3U, Status().highest_defect_priority);
  Receive(WrongCcms()[0]);
  EXPECT_EQ(4U, Status().highest_defect_priority);
  Receive(ForeignCcms()[0]);
  EXPECT_EQ(5U, Status().highest_defect_priority);
}

TEST_F(DefectsTest, RdiIsSentForDefectsThatMayAlarmOnly) {
  Mep mep = SampleMep();
  mep.lowest_prio_defect = 4;
  Configure(mep);
  network_.Run(seconds(4));
  EXPECT_TRUE(Status().defect_remote_ccm);
  EXPECT_FALSE(Status().rdi);
  Receive(WrongCcms()[0]);
  EXPECT_TRUE(Status().rdi);
  mep.lowest_prio_defect = 6;
  Configure(mep);
  EXPECT_FALSE(Status().rdi);
  EXPECT_FALSE(SendsRdi());
}

TEST_F(DefectsTest, AnUpMepBehindABlockedPortMissesNoCcms) {
  Mep mep = SampleMep();
  mep.direction = kUp;
  Configure(mep);
  bridge_.SetPort(1, 1, 1);
  network_.Run(seconds(4));
  EXPECT_FALSE(Status().defect_remote_ccm);
  bridge_.SetPort(1, 1, 2);
  EXPECT_TRUE(Status().defect_remote_ccm);
}

TEST_F(DefectsTest, SequenceErrorsAreCounted) {
  pdu::Ccm ccm = SampleCcm();
  for (const std::uint32_t sequence : {10U, 11U, 13U, 14U, 14U}) {
    ccm.sequence = sequence;
    Receive(ccm);
  }
  EXPECT_EQ(2U, bridge_.engine().Counters(SampleKey(1))->ccm_sequence_errors);
  EXPECT_EQ(14U, bridge_.engine().LastSequenceNumber(SampleKey(1), 2));
  bridge_.engine().ClearCounters(SampleKey(1));
  EXPECT_EQ(0U, bridge_.engine().Counters(SampleKey(1))->ccm_sequence_errors);
}

TEST_F(DefectsTest, OfOneMomentAreNotifiedOnceAndUnchangedOnesNever) {
  Receive(SampleCcm());
  bridge_.local_changes.clear();
  bridge_.remote_changes.clear();
  KeepUp(minutes(1));
  EXPECT_THAT(bridge_.local_changes, IsEmpty());
  EXPECT_THAT(bridge_.remote_changes, IsEmpty());
  Receive(WrongCcms()[0]);
  Receive(WrongCcms()[0]);
  EXPECT_EQ(1U, bridge_.local_changes.size());
  EXPECT_THAT(bridge_.remote_changes, IsEmpty());
  network_.Run(milliseconds(3500));
  EXPECT_EQ(1U, bridge_.remote_changes.size());
}

TEST_F(DefectsTest, MalformedCcmsAreCountedAndChangeNothing) {
  Receive(SampleCcm());
  bridge_.local_changes.clear();
  Frame frame = FrameOf(ForeignCcms()[0]);
  frame.pdu.pop_back();
  bridge_.Receive(1, Side::Wire, frame);
  frame = FrameOf(ForeignCcms()[2]);
  frame.pdu[3] = 69;
  bridge_.Receive(1, Side::Wire, frame);
  frame.pdu.resize(3);
  bridge_.Receive(1, Side::Wire, frame);
  EXPECT_EQ(3U, bridge_.engine().DropsAt(1).malformed());
  EXPECT_FALSE(Status().defect_xcon_ccm);
  EXPECT_THAT(bridge_.local_changes, IsEmpty());
}

TEST_F(DefectsTest, CcmsToAnotherAddressAreCountedAndChangeNothing) {
  Frame frame = FrameOf(SampleCcm());
  frame.destination = {0x02, 0, 0, 0, 0, 0x77};
  bridge_.Receive(1, Side::Wire, frame);
  frame.destination = {0x01, 0x80, 0xc2, 0, 0, 0x3b};
  bridge_.Receive(1, Side::Wire, frame);
  EXPECT_EQ(2U, bridge_.engine().DropsAt(1).unexpected);
  EXPECT_EQ(2U, Remote().state);
  frame.destination = bridge_.MacOf(1);
  bridge_.Receive(1, Side::Wire, frame);
  EXPECT_EQ(4U, Remote().state);
}

TEST_F(DefectsTest, AlarmAfterTheAlarmTimeAndActAsLongAsTheFaultIsNotOver) {
  Mep mep = SampleMep();
  mep.fault_action = 1;
  Configure(mep);
  network_.Run(milliseconds(3500) + milliseconds(2499));
  EXPECT_TRUE(Status().defect_remote_ccm);
  EXPECT_THAT(bridge_.alarms, IsEmpty());
  EXPECT_FALSE(Status().blocked);
  network_.Run(milliseconds(1));
  ASSERT_EQ(1U, bridge_.alarms.size());
  EXPECT_EQ(3U, bridge_.alarms[0].priority);
  EXPECT_EQ(1U, bridge_.alarms[0].mep.mep_id);
  EXPECT_TRUE(Status().blocked);
  EXPECT_FALSE(Status().shut_down);
  KeepUp(milliseconds(10000));
  EXPECT_FALSE(Status().blocked);
  mep.fault_action = 2;
  Configure(mep);
  network_.Run(seconds(7));
  EXPECT_TRUE(Status().shut_down);
  EXPECT_FALSE(Status().blocked);
  EXPECT_EQ(2U, bridge_.alarms.size());
}

TEST_F(DefectsTest, TellWithTheBlockThatTheStatusChanged) {
  Mep mep = SampleMep();
  mep.fault_action = 1;
  Configure(mep);
  network_.Run(milliseconds(5999));
  bridge_.local_changes.clear();
  network_.Run(milliseconds(1));
  EXPECT_EQ(1U, bridge_.local_changes.size());
}

}  // namespace
}  // namespace cfm_mgr::engine
