// SPDX-License-Identifier: Apache-2.0
#include "engine/remote_mep.h"

#include <gtest/gtest.h>

#include <string>

#include "samples.h"

namespace cfm_mgr::engine {
namespace {

const Mac kSource = {0x02, 0, 0, 0, 0, 7};

/** A remote MEP on its own, and what is done to it. */
class RemoteMepTest : public testing::Test {
 protected:
  void Start() { remote_.Start(now_, kOneSecond); }
  void Stop() { remote_.Stop(now_); }
  RemoteMep::Effect Receive(const pdu::Ccm& ccm = SampleCcm()) {
    return remote_.Receive(now_, ccm, kSource);
  }
  void Pass(Time duration) {
    now_ += duration;
    timers_.RunDue(now_);
  }
  void Expire() { Pass(milliseconds(3500)); }
  void Bring(RemoteState state) {
    if (state == RemoteState::Idle) return;
    Start();
    if (state == RemoteState::Ok) Receive();
    if (state == RemoteState::Failed) Expire();
  }

  Time now_ = seconds(5);
  TimerQueue timers_;
  int losses_ = 0;
  RemoteDefects defects_;
  RemoteMep remote_{timers_, defects_, [this](Time) { ++losses_; }};
};

struct Transition {
  RemoteState from;
  const char* event;
  RemoteState to;
};

// The state machine of IEEE 802.1Q 20.20, row by row.
constexpr Transition kTransitions[] = {
    {RemoteState::Idle, "start", RemoteState::Start},
    {RemoteState::Idle, "expire", RemoteState::Idle},
    {RemoteState::Start, "ccm", RemoteState::Ok},
    {RemoteState::Start, "expire", RemoteState::Failed},
    {RemoteState::Start, "stop", RemoteState::Idle},
    {RemoteState::Failed, "ccm", RemoteState::Ok},
    {RemoteState::Failed, "expire", RemoteState::Failed},
    {RemoteState::Failed, "stop", RemoteState::Idle},
    {RemoteState::Ok, "ccm", RemoteState::Ok},
    {RemoteState::Ok, "expire", RemoteState::Failed},
    {RemoteState::Ok, "stop", RemoteState::Idle},
};

class RemoteMepTransitions : public RemoteMepTest,
                             public testing::WithParamInterface<Transition> {};

TEST_P(RemoteMepTransitions, AreThoseOfTheStandard) {
  const Transition& transition = GetParam();
  Bring(transition.from);
  ASSERT_EQ(transition.from, remote_.state());
  const std::string event = transition.event;
  if (event == "start") Start();
  if (event == "stop") Stop();
  if (event == "ccm") Receive();
  if (event == "expire") Expire();
  EXPECT_EQ(transition.to, remote_.state());
}

INSTANTIATE_TEST_SUITE_P(Table, RemoteMepTransitions, testing::ValuesIn(kTransitions));

TEST_F(RemoteMepTest, WaitsThreeAndAHalfIntervalsAfterEachCcm) {
  Start();
  Pass(milliseconds(3499));
  EXPECT_EQ(RemoteState::Start, remote_.state());
  Receive();
  Pass(milliseconds(3499));
  EXPECT_EQ(RemoteState::Ok, remote_.state());
  Pass(milliseconds(1));
  EXPECT_EQ(RemoteState::Failed, remote_.state());
  EXPECT_EQ(1, losses_);
}

TEST_F(RemoteMepTest, WaitsForEverWithoutAnInterval) {
  remote_.Start(now_, 0);
  Pass(hours(1000));
  EXPECT_EQ(RemoteState::Start, remote_.state());
  EXPECT_EQ(0, losses_);
}

TEST_F(RemoteMepTest, BeginsItsWaitAnewAtAnotherIntervalOnly) {
  Start();
  Pass(seconds(3));
  remote_.SetInterval(now_, kOneSecond);
  Pass(milliseconds(500));
  EXPECT_EQ(RemoteState::Failed, remote_.state());
  Receive();
  Pass(seconds(3));
  remote_.SetInterval(now_, 3);
  Pass(milliseconds(349));
  EXPECT_EQ(RemoteState::Ok, remote_.state());
  Pass(milliseconds(1));
  EXPECT_EQ(RemoteState::Failed, remote_.state());
}

TEST_F(RemoteMepTest, KeepsWhatTheLastCcmTold) {
  Start();
  const std::vector<std::uint8_t> name = {'s', 'w', '1'};
  pdu::Ccm ccm = SampleCcm();
  ccm.rdi = true;
  ccm.sequence = 17;
  ccm.port_status = 1;
  ccm.interface_status = 7;
  ccm.sender_id.emplace();
  ccm.sender_id->chassis_subtype = 7;
  ccm.sender_id->chassis_id = name;
  const auto pdu = pdu::Encode(ccm);
  Receive(*pdu::DecodeCcm(pdu));
  EXPECT_EQ(kSource, remote_.status().mac);
  EXPECT_EQ("sw1", remote_.status().sender_id);
  EXPECT_TRUE(remote_.status().rdi);
  EXPECT_EQ(1U, remote_.status().port_status);
  EXPECT_EQ(7, remote_.status().interface_status);
  EXPECT_EQ(17U, remote_.last_sequence());
  Receive();
  EXPECT_EQ("", remote_.status().sender_id);
  EXPECT_FALSE(remote_.status().rdi);
  EXPECT_EQ(0U, remote_.status().port_status) << "no TLV";
  EXPECT_EQ(0, remote_.status().interface_status) << "no TLV";
}

/** The counters that several remote MEPs share, in words. */
std::string Text(const RemoteDefects& defects) {
  return "rdi " + std::to_string(defects.rdi) + ", lost " + std::to_string(defects.lost) +
         ", interface " + std::to_string(defects.interface) + ", port " +
         std::to_string(defects.port);
}

TEST_F(RemoteMepTest, IsCountedWithItsDefectsAsLongAsItHasThem) {
  const std::string none = "rdi 0, lost 0, interface 0, port 0";
  EXPECT_EQ(none, Text(defects_));
  Start();
  pdu::Ccm ccm = SampleCcm();
  ccm.rdi = true;
  ccm.interface_status = 2;
  Receive(ccm);
  EXPECT_EQ("rdi 1, lost 0, interface 1, port 0", Text(defects_));
  Receive(ccm);
  EXPECT_EQ("rdi 1, lost 0, interface 1, port 0", Text(defects_)) << "once, however often told";
  ccm.rdi = false;
  ccm.interface_status = 1;
  ccm.port_status = 1;
  Receive(ccm);
  EXPECT_EQ("rdi 0, lost 0, interface 0, port 1", Text(defects_));
  Expire();
  EXPECT_EQ("rdi 0, lost 1, interface 0, port 0", Text(defects_));
  {
    RemoteMep other(timers_, defects_, [](Time) {});
    other.Start(now_, 4);
    other.Receive(now_, ccm, kSource);
    EXPECT_EQ("rdi 0, lost 1, interface 0, port 1", Text(defects_));
  }
  EXPECT_EQ("rdi 0, lost 1, interface 0, port 0", Text(defects_)) << "the other one is gone";
  Stop();
  EXPECT_EQ(none, Text(defects_));
}

TEST_F(RemoteMepTest, ForgetsRdiAndStatusesWhenItIsLostButNotTheAddress) {
  Start();
  pdu::Ccm ccm = SampleCcm();
  ccm.rdi = true;
  ccm.port_status = 1;
  ccm.interface_status = 2;
  Receive(ccm);
  Expire();
  EXPECT_FALSE(remote_.status().rdi);
  EXPECT_EQ(0U, remote_.status().port_status);
  EXPECT_EQ(0, remote_.status().interface_status);
  EXPECT_EQ(kSource, remote_.status().mac);
  Stop();
  EXPECT_EQ(Mac{}, remote_.status().mac);
}

TEST_F(RemoteMepTest, TellsWhenItsStateChangedLast) {
  Start();
  EXPECT_EQ(seconds(5), remote_.status().last_change);
  Pass(seconds(1));
  Receive();
  Pass(seconds(1));
  Receive();
  EXPECT_EQ(seconds(6), remote_.status().last_change);
  Expire();
  EXPECT_EQ(seconds(7) + milliseconds(3500), remote_.status().last_change);
}

TEST_F(RemoteMepTest, TellsOfChangesOnly) {
  Start();
  EXPECT_TRUE(Receive().status_changed);
  EXPECT_FALSE(Receive().status_changed);
  pdu::Ccm ccm = SampleCcm();
  ccm.sequence = 9;
  EXPECT_FALSE(Receive(ccm).status_changed);
  ccm.rdi = true;
  EXPECT_TRUE(Receive(ccm).status_changed);
  EXPECT_TRUE(remote_.Receive(now_, ccm, Mac{}).status_changed);
}

struct SequenceCase {
  std::uint32_t first;
  std::uint32_t second;
  bool error;
};

TEST_F(RemoteMepTest, SeesNumbersOutOfSequence) {
  const SequenceCase cases[] = {
      {5, 6, false}, {5, 7, true},  {5, 5, true},           {5, 4, true},
      {0, 6, false}, {5, 0, false}, {0xffffffff, 1, false}, {0xffffffff, 2, true},
  };
  for (const SequenceCase& c : cases) {
    Start();
    pdu::Ccm ccm = SampleCcm();
    ccm.sequence = c.first;
    Receive(ccm);
    ccm.sequence = c.second;
    EXPECT_EQ(c.error, Receive(ccm).sequence_error) << c.first << ' ' << c.second;
    Stop();
  }
}

}  // namespace
}  // namespace cfm_mgr::engine
