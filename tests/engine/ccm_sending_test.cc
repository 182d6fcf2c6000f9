// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/addresses.h"
#include "engine/ccm_interval.h"
#include "samples.h"
#include "virtual_network.h"

namespace cfm_mgr::engine {
namespace {

class CcmSending : public testing::Test {
 protected:
  void Configure(const Association& association, const DomainSettings& domain = SampleDomain()) {
    bridge_.engine().SetAssociation(network_.now(), SampleMa(), domain, association);
  }
  void ConfigureMep(const Mep& mep) { Configure(WithMep(SampleAssociation(), 1, mep)); }

  /** The first CCM after @p duration; only CCMs are expected there. */
  pdu::Ccm NextCcm() {
    bridge_.sent.clear();
    while (bridge_.sent.empty()) network_.Run(*bridge_.engine().NextDeadline() - network_.now());
    const auto ccm = pdu::DecodeCcm(bridge_.sent.front().frame.pdu);
    EXPECT_TRUE(ccm);
    return ccm ? *ccm : pdu::Ccm{};
  }

  /** Lets an endpoint send each 10 ms for a while, and forgets what it sent but when it did last.
   */
  Time LastOfCcmsEachTenMilliseconds() {
    bridge_.SetPort(1);
    Association association = WithMep(SampleAssociation(), 1, SampleMep());
    association.settings.ccm_interval = 2;
    Configure(association);
    network_.Run(milliseconds(100));
    const Time last = bridge_.sent.back().time;
    bridge_.sent.clear();
    return last;
  }

