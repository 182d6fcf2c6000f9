// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "samples.h"
#include "virtual_network.h"

namespace cfm_mgr::engine {
namespace {

/** MEPs on port 1 of one bridge; each has an association of its own, named after its level. */
class Demultiplexing : public testing::Test {
 protected:
  Demultiplexing() { bridge_.SetPort(1); }

  MaKey KeyOf(std::uint32_t level, std::int32_t direction) {
    return {"D1", (direction == kDown ? "down" : "up") + std::to_string(level)};
  }
  void AddMep(std::uint32_t level, std::int32_t direction = kDown,
              const std::vector<std::uint32_t>& vids = {100}, std::uint32_t inner_vid = 0) {
    Mep mep = SampleMep();
    mep.direction = direction;
    mep.inner_vid = inner_vid;
    mep.ccm_enabled = false;
    Association association = WithMep(SampleAssociation(), 1, mep);
    association.settings.vids = vids;
    bridge_.engine().SetAssociation(network_.now(), KeyOf(level, direction), SampleDomain(level),
                                    association);
  }
  bool SeesXcon(std::uint32_t level, std::int32_t direction = kDown) {
    return bridge_.engine().LocalStatus({KeyOf(level, direction), 1})->defect_xcon_ccm;
  }
  bool SeesRemote(std::uint32_t level, std::int32_t direction = kDown) {
    return bridge_.engine().RemoteStatus({KeyOf(level, direction), 1}, 2)->state == 4;
  }
  /** A CCM of MEP 2 of the association of a level and direction, sent at that level. */
  Frame CcmFor(std::uint32_t level, std::int32_t direction = kDown,
               const std::vector<std::uint16_t>& vids = {100}) {
    pdu::Ccm ccm = SampleCcm();
    ccm.level = static_cast<std::uint8_t>(level);
    ccm.maid = *pdu::EncodeMaid(4, "D1", 2, KeyOf(level, direction).ma_name);
    return TaggedFrame(vids, pdu::Encode(ccm));
  }
  /** A loopback reply, which nobody waits for. */
  Frame LbrAt(std::uint8_t level) {
    std::vector<std::uint8_t> pdu;
    pdu::Writer writer(pdu);
    pdu::Encode(writer, level, pdu::Opcode::Lbr, 0, 4);
    writer.Zeros(5);
    return TaggedFrame({100}, pdu);
  }
  Verdict FromWire(const Frame& frame) { return bridge_.Receive(1, Side::Wire, frame); }
  Verdict FromRelay(const Frame& frame) { return bridge_.Receive(1, Side::Relay, frame); }
  std::uint64_t LowLevelDrops() { return bridge_.engine().DropsAt(1).low_level; }

