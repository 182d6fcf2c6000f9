// SPDX-License-Identifier: Apache-2.0
#include "engine/linktrace_responder.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace cfm_mgr::engine {
namespace {

constexpr std::uint16_t kVid = 100;
constexpr std::uint8_t kLevel = 4;
constexpr Mac kOriginal = {2, 0, 0, 0, 9, 1};
constexpr Mac kTarget = {2, 0, 0, 0, 9, 2};

Mac MacOf(PortId port) { return {2, 0, 0, 0, 0, static_cast<std::uint8_t>(port)}; }

/** A bridge with three ports, on which there is what a test puts there. */
class FakeBridge : public LinktraceBridge {
 public:
  FakeBridge() {
    for (const PortId port : {1U, 2U, 3U}) {
      ports[port] = {MacOf(port), 1, 2, "p" + std::to_string(port)};
      members.insert(port);
    }
  }

  const PortInfo* FindPort(PortId port) const override {
    const auto found = ports.find(port);
    return found == ports.end() ? nullptr : &found->second;
  }
  EgressPoint PointAt(PortId port, std::uint16_t vid, std::uint8_t level) const override {
    EXPECT_EQ(kVid, vid);
    EXPECT_EQ(kLevel, level);
    const auto found = points.find(port);
    return found == points.end() ? EgressPoint{} : found->second;
  }
  std::optional<PortId> FindOwnPort(std::uint16_t, std::uint8_t,
                                    const Mac& address) const override {
    for (const auto& [port, point] : points) {
      if ((point.mip || point.up_mep) && MacOf(port) == address) return port;
    }
    return std::nullopt;
  }
  EgressPorts FindEgress(PortId ingress, std::uint16_t, const Mac&) override {
    EgressPorts egress;
    egress.learnt = learnt;
    for (const PortId port : members) {
      if (port != ingress) egress.flooded.push_back(port);
    }
    return egress;
  }
  std::optional<PortId> FindInMipDatabase(std::uint16_t, const Mac&) const override {
    return in_mip_database;
  }

  std::map<PortId, PortInfo> ports;
  std::map<PortId, EgressPoint> points;
  std::set<PortId> members;
  std::optional<PortId> learnt;
  std::optional<PortId> in_mip_database;
};

pdu::Ltm SampleLtm() {
  pdu::Ltm ltm;
  ltm.level = kLevel;
  ltm.use_fdb_only = true;
  ltm.transaction_id = 77;
  ltm.ttl = 64;
  ltm.original = kOriginal;
  ltm.target = kTarget;
  ltm.egress_id = EgressIdentifierOf(kOriginal);
  return ltm;
}

constexpr LtmArrival kAtDownMhf{1, Side::Wire, false, kVid};
constexpr LtmArrival kAtDownMep{1, Side::Wire, true, kVid};
constexpr LtmArrival kAtUpMhf{2, Side::Relay, false, kVid};
constexpr LtmArrival kAtUpMep{2, Side::Relay, true, kVid};

constexpr auto kHit = static_cast<std::uint8_t>(pdu::RelayAction::Hit);
constexpr auto kFdb = static_cast<std::uint8_t>(pdu::RelayAction::Fdb);
constexpr auto kMpdb = static_cast<std::uint8_t>(pdu::RelayAction::Mpdb);
constexpr auto kOk = static_cast<std::uint8_t>(pdu::PortAction::Ok);
constexpr auto kPortDown = static_cast<std::uint8_t>(pdu::PortAction::Down);
constexpr auto kBlocked = static_cast<std::uint8_t>(pdu::PortAction::Blocked);
constexpr auto kNotInVlan = static_cast<std::uint8_t>(pdu::PortAction::Vid);

class LinktraceResponderTest : public ::testing::Test {
 protected:
  std::optional<LinktraceAnswer> Answer(const LtmArrival& arrival) {
    return AnswerLtm(bridge_, arrival, ltm_);
  }
  /** The answer of a port's Down MHF when the target is behind port 2, which has an Up MHF. */
  LinktraceAnswer AnswerOnTheWay() {
    bridge_.learnt = 2;
    bridge_.points[2].mip = true;
    const auto answer = Answer(kAtDownMhf);
    EXPECT_TRUE(answer);
    return answer.value_or(LinktraceAnswer{});
  }

