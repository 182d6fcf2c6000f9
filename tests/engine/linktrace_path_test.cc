// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/addresses.h"
#include "engine/linktrace_responder.h"
#include "pdu/linktrace.h"
#include "traced_line.h"

namespace cfm_mgr::engine {
namespace {

using pdu::Opcode;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::uint8_t kHit = 1;
constexpr std::uint8_t kFdb = 2;
constexpr std::uint8_t kMpdb = 3;
constexpr std::uint8_t kOk = 1;

using LinktracePath = TracedLine;

TEST_F(LinktracePath, FindsEveryBridgeBetweenDownMeps) {
  Build(5, Ends::Down);
  const auto replies = Trace();
  ASSERT_THAT(replies, SizeIs(4));
  for (std::size_t i = 0; i < 3; ++i) {
    const LinktraceReply& reply = replies[i];
    Bridge& bridge = line_->At(i + 1);
    EXPECT_EQ(63 - i, reply.ttl);
    EXPECT_EQ(kFdb, reply.relay_action);
    EXPECT_TRUE(reply.forwarded);
    EXPECT_FALSE(reply.terminal_mep);
    EXPECT_TRUE(reply.use_fdb_only);
    ASSERT_TRUE(reply.ingress && reply.egress);
    EXPECT_EQ(kOk, reply.ingress->action);
    EXPECT_EQ(bridge.MacOf(kLeft), reply.ingress->mac);
    EXPECT_EQ(kOk, reply.egress->action);
    EXPECT_EQ(bridge.MacOf(kRight), reply.egress->mac);
    EXPECT_EQ(bridge.MacOf(kLeft), reply.source);
  }
  const LinktraceReply& last = replies[3];
  EXPECT_EQ(60, last.ttl);
  EXPECT_EQ(kHit, last.relay_action);
  EXPECT_TRUE(last.terminal_mep);
  EXPECT_FALSE(last.forwarded);
  EXPECT_EQ(line_->LastMepMac(), last.source);
  EXPECT_FALSE(last.egress);
}

TEST_F(LinktracePath, ChainsTheEgressIdentifiers) {
  Build(4, Ends::Down);
  const auto replies = Trace();
  ASSERT_THAT(replies, SizeIs(3));
  EXPECT_EQ(EgressIdentifierOf(line_->FirstMepMac()), replies[0].last_egress);
  EXPECT_EQ(replies[0].next_egress, replies[1].last_egress);
  EXPECT_EQ(replies[1].next_egress, replies[2].last_egress);
  EXPECT_EQ(pdu::EgressIdentifier{}, replies[2].next_egress);
}

TEST_F(LinktracePath, PassesOnTlvsThatAreNotKnown) {
  Build(4, Ends::Down);
  Trace();
  Frame ltm = SentBy(line_->First(), Opcode::Ltm).at(0).frame;
  const std::vector<std::uint8_t> tlvs = {31,  0, 4, 0,   0, 0x5e, 9,  // of an organisation
                                          200, 0, 1, 0xaa};            // of a type without meaning
  ltm.pdu.insert(ltm.pdu.end() - 1, tlvs.begin(), tlvs.end());
  line_->network.SendOverLink(line_->First(), kRight, ltm);
  line_->network.Run(seconds(2));
  for (const std::size_t i : {1U, 2U}) {
    const auto sent = SentBy(line_->At(i), Opcode::Ltm);
    ASSERT_THAT(sent, SizeIs(2));
    const std::vector<std::uint8_t>& pdu = sent[1].frame.pdu;
    EXPECT_EQ(sent[0].frame.pdu.size() + tlvs.size(), pdu.size());
    EXPECT_TRUE(std::equal(tlvs.begin(), tlvs.end(), pdu.end() - 1 - tlvs.size())) << i;
    EXPECT_EQ(64 - i, pdu::DecodeLtm(pdu)->ttl);
  }
}

TEST_F(LinktracePath, TellsHowTheReplyCame) {
  Build(2, Ends::Down);
  const auto replies = Trace();
  ASSERT_THAT(replies, SizeIs(1));
  EXPECT_EQ(line_->FirstMepMac(), replies[0].destination);
  EXPECT_EQ(line_->LastMepMac(), replies[0].source);
  EXPECT_EQ(100, replies[0].vid);
  EXPECT_EQ(6, replies[0].pcp);
  EXPECT_FALSE(replies[0].inner_vid);
  EXPECT_EQ(3, replies[0].level);
  EXPECT_EQ(started_.transaction_id, replies[0].transaction_id);
  EXPECT_EQ(5, replies[0].ingress->port_id_subtype);
  EXPECT_EQ((std::vector<std::uint8_t>{'p', 'o', 'r', 't', '1'}), replies[0].ingress->port_id);
}

TEST_F(LinktracePath, TellsBothTagsOfAReply) {
  line_ = std::make_unique<Line>(2, Ends::Down);
  for (const std::size_t end : {0U, 1U}) {
    Association association = line_->AssociationOf(end);
    for (auto& entry : association.meps) entry.second.inner_vid = 7;
    line_->Configure(end, SampleDomain(), association);
  }
  line_->Settle();
  const auto replies = Trace();
  ASSERT_THAT(replies, SizeIs(1));
  EXPECT_EQ(100, replies[0].vid);
  EXPECT_EQ(7, replies[0].inner_vid);
  EXPECT_EQ(6, replies[0].inner_pcp);
}

TEST_F(LinktracePath, GoesThroughItsOwnBridgeFromAnUpMep) {
  Build(3, Ends::Up);
  const auto replies = Trace();
  ASSERT_THAT(replies, SizeIs(3));
  // The MIP of its own bridge's other port comes first: it has an egress alone.
  EXPECT_EQ(63, replies[0].ttl);
  EXPECT_FALSE(replies[0].ingress);
  ASSERT_TRUE(replies[0].egress);
  EXPECT_EQ(line_->First().MacOf(kRight), replies[0].egress->mac);
  EXPECT_EQ(kFdb, replies[0].relay_action);
  EXPECT_TRUE(replies[0].forwarded);
  EXPECT_EQ(62, replies[1].ttl);
  EXPECT_TRUE(replies[1].ingress && replies[1].egress);
  // In the last bridge the ingress MIP answers for the Up MEP on the egress port.
  const LinktraceReply& last = replies[2];
  EXPECT_EQ(61, last.ttl);
  EXPECT_EQ(kHit, last.relay_action);
  EXPECT_TRUE(last.terminal_mep);
  EXPECT_FALSE(last.forwarded);
  EXPECT_EQ(line_->Last().MacOf(kLeft), last.source);
  ASSERT_TRUE(last.egress);
  EXPECT_EQ(line_->LastMepMac(), last.egress->mac);
}

TEST_F(LinktracePath, IsAnsweredByAnUpMepWhereTheIngressHasNoMip) {
  line_ = std::make_unique<Line>(3, Ends::Up);
  Association without_mips = line_->AssociationOf(2);
  without_mips.settings.mhf_creation = 1;
  line_->Configure(2, SampleDomain(), without_mips);
  line_->Settle();
  const auto replies = Trace();
  ASSERT_THAT(replies, SizeIs(3));
  EXPECT_EQ(kHit, replies[2].relay_action);
  EXPECT_TRUE(replies[2].terminal_mep);
  EXPECT_FALSE(replies[2].ingress);
  EXPECT_EQ(line_->LastMepMac(), replies[2].egress->mac);
  EXPECT_EQ(line_->LastMepMac(), replies[2].source);
}

TEST_F(LinktracePath, IsNotAnsweredByBridgesWithoutMips) {
  line_ = std::make_unique<Line>(4, Ends::Down);
  line_->At(1).engine().RemoveAssociation(Time{}, SampleMa());
  line_->Settle();
  const auto replies = Trace();
  ASSERT_THAT(replies, SizeIs(2));
  EXPECT_EQ(63, replies[0].ttl) << "the first bridge relayed the LTM as any other frame";
  EXPECT_EQ(line_->At(2).MacOf(kLeft), replies[0].source);
}

TEST_F(LinktracePath, EndsWhereItsTtlDoes) {
  Build(5, Ends::Down);
  const auto replies = Trace(2);
  ASSERT_THAT(replies, SizeIs(2));
  EXPECT_EQ(1, replies[0].ttl);
  EXPECT_TRUE(replies[0].forwarded);
  EXPECT_EQ(0, replies[1].ttl);
  EXPECT_FALSE(replies[1].forwarded);
  EXPECT_EQ(line_->At(2).MacOf(kLeft), replies[1].source);
}

TEST_F(LinktracePath, HasATtlOf64UnlessAskedForAnother) {
  Build(2, Ends::Down);
  EXPECT_EQ(63, Trace(0).at(0).ttl);
  const pdu::Ltm ltm = *pdu::DecodeLtm(SentBy(line_->First(), Opcode::Ltm).at(0).frame.pdu);
  EXPECT_EQ(64, ltm.ttl);
  EXPECT_TRUE(ltm.use_fdb_only);
  EXPECT_EQ(line_->FirstMepMac(), ltm.original);
  EXPECT_EQ(line_->LastMepMac(), ltm.target);
  EXPECT_EQ(LtmGroupAddress(3), SentBy(line_->First(), Opcode::Ltm).at(0).frame.destination);
}

TEST_F(LinktracePath, StopsBeforeABlockedPort) {
  Build(4, Ends::Down);
  line_->At(1).SetPort(kRight, 1, 1);
  const auto replies = Trace();
  ASSERT_THAT(replies, SizeIs(1));
  EXPECT_EQ(3, replies[0].egress->action);
  EXPECT_FALSE(replies[0].forwarded);
}

TEST_F(LinktracePath, StopsAfterABlockedPort) {
  Build(4, Ends::Down);
  line_->At(1).SetPort(kLeft, 1, 1);
  const auto replies = Trace();
  ASSERT_THAT(replies, SizeIs(1));
  EXPECT_EQ(3, replies[0].ingress->action);
  EXPECT_FALSE(replies[0].forwarded);
}

TEST_F(LinktracePath, StopsBeforeAPortThatIsDown) {
  Build(4, Ends::Down);
  line_->At(2).SetPort(kRight, 2, 2);
  const auto replies = Trace();
  ASSERT_THAT(replies, SizeIs(2));
  EXPECT_EQ(2, replies[1].egress->action);
  EXPECT_FALSE(replies[1].forwarded);
}

TEST_F(LinktracePath, StopsBeforeAPortOutsideTheVlan) {
  Build(4, Ends::Down);
  line_->At(1).relay.Exclude(kRight);
  const auto replies = Trace();
  ASSERT_THAT(replies, SizeIs(1));
  EXPECT_EQ(4, replies[0].egress->action);
  EXPECT_FALSE(replies[0].forwarded);
}

TEST_F(LinktracePath, FindsItsWayByTheMipDatabaseWhenItMay) {
  Build(4, Ends::Down);
  line_->At(1).SetPort(3);  // With a third port flooding tells no way.
  line_->At(1).relay.StopLearning();
  EXPECT_THAT(Trace(64, true), IsEmpty());
  const auto replies = Trace(64, false);
  ASSERT_THAT(replies, SizeIs(3));
  EXPECT_EQ(kMpdb, replies[0].relay_action);
  EXPECT_FALSE(replies[0].use_fdb_only);
  EXPECT_EQ(kFdb, replies[1].relay_action);
  EXPECT_EQ(kHit, replies[2].relay_action);
}

TEST_F(LinktracePath, ReachesThroughMepsOfLowerLevels) {
  Build(3, Ends::Down);
  // Each port of the bridge in between gets a Down MEP of level 1; the MIPs are explicit ones.
  Association low = SampleAssociation();
  low.meps[11] = SampleMep();
  low.meps[12] = SampleMep();
  low.meps[12].ifindex = kRight;
  line_->At(1).engine().SetAssociation(line_->network.now(), {"D0", "A0"}, SampleDomain(1), low);
  Association explicit_mips = line_->AssociationOf(1);
  explicit_mips.settings.mhf_creation = 4;
  DomainSettings domain = SampleDomain();
  domain.mhf_creation = 3;
  line_->Configure(1, domain, explicit_mips);
  const auto replies = Trace();
  ASSERT_THAT(replies, SizeIs(2));
  EXPECT_EQ(kFdb, replies[0].relay_action);
  EXPECT_TRUE(replies[0].ingress && replies[0].egress);
  EXPECT_EQ(kHit, replies[1].relay_action);
}

TEST_F(LinktracePath, DoesNotPassAMepOfAHigherLevel) {
  for (const std::int32_t direction : {kDown, kUp}) {
    Build(3, Ends::Down);
    Association high = SampleAssociation();
    high.meps[11] = SampleMep();
    high.meps[11].direction = direction;
    high.meps[11].ifindex = kRight;
    line_->At(1).engine().SetAssociation(line_->network.now(), {"D5", "A5"}, SampleDomain(5), high);
    const auto replies = Trace();
    ASSERT_THAT(replies, SizeIs(1)) << direction;
    EXPECT_FALSE(replies[0].forwarded);
    EXPECT_FALSE(replies[0].egress);
    EXPECT_THAT(SentBy(line_->At(1), Opcode::Ltm), IsEmpty());
  }
}

TEST_F(LinktracePath, EndsAtAMepThatIsNotItsTarget) {
  Build(4, Ends::Down);
  // An Up MEP 3 of the association on the way, facing back.
  Association boundary = line_->AssociationOf(2);
  boundary.settings.mep_ids = {1, 2, 3};
  boundary.meps[3] = SampleMep();
  boundary.meps[3].direction = kUp;
  boundary.meps[3].ifindex = kRight;
  line_->Configure(2, SampleDomain(), boundary);
  const auto replies = Trace();
  ASSERT_THAT(replies, SizeIs(2));
  EXPECT_EQ(kFdb, replies[1].relay_action);
  EXPECT_TRUE(replies[1].terminal_mep);
  EXPECT_FALSE(replies[1].forwarded);
  EXPECT_EQ(line_->At(2).MacOf(kRight), replies[1].egress->mac);
}

}  // namespace
}  // namespace cfm_mgr::engine