  VirtualNetwork network_;
  Bridge& bridge_ = network_.AddBridge();
};

class CcmSendingAt : public CcmSending, public testing::WithParamInterface<std::uint8_t> {};

TEST_P(CcmSendingAt, KeepsTheIntervalForThousandsOfCcms) {
  constexpr std::size_t kCcms = 3000;
  const std::uint8_t code = GetParam();
  bridge_.SetPort(1);
  Association association = WithMep(SampleAssociation(), 1, SampleMep());
  association.settings.ccm_interval = code;
  association.settings.mep_ids = {1};
  Configure(association);
  network_.Run(Interval(code));
  EXPECT_EQ(Time{}, bridge_.sent.at(0).time) << "at once";
  EXPECT_GE(bridge_.sent.size(), 2U);
  network_.Run(ThreeIntervals(code) * (kCcms / 3));

  const std::vector<SentFrame>& sent = bridge_.sent;
  ASSERT_GE(sent.size(), kCcms + 1);
  const Time start = sent[1].time;
  for (std::size_t i = 1; i + 3 <= kCcms; i += 3) {
    const auto triples = static_cast<std::int64_t>(i / 3);
    ASSERT_EQ(start + ThreeIntervals(code) * triples, sent[i].time) << i;
    const Time gap = sent[i + 1].time - sent[i].time;
    ASSERT_LE(gap, Interval(code));
    ASSERT_GE(gap, Interval(code) - Time(1));
  }
  for (std::size_t i = 0; i < sent.size(); ++i) {
    const auto ccm = pdu::DecodeCcm(sent[i].frame.pdu);
    ASSERT_TRUE(ccm);
    ASSERT_EQ(i + 1, ccm->sequence);
    ASSERT_EQ(code, ccm->interval);
  }
}

INSTANTIATE_TEST_SUITE_P(Intervals, CcmSendingAt, testing::Values(1, 2, 3, 4, 5, 6, 7));

TEST_F(CcmSending, TellsWhoSendsIt) {
  bridge_.SetPort(1);
  ConfigureMep(SampleMep());
  const pdu::Ccm ccm = NextCcm();
  EXPECT_EQ(3, ccm.level);
  EXPECT_EQ(1, ccm.mep_id);
  EXPECT_EQ(*pdu::EncodeMaid(4, "D1", 2, "A1"), ccm.maid);
  EXPECT_EQ(std::optional<std::uint8_t>(2), ccm.port_status);
  EXPECT_EQ(std::optional<std::uint8_t>(1), ccm.interface_status);
  EXPECT_FALSE(ccm.sender_id);
  EXPECT_FALSE(ccm.rdi);
  const SentFrame& sent = bridge_.sent.front();
  EXPECT_EQ(1U, sent.port);
  EXPECT_EQ(Side::Wire, sent.side);
  EXPECT_EQ((Mac{0x01, 0x80, 0xc2, 0x00, 0x00, 0x33}), sent.frame.destination);
  EXPECT_EQ(bridge_.MacOf(1), sent.frame.source);
}

TEST_F(CcmSending, OfAnUpMepGoesToTheRelay) {
  bridge_.SetPort(1);
  Mep mep = SampleMep();
  mep.direction = kUp;
  ConfigureMep(mep);
  NextCcm();
  EXPECT_EQ(Side::Relay, bridge_.sent.front().side);
}

TEST_F(CcmSending, TagsWithPrimaryAndInnerVid) {
  bridge_.SetPort(1);
  ConfigureMep(SampleMep());
  NextCcm();
  const std::vector<VlanTag> tags = bridge_.sent.front().frame.tags;
  ASSERT_EQ(1U, tags.size());
  EXPECT_EQ(0x8100, tags[0].tpid);
  EXPECT_EQ(100, tags[0].vid);
  EXPECT_EQ(6, tags[0].pcp);

  Mep mep = SampleMep();
  mep.inner_vid = 55;
  ConfigureMep(mep);
  NextCcm();
  const std::vector<VlanTag> both = bridge_.sent.front().frame.tags;
  ASSERT_EQ(2U, both.size());
  EXPECT_EQ(0x88a8, both[0].tpid);
  EXPECT_EQ(100, both[0].vid);
  EXPECT_EQ(0x8100, both[1].tpid);
  EXPECT_EQ(55, both[1].vid);
  EXPECT_EQ(6, both[1].pcp);

  Association untagged = WithMep(SampleAssociation(), 1, SampleMep());
  untagged.settings.vids.clear();
  Configure(untagged);
  NextCcm();
  EXPECT_TRUE(bridge_.sent.front().frame.tags.empty());
}

TEST_F(CcmSending, TellsTheStatusOfThePortAsItIs) {
  bridge_.SetPort(1);
  ConfigureMep(SampleMep());
  NextCcm();
  bridge_.SetPort(1, 7, 1);
  const pdu::Ccm ccm = NextCcm();
  EXPECT_EQ(std::optional<std::uint8_t>(1), ccm.port_status);
  EXPECT_EQ(std::optional<std::uint8_t>(7), ccm.interface_status);
  EXPECT_EQ(2U, ccm.sequence) << "the change does not begin anew";
}

TEST_F(CcmSending, LeavesOutStatusesThatNoTlvHas) {
  bridge_.SetPort(1, 0, 0);
  ConfigureMep(SampleMep());
  const pdu::Ccm ccm = NextCcm();
  EXPECT_FALSE(ccm.port_status);
  EXPECT_FALSE(ccm.interface_status);
}

TEST_F(CcmSending, NamesTheSenderWhereDomainOrAssociationAllowsIt) {
  bridge_.SetPort(1);
  DomainSettings domain = SampleDomain();
  domain.sender_id = 2;
  Association association = WithMep(SampleAssociation(), 1, SampleMep());
  association.settings.sender_id = 5;
  Configure(association, domain);
  const pdu::Ccm ccm = NextCcm();
  ASSERT_TRUE(ccm.sender_id);
  EXPECT_EQ("02:00:00:00:01:01", pdu::ToText(*ccm.sender_id));
}

TEST_F(CcmSending, NeedsAnActiveMepAPortAnIntervalAndCcmsEnabled) {
  Mep inactive = SampleMep();
  inactive.admin_state = false;
  Mep silent = SampleMep();
  silent.ccm_enabled = false;
  Association no_interval = WithMep(SampleAssociation(), 1, SampleMep());
  no_interval.settings.ccm_interval = 0;
  Association no_maid = WithMep(SampleAssociation(), 1, SampleMep());
  no_maid.settings.format = 3;

  ConfigureMep(SampleMep());
  network_.Run(hours(1));
  EXPECT_TRUE(bridge_.sent.empty()) << "no port";
  bridge_.SetPort(1);
  for (const Association& association :
       {WithMep(SampleAssociation(), 1, inactive), WithMep(SampleAssociation(), 1, silent),
        no_interval, no_maid}) {
    Configure(association);
    bridge_.sent.clear();
    network_.Run(hours(1));
    EXPECT_TRUE(bridge_.sent.empty());
  }
  ConfigureMep(SampleMep());
  network_.Run(seconds(2));
  EXPECT_FALSE(bridge_.sent.empty());
  bridge_.engine().RemovePort(network_.now(), 1);
  bridge_.sent.clear();
  network_.Run(hours(1));
  EXPECT_TRUE(bridge_.sent.empty()) << "the port has gone";
  EXPECT_FALSE(bridge_.engine().NextDeadline()) << "nothing is running";
}

TEST_F(CcmSending, IsCounted) {
  bridge_.SetPort(1);
  ConfigureMep(SampleMep());
  network_.Run(minutes(1));
  LocalMepCounters counters = *bridge_.engine().Counters(SampleKey(1));
  EXPECT_EQ(bridge_.sent.size(), counters.ccms_sent);
  EXPECT_EQ(bridge_.sent.size(), counters.ccm_sequence_number);
  const std::uint32_t before = counters.ccm_sequence_number;
  bridge_.engine().ClearCounters(SampleKey(1));
  counters = *bridge_.engine().Counters(SampleKey(1));
  EXPECT_EQ(0U, counters.ccms_sent);
  EXPECT_EQ(before, counters.ccm_sequence_number) << "the numbers go on";
}

TEST_F(CcmSending, MakesNoBurstWhenItsOwnerWasBusy) {
  const Time last = LastOfCcmsEachTenMilliseconds();
  bridge_.engine().Advance(network_.now() + milliseconds(95));
  EXPECT_EQ(1U, bridge_.sent.size());
  const Time next = *bridge_.engine().NextDeadline();
  EXPECT_EQ(Time{}, (next - last) % milliseconds(10)) << "the phase is kept";
  EXPECT_GT(next, network_.now() + milliseconds(95));
}

TEST_F(CcmSending, MakesNoBurstWhileItsOwnerCatchesUp) {
  const Time last = LastOfCcmsEachTenMilliseconds();
  // The owner goes from frame to frame that has come in while it was held up for 95 ms.
  const Time present = network_.now() + milliseconds(95);
  for (const int at : {20, 40, 60, 80, 95}) {
    const Time now = network_.now() + milliseconds(at);
    bridge_.behind = present - now;
    bridge_.engine().Advance(now);
  }
  EXPECT_EQ(1U, bridge_.sent.size());
  const Time next = *bridge_.engine().NextDeadline();
  EXPECT_EQ(Time{}, (next - last) % milliseconds(10)) << "the phase is kept";
  EXPECT_GT(next, present);
}

TEST_F(CcmSending, SpreadsMepsThatStartTogether) {
  constexpr std::uint32_t kMeps = 100;
  std::set<Time> moments;
  for (std::uint32_t port = 1; port <= kMeps; ++port) {
    bridge_.SetPort(port);
    Mep mep = SampleMep();
    mep.ifindex = port;
    bridge_.engine().SetAssociation({}, {"D1", "A" + std::to_string(port)}, SampleDomain(),
                                    WithMep(SampleAssociation(), 1, mep));
  }
  network_.Run(seconds(10));
  for (const SentFrame& sent : bridge_.sent) {
    if (sent.time > seconds(9)) moments.insert(sent.time);
  }
  EXPECT_EQ(kMeps, moments.size());
  EXPECT_LT(*moments.begin(), seconds(9) + milliseconds(200));
  EXPECT_GT(*moments.rbegin(), seconds(9) + milliseconds(800));
}

TEST_F(CcmSending, IsTheSameInEveryRunOfASeed) {
  const auto run = [](std::uint64_t seed) {
    VirtualNetwork network;
    Bridge& bridge = network.AddBridge(seed);
    bridge.SetPort(1);
    bridge.engine().SetAssociation({}, SampleMa(), SampleDomain(),
                                   WithMep(SampleAssociation(), 1, SampleMep()));
    network.Run(seconds(5));
    std::vector<Time> times;
    for (const SentFrame& sent : bridge.sent) times.push_back(sent.time);
    return times;
  };
  EXPECT_EQ(run(1), run(1));
  EXPECT_NE(run(1), run(2));
}

}  // namespace
}  // namespace cfm_mgr::engine