  FakeBridge bridge_;
  pdu::Ltm ltm_ = SampleLtm();
};

TEST_F(LinktraceResponderTest, ForwardsOnTheWayToTheTarget) {
  const LinktraceAnswer answer = AnswerOnTheWay();
  EXPECT_EQ(kLevel, answer.ltr.level);
  EXPECT_EQ(77U, answer.ltr.transaction_id);
  EXPECT_EQ(63, answer.ltr.ttl);
  EXPECT_EQ(kFdb, answer.ltr.relay_action);
  EXPECT_TRUE(answer.ltr.forwarded);
  EXPECT_TRUE(answer.ltr.use_fdb_only);
  EXPECT_FALSE(answer.ltr.terminal_mep);
  EXPECT_EQ(ltm_.egress_id, answer.ltr.last_egress);
  EXPECT_EQ(EgressIdentifierOf(MacOf(2)), answer.ltr.next_egress);
}

TEST_F(LinktraceResponderTest, NamesBothPortsThatHaveMhfs) {
  const LinktraceAnswer answer = AnswerOnTheWay();
  ASSERT_TRUE(answer.ltr.ingress);
  EXPECT_EQ(kOk, answer.ltr.ingress->action);
  EXPECT_EQ(MacOf(1), answer.ltr.ingress->mac);
  EXPECT_EQ(5, answer.ltr.ingress->port_id_subtype);
  EXPECT_EQ(pdu::OctetsOf("p1"), answer.ltr.ingress->port_id);
  ASSERT_TRUE(answer.ltr.egress);
  EXPECT_EQ(kOk, answer.ltr.egress->action);
  EXPECT_EQ(MacOf(2), answer.ltr.egress->mac);
  EXPECT_EQ(pdu::OctetsOf("p2"), answer.ltr.egress->port_id);
}

TEST_F(LinktraceResponderTest, ForwardsTheLtmWithOneHopLessAndItsOwnName) {
  const LinktraceAnswer answer = AnswerOnTheWay();
  ASSERT_TRUE(answer.forwarded);
  EXPECT_EQ(2U, answer.forwarded->port);
  EXPECT_EQ(MacOf(2), answer.forwarded->source);
  EXPECT_EQ(63, answer.forwarded->ltm.ttl);
  EXPECT_EQ(EgressIdentifierOf(MacOf(2)), answer.forwarded->ltm.egress_id);
  EXPECT_EQ(kOriginal, answer.forwarded->ltm.original);
  EXPECT_EQ(kTarget, answer.forwarded->ltm.target);
  EXPECT_TRUE(answer.forwarded->ltm.use_fdb_only);
  EXPECT_FALSE(answer.forwarded->ltm.sender_id) << "it may not tell";
}

TEST_F(LinktraceResponderTest, LeavesOutAnEgressPortWithoutMp) {
  bridge_.learnt = 2;
  const auto answer = Answer(kAtDownMhf);
  ASSERT_TRUE(answer);
  EXPECT_FALSE(answer->ltr.egress);
  EXPECT_TRUE(answer->ltr.forwarded);
}

TEST_F(LinktraceResponderTest, DoesNotAnswerATtlOfZero) {
  bridge_.learnt = 2;
  ltm_.ttl = 0;
  EXPECT_FALSE(Answer(kAtDownMhf));
}

TEST_F(LinktraceResponderTest, AnswersButDoesNotForwardATtlOfOne) {
  ltm_.ttl = 1;
  const LinktraceAnswer answer = AnswerOnTheWay();
  EXPECT_EQ(0, answer.ltr.ttl);
  EXPECT_FALSE(answer.ltr.forwarded);
  EXPECT_FALSE(answer.forwarded);
  EXPECT_EQ(pdu::EgressIdentifier{}, answer.ltr.next_egress);
}

TEST_F(LinktraceResponderTest, HitsWhenTheTargetIsTheIngressMhf) {
  ltm_.target = MacOf(1);
  const auto answer = Answer(kAtDownMhf);
  ASSERT_TRUE(answer);
  EXPECT_EQ(kHit, answer->ltr.relay_action);
  EXPECT_TRUE(answer->ltr.ingress);
  EXPECT_FALSE(answer->ltr.egress);
  EXPECT_FALSE(answer->ltr.terminal_mep);
  EXPECT_FALSE(answer->forwarded);
}

TEST_F(LinktraceResponderTest, HitsWhenTheTargetIsTheEgressMhf) {
  ltm_.target = MacOf(3);
  bridge_.points[3].mip = true;
  const auto answer = Answer(kAtDownMhf);
  ASSERT_TRUE(answer);
  EXPECT_EQ(kHit, answer->ltr.relay_action);
  ASSERT_TRUE(answer->ltr.egress);
  EXPECT_EQ(MacOf(3), answer->ltr.egress->mac);
  EXPECT_FALSE(answer->forwarded);
}

TEST_F(LinktraceResponderTest, EndsAtAnUpMepOfTheEgressPort) {
  bridge_.points[2].up_mep = true;
  bridge_.learnt = 2;
  for (const bool is_target : {false, true}) {
    ltm_.target = is_target ? MacOf(2) : kTarget;
    const auto answer = Answer(kAtDownMhf);
    ASSERT_TRUE(answer);
    EXPECT_EQ(is_target ? kHit : kFdb, answer->ltr.relay_action);
    EXPECT_TRUE(answer->ltr.terminal_mep);
    EXPECT_TRUE(answer->ltr.egress);
    EXPECT_FALSE(answer->ltr.forwarded);
  }
}

TEST_F(LinktraceResponderTest, DoesNotForwardPastAMepThatGuardsTheEgressPort) {
  bridge_.points[2].guarded = true;
  const LinktraceAnswer answer = AnswerOnTheWay();
  EXPECT_FALSE(answer.forwarded);
  EXPECT_FALSE(answer.ltr.forwarded);
  EXPECT_FALSE(answer.ltr.terminal_mep);
}

TEST_F(LinktraceResponderTest, EndsAtADownMep) {
  ltm_.target = MacOf(1);
  const auto hit = Answer(kAtDownMep);
  ASSERT_TRUE(hit);
  EXPECT_EQ(kHit, hit->ltr.relay_action);
  EXPECT_TRUE(hit->ltr.terminal_mep);
  EXPECT_TRUE(hit->ltr.ingress);

  ltm_.target = kTarget;
  bridge_.learnt = 2;
  bridge_.points[2].mip = true;
  const auto passed_by = Answer(kAtDownMep);
  ASSERT_TRUE(passed_by);
  EXPECT_EQ(kFdb, passed_by->ltr.relay_action);
  EXPECT_TRUE(passed_by->ltr.terminal_mep);
  EXPECT_FALSE(passed_by->ltr.egress);
  EXPECT_FALSE(passed_by->forwarded);
}

TEST_F(LinktraceResponderTest, GivesAWayBehindADownMepButNoHitThere) {
  ltm_.target = MacOf(2);
  bridge_.points[2].mip = true;
  const auto answer = Answer(kAtDownMep);
  ASSERT_TRUE(answer);
  EXPECT_EQ(kFdb, answer->ltr.relay_action);
}

TEST_F(LinktraceResponderTest, IsSilentWhenTheWayToTheTargetIsBackOrNotKnown) {
  EXPECT_FALSE(Answer(kAtDownMhf)) << "two ports to flood";
  EXPECT_FALSE(Answer(kAtDownMep));
  bridge_.learnt = 1;
  EXPECT_FALSE(Answer(kAtDownMhf)) << "behind the port of entry";
}

TEST_F(LinktraceResponderTest, TakesTheOnlyOtherPortOfTheVlan) {
  bridge_.members.erase(3);
  const auto answer = Answer(kAtDownMhf);
  ASSERT_TRUE(answer);
  EXPECT_EQ(kFdb, answer->ltr.relay_action);
  EXPECT_EQ(2U, answer->forwarded->port);
}

TEST_F(LinktraceResponderTest, AsksTheMipDatabaseOnlyWhenItMay) {
  bridge_.in_mip_database = 3;
  EXPECT_FALSE(Answer(kAtDownMhf)) << "use-FDB-only";
  ltm_.use_fdb_only = false;
  const auto answer = Answer(kAtDownMhf);
  ASSERT_TRUE(answer);
  EXPECT_EQ(kMpdb, answer->ltr.relay_action);
  EXPECT_FALSE(answer->ltr.use_fdb_only);
  EXPECT_EQ(3U, answer->forwarded->port);
  bridge_.learnt = 2;
  EXPECT_EQ(kFdb, Answer(kAtDownMhf)->ltr.relay_action) << "what was learnt goes first";
}

TEST_F(LinktraceResponderTest, TellsWhyAPortWouldNotLetFramesThrough) {
  const auto with = [this](PortId port, auto change) {
    const FakeBridge before = FakeBridge();
    bridge_.ports = before.ports;
    bridge_.members = before.members;
    change(bridge_.ports[port]);
    return AnswerOnTheWay();
  };
  const auto down = [](PortInfo& port) { port.interface_status = 2; };
  const auto blocked = [](PortInfo& port) { port.port_status = 1; };
  const auto none = [](PortInfo&) {};
  EXPECT_EQ(kPortDown, with(1, down).ltr.ingress->action);
  EXPECT_EQ(kPortDown, with(2, down).ltr.egress->action);
  EXPECT_EQ(kBlocked, with(1, blocked).ltr.ingress->action);
  EXPECT_EQ(kBlocked, with(2, blocked).ltr.egress->action);
  for (const PortId port : {1U, 2U}) {
    EXPECT_FALSE(with(port, down).forwarded);
    EXPECT_FALSE(with(port, blocked).forwarded);
  }
  EXPECT_TRUE(with(1, none).forwarded);
}

TEST_F(LinktraceResponderTest, TellsWhichPortIsNotInTheVlan) {
  bridge_.members = {2, 3};
  EXPECT_EQ(kNotInVlan, AnswerOnTheWay().ltr.ingress->action);
  EXPECT_FALSE(AnswerOnTheWay().forwarded);
  bridge_.members = {1, 3};
  EXPECT_EQ(kNotInVlan, AnswerOnTheWay().ltr.egress->action);
  EXPECT_FALSE(AnswerOnTheWay().forwarded);
  bridge_.members = {};
  EXPECT_EQ(kOk, AnswerOnTheWay().ltr.egress->action) << "no relay that knows of VLANs";
}

TEST_F(LinktraceResponderTest, TakesAnInterfaceOfUnknownStatusForUp) {
  bridge_.ports[1].interface_status = 4;
  EXPECT_EQ(kOk, AnswerOnTheWay().ltr.ingress->action);
}

TEST_F(LinktraceResponderTest, AnswersAtTheUpMhfOfTheEgressPortAlone) {
  bridge_.points[2].mip = true;
  bridge_.points[3].mip = true;
  bridge_.learnt = 2;
  const auto answer = Answer(kAtUpMhf);
  ASSERT_TRUE(answer);
  EXPECT_FALSE(answer->ltr.ingress);
  ASSERT_TRUE(answer->ltr.egress);
  EXPECT_EQ(MacOf(2), answer->ltr.egress->mac);
  EXPECT_EQ(kFdb, answer->ltr.relay_action);
  ASSERT_TRUE(answer->forwarded);
  EXPECT_EQ(2U, answer->forwarded->port);
  EXPECT_FALSE(Answer({3, Side::Relay, false, kVid})) << "the target is not behind this one";
}

TEST_F(LinktraceResponderTest, HitsAtAnUpMhfOrUpMep) {
  ltm_.target = MacOf(2);
  const auto mhf = Answer(kAtUpMhf);
  ASSERT_TRUE(mhf);
  EXPECT_EQ(kHit, mhf->ltr.relay_action);
  EXPECT_FALSE(mhf->ltr.terminal_mep);
  EXPECT_FALSE(mhf->forwarded);
  const auto mep = Answer(kAtUpMep);
  ASSERT_TRUE(mep);
  EXPECT_EQ(kHit, mep->ltr.relay_action);
  EXPECT_TRUE(mep->ltr.terminal_mep);
}

TEST_F(LinktraceResponderTest, EndsAtAnUpMepBeforeTheTarget) {
  bridge_.learnt = 2;
  const auto answer = Answer(kAtUpMep);
  ASSERT_TRUE(answer);
  EXPECT_EQ(kFdb, answer->ltr.relay_action);
  EXPECT_TRUE(answer->ltr.terminal_mep);
  EXPECT_FALSE(answer->forwarded);
  bridge_.learnt = 3;
  EXPECT_FALSE(Answer(kAtUpMep));
}

TEST_F(LinktraceResponderTest, IsSilentOnAPortThatIsNotThere) {
  ltm_.target = MacOf(9);
  EXPECT_FALSE(Answer({9, Side::Wire, false, kVid}));
}

TEST_F(LinktraceResponderTest, LeavesOutANamelessPortsIdentifier) {
  bridge_.ports[1].name.clear();
  EXPECT_FALSE(AnswerOnTheWay().ltr.ingress->port_id_subtype);
  bridge_.ports[1].name.assign(300, 'x');
  EXPECT_EQ(255U, AnswerOnTheWay().ltr.ingress->port_id.size());
}

}  // namespace
}  // namespace cfm_mgr::engine