  VirtualNetwork network_;
  Bridge& bridge_ = network_.AddBridge();
};

TEST_F(Demultiplexing, PassesEverythingWhereThereIsNoMep) {
  EXPECT_EQ(Verdict::Pass, FromWire(CcmFor(3)));
  EXPECT_EQ(Verdict::Pass, FromRelay(CcmFor(3)));
  EXPECT_EQ(Verdict::Pass, bridge_.Receive(77, Side::Wire, CcmFor(3))) << "no such port";
}

TEST_F(Demultiplexing, GivesEachMepItsOwnLevelFromTheSideItFaces) {
  AddMep(5);
  AddMep(2);
  AddMep(4, kUp);
  EXPECT_EQ(Verdict::Stop, FromWire(CcmFor(2)));
  EXPECT_TRUE(SeesRemote(2));
  EXPECT_FALSE(SeesRemote(5));
  EXPECT_EQ(Verdict::Stop, FromWire(CcmFor(5)));
  EXPECT_TRUE(SeesRemote(5));
  EXPECT_EQ(Verdict::Stop, FromRelay(CcmFor(4, kUp)));
  EXPECT_TRUE(SeesRemote(4, kUp));
  EXPECT_EQ(0U, LowLevelDrops());
}

TEST_F(Demultiplexing, PassesLevelsAboveAllMepsBothWays) {
  AddMep(2);
  AddMep(4, kUp);
  for (const std::uint32_t level : {5U, 6U, 7U}) {
    EXPECT_EQ(Verdict::Pass, FromWire(CcmFor(level)));
    EXPECT_EQ(Verdict::Pass, FromRelay(CcmFor(level)));
  }
  EXPECT_FALSE(SeesXcon(2));
  EXPECT_FALSE(SeesXcon(4, kUp));
}

TEST_F(Demultiplexing, DropsLowerLevelsAtTheNearestMepWhichSeesACrossConnection) {
  AddMep(5);
  AddMep(3);
  EXPECT_EQ(Verdict::Stop, FromWire(CcmFor(4)));
  EXPECT_TRUE(SeesXcon(5));
  EXPECT_FALSE(SeesXcon(3));
  EXPECT_EQ(Verdict::Stop, FromWire(CcmFor(1)));
  EXPECT_TRUE(SeesXcon(3));
  EXPECT_EQ(2U, LowLevelDrops());
}

TEST_F(Demultiplexing, LooksAtNoLowerFramesButCcms) {
  AddMep(3);
  EXPECT_EQ(Verdict::Stop, FromWire(LbrAt(2)));
  EXPECT_FALSE(SeesXcon(3));
  EXPECT_EQ(1U, LowLevelDrops());
}

TEST_F(Demultiplexing, DropsOwnAndLowerLevelsFromBehind) {
  AddMep(3);
  AddMep(5, kUp);
  EXPECT_EQ(Verdict::Stop, FromRelay(CcmFor(5, kUp))) << "the Up MEP's own";
  EXPECT_TRUE(SeesRemote(5, kUp));
  EXPECT_EQ(Verdict::Stop, FromWire(CcmFor(5, kUp))) << "the Up MEP's own from behind";
  EXPECT_EQ(Verdict::Stop, FromWire(CcmFor(4))) << "past the Down MEP, not the Up MEP";
  EXPECT_EQ(2U, LowLevelDrops());
  EXPECT_FALSE(SeesXcon(5, kUp));
  EXPECT_FALSE(SeesXcon(3));
}

TEST_F(Demultiplexing, DropsADownMepsLevelsFromTheRelay) {
  AddMep(3);
  EXPECT_EQ(Verdict::Stop, FromRelay(CcmFor(3)));
  EXPECT_EQ(Verdict::Stop, FromRelay(CcmFor(2)));
  EXPECT_EQ(Verdict::Pass, FromRelay(CcmFor(4)));
  EXPECT_FALSE(SeesRemote(3));
  EXPECT_FALSE(SeesXcon(3));
  EXPECT_EQ(2U, LowLevelDrops());
}

TEST_F(Demultiplexing, KeepsVlansApart) {
  AddMep(3);
  EXPECT_EQ(Verdict::Pass, FromWire(CcmFor(3, kDown, {101})));
  EXPECT_EQ(Verdict::Pass, FromWire(CcmFor(3, kDown, {})));
  EXPECT_EQ(Verdict::Pass, FromWire(CcmFor(3, kDown, {100, 7}))) << "a service inside it";
  EXPECT_FALSE(SeesRemote(3));
  EXPECT_EQ(Verdict::Stop, FromWire(CcmFor(3, kDown, {100})));
  EXPECT_TRUE(SeesRemote(3));
}

TEST_F(Demultiplexing, TakesEveryVidOfTheAssociation) {
  AddMep(3, kDown, {100, 200});
  EXPECT_EQ(Verdict::Stop, FromWire(CcmFor(3, kDown, {200})));
  EXPECT_TRUE(SeesRemote(3));
}

TEST_F(Demultiplexing, TakesUntaggedAndPriorityTaggedFramesWithoutVids) {
  AddMep(3, kDown, {});
  AddMep(4, kDown, {});
  EXPECT_EQ(Verdict::Stop, FromWire(CcmFor(3, kDown, {})));
  EXPECT_TRUE(SeesRemote(3));
  EXPECT_EQ(Verdict::Stop, FromWire(CcmFor(4, kDown, {0})));
  EXPECT_TRUE(SeesRemote(4));
  EXPECT_EQ(Verdict::Pass, FromWire(CcmFor(3, kDown, {100})));
}

TEST_F(Demultiplexing, TakesBothTagsOfAnInnerService) {
  AddMep(3, kDown, {100}, 7);
  EXPECT_EQ(Verdict::Pass, FromWire(CcmFor(3, kDown, {100})));
  EXPECT_EQ(Verdict::Pass, FromWire(CcmFor(3, kDown, {100, 8})));
  EXPECT_EQ(Verdict::Stop, FromWire(CcmFor(3, kDown, {100, 7})));
  EXPECT_TRUE(SeesRemote(3));
}

TEST_F(Demultiplexing, PassesFramesThatAreNoCfmOfThisBridge) {
  AddMep(3);
  EXPECT_EQ(Verdict::Pass, FromWire(CcmFor(3, kDown, {100, 7, 8}))) << "three tags";
}

TEST_F(Demultiplexing, CountsOpcodesThatNobodyTakes) {
  AddMep(3);
  Frame frame = LbrAt(3);
  for (const std::uint8_t opcode : std::vector<std::uint8_t>{0, 35, 45, 99, 255}) {
    frame.pdu[1] = opcode;
    EXPECT_EQ(Verdict::Stop, FromWire(frame));
  }
  EXPECT_EQ(5U, bridge_.engine().DropsAt(1).unknown);
}

TEST_F(Demultiplexing, LeavesInactiveMepsOut) {
  Mep mep = SampleMep();
  mep.admin_state = false;
  bridge_.engine().SetAssociation({}, KeyOf(3, kDown), SampleDomain(3),
                                  WithMep(SampleAssociation(), 1, mep));
  EXPECT_EQ(Verdict::Pass, FromWire(CcmFor(3)));
  EXPECT_EQ(Verdict::Pass, FromWire(CcmFor(1)));
}

TEST_F(Demultiplexing, GivesAFrameToOneOfTwoMepsInOnePlace) {
  AddMep(3);
  bridge_.engine().SetAssociation({}, {"D1", "zzz"}, SampleDomain(3),
                                  WithMep(SampleAssociation(), 1, SampleMep()));
  FromWire(CcmFor(3));
  EXPECT_TRUE(SeesRemote(3));
  EXPECT_FALSE(bridge_.engine().LocalStatus({{"D1", "zzz"}, 1})->defect_xcon_ccm);
}

}  // namespace
}  // namespace cfm_mgr::engine
