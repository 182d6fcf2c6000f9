// SPDX-License-Identifier: Apache-2.0
#include "pdu/ais.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "samples.h"
#include "virtual_network.h"

namespace cfm_mgr::engine {
namespace {

using testing::IsEmpty;

/** A Down MEP at level 3 with AIS. */
class AisTest : public testing::Test {
 protected:
  AisTest() {
    bridge_.SetPort(1);
    association_.settings.ais.enabled = true;
    mep_.ccm_enabled = false;
  }
  void Configure() {
    bridge_.engine().SetAssociation(network_.now(), SampleMa(), SampleDomain(),
                                    WithMep(association_, 1, mep_));
  }
  void Receive(const std::vector<std::uint8_t>& pdu) {
    bridge_.Receive(1, Side::Wire, TaggedFrame({100}, pdu));
  }
  void ReceiveCcm() { Receive(pdu::Encode(SampleCcm())); }
  LocalMepStatus Status() { return *bridge_.engine().LocalStatus(SampleKey(1)); }

  VirtualNetwork network_;
  Bridge& bridge_ = network_.AddBridge();
  Association association_ = SampleAssociation();
  Mep mep_ = SampleMep();
};

TEST_F(AisTest, IsSentAtOnceAndEverySecondWhileCcmsAreMissing) {
  Configure();
  ReceiveCcm();
  network_.Run(milliseconds(3499));
  EXPECT_THAT(bridge_.sent, IsEmpty());
  network_.Run(milliseconds(2501));
  ASSERT_EQ(3U, bridge_.sent.size());
  for (std::size_t i = 0; i < 3; ++i) {
    const SentFrame& sent = bridge_.sent[i];
    EXPECT_EQ(milliseconds(3500) + seconds(i), sent.time);
    EXPECT_EQ(Side::Relay, sent.side) << "away from the MEPs that are lost";
    EXPECT_EQ((Mac{0x01, 0x80, 0xc2, 0x00, 0x00, 0x34}), sent.frame.destination);
    const auto ais = pdu::DecodeAis(sent.frame.pdu);
    ASSERT_TRUE(ais);
    EXPECT_EQ(4, ais->level);
    EXPECT_EQ(pdu::kAisOneSecond, ais->period);
  }
  ReceiveCcm();
  bridge_.sent.clear();
  network_.Run(seconds(3));
  EXPECT_THAT(bridge_.sent, IsEmpty());
}

TEST_F(AisTest, IsSentAsItsSettingsSay) {
  association_.settings.ais = {true, 6, 6, 5, {10, 20}, false};
  Configure();
  network_.Run(milliseconds(3500) + minutes(1));
  ASSERT_EQ(4U, bridge_.sent.size());
  for (std::size_t i = 0; i < 4; ++i) {
    const SentFrame& sent = bridge_.sent[i];
    EXPECT_EQ(milliseconds(3500) + minutes(i / 2), sent.time);
    ASSERT_EQ(1U, sent.frame.tags.size());
    EXPECT_EQ(i % 2 == 0 ? 10 : 20, sent.frame.tags[0].vid);
    EXPECT_EQ(5, sent.frame.tags[0].pcp);
    EXPECT_EQ(6, pdu::DecodeAis(sent.frame.pdu)->level);
    EXPECT_EQ(pdu::kAisOneMinute, pdu::DecodeAis(sent.frame.pdu)->period);
  }
}

TEST_F(AisTest, OfAnUpMepGoesToTheWire) {
  mep_.direction = kUp;
  Configure();
  network_.Run(seconds(4));
  ASSERT_EQ(1U, bridge_.sent.size());
  EXPECT_EQ(Side::Wire, bridge_.sent[0].side);
}

TEST_F(AisTest, IsNotSentForRdiOrWhenItIsOff) {
  Configure();
  pdu::Ccm ccm = SampleCcm();
  ccm.rdi = true;
  Receive(pdu::Encode(ccm));
  network_.Run(seconds(3));
  EXPECT_THAT(bridge_.sent, IsEmpty());
  association_.settings.ais.enabled = false;
  Configure();
  network_.Run(seconds(10));
  EXPECT_TRUE(Status().defect_remote_ccm);
  EXPECT_THAT(bridge_.sent, IsEmpty());
}

TEST_F(AisTest, MeetsTheClientMepOfTheSamePort) {
  // The MEP of level 4 on the same port is the client of the one of level 3.
  Configure();
  bridge_.engine().SetAssociation({}, {"D1", "client"}, SampleDomain(4),
                                  WithMep(SampleAssociation(), 1, mep_));
  network_.Run(seconds(4));
  EXPECT_THAT(bridge_.sent, IsEmpty()) << "it goes no further";
  EXPECT_TRUE(bridge_.engine().LocalStatus({{"D1", "client"}, 1})->defect_ais);
  EXPECT_FALSE(Status().defect_ais);
}

TEST_F(AisTest, IsADefectForThreeAndAHalfPeriodsOfTheLastFrame) {
  association_.settings.ais.enabled = false;
  Configure();
  Receive(pdu::Encode(pdu::Ais{3, pdu::kAisOneSecond}));
  EXPECT_TRUE(Status().defect_ais);
  EXPECT_EQ(0U, Status().highest_defect_priority);
  network_.Run(milliseconds(3499));
  EXPECT_TRUE(Status().defect_ais);
  network_.Run(milliseconds(1));
  EXPECT_FALSE(Status().defect_ais);
  Receive(pdu::Encode(pdu::Ais{3, pdu::kAisOneMinute}));
  network_.Run(milliseconds(209999));
  EXPECT_TRUE(Status().defect_ais);
  network_.Run(milliseconds(1));
  EXPECT_FALSE(Status().defect_ais);
}

TEST_F(AisTest, EndsByThePeriodOfTheLastFrameWhenThePeriodChanges) {
  association_.settings.ais.enabled = false;
  Configure();
  Receive(pdu::Encode(pdu::Ais{3, pdu::kAisOneMinute}));
  network_.Run(seconds(60));
  Receive(pdu::Encode(pdu::Ais{3, pdu::kAisOneSecond}));
  network_.Run(milliseconds(3499));
  EXPECT_TRUE(Status().defect_ais);
  network_.Run(milliseconds(1));
  EXPECT_FALSE(Status().defect_ais);

  Receive(pdu::Encode(pdu::Ais{3, pdu::kAisOneSecond}));
  network_.Run(seconds(1));
  Receive(pdu::Encode(pdu::Ais{3, pdu::kAisOneMinute}));
  network_.Run(milliseconds(209999));
  EXPECT_TRUE(Status().defect_ais);
  network_.Run(milliseconds(1));
  EXPECT_FALSE(Status().defect_ais);
}

TEST_F(AisTest, IsSentAtAShorterPeriodAsSoonAsItIsConfigured) {
  association_.settings.ais.word_b = 6;
  Configure();
  network_.Run(seconds(10));
  ASSERT_EQ(1U, bridge_.sent.size());
  association_.settings.ais.word_b = 4;
  Configure();
  network_.Run(seconds(2));
  ASSERT_EQ(3U, bridge_.sent.size());
  EXPECT_EQ(seconds(11), bridge_.sent[1].time);
  EXPECT_EQ(pdu::kAisOneSecond, pdu::DecodeAis(bridge_.sent[1].frame.pdu)->period);
}

TEST_F(AisTest, IsPassedOnToTheNextLevel) {
  Configure();
  Receive(pdu::Encode(pdu::Ais{3, pdu::kAisOneSecond}));
  network_.Run(milliseconds(1));
  ASSERT_EQ(1U, bridge_.sent.size());
  EXPECT_EQ(4, pdu::DecodeAis(bridge_.sent[0].frame.pdu)->level);
}

TEST_F(AisTest, KeepsLostCcmsFromAlarmingOnlyWhereItShould) {
  for (const bool suppresses : {true, false}) {
    association_.settings.ais.flag_d = suppresses;
    Configure();
    bridge_.alarms.clear();
    for (int second = 0; second < 20; ++second) {
      Receive(pdu::Encode(pdu::Ais{3, pdu::kAisOneSecond}));
      network_.Run(seconds(1));
    }
    EXPECT_TRUE(Status().defect_remote_ccm);
    EXPECT_TRUE(Status().rdi);
    EXPECT_EQ(suppresses, bridge_.alarms.empty());
  }
}

TEST_F(AisTest, MalformedIsCountedAndChangesNothing) {
  Configure();
  Receive({0x60, 33, 0x05, 0x00, 0x00});
  Receive({0x60, 33, 0x04, 0x00});
  EXPECT_EQ(2U, bridge_.engine().DropsAt(1).malformed());
  EXPECT_FALSE(Status().defect_ais);
}

}  // namespace
}  // namespace cfm_mgr::engine
