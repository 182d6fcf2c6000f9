// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pdu/linktrace.h"
#include "traced_line.h"

namespace cfm_mgr::engine {
namespace {

using pdu::Opcode;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using LinktraceRun = TracedLine;

TEST_F(LinktraceRun, AnswersWithinASecondInAnyOrder) {
  Build(5, Ends::Down);
  const Time start = line_->network.now();
  Trace();
  for (const auto& entry : line_->First().tests.trace_replies) {
    EXPECT_LE(entry.time - start, seconds(1));
    EXPECT_EQ(1U, entry.mep.mep_id);
  }
}

TEST_F(LinktraceRun, EndsAfterFiveSecondsAndTakesNoLaterReply) {
  Build(2, Ends::Down);
  line_->network.SetLinkRule([](const Frame& frame) -> std::optional<Time> {
    return frame.pdu[1] == 4 ? milliseconds(5001) : milliseconds(0);
  });
  const Time start = line_->network.now();
  EXPECT_THAT(Trace(), IsEmpty());
  const auto& ends = line_->First().tests.trace_ends;
  ASSERT_THAT(ends, SizeIs(1));
  EXPECT_EQ(start + seconds(5), ends[0].time);
  EXPECT_EQ("D1", ends[0].mep.ma.md_name);
  EXPECT_EQ("A1", ends[0].mep.ma.ma_name);
  EXPECT_EQ(1U, ends[0].mep.mep_id);
  EXPECT_EQ(started_.transaction_id, ends[0].transaction_id);
  line_->network.Run(seconds(2));
  EXPECT_EQ(1U, line_->engine().DropsAt(kRight).unexpected);
}

TEST_F(LinktraceRun, NumbersEachTraceAnew) {
  Build(2, Ends::Down);
  Trace();
  const std::uint32_t first = started_.transaction_id;
  Trace();
  EXPECT_NE(first, started_.transaction_id);
}

TEST_F(LinktraceRun, KeepsSimultaneousTracesApart) {
  Build(3, Ends::Down);
  const Time now = line_->network.now();
  const auto one = line_->engine().StartLinktrace(now, line_->Linktrace(1));
  const auto two = line_->engine().StartLinktrace(now, line_->Linktrace(2));
  line_->network.Run(seconds(6));
  std::map<std::uint32_t, int> replies;
  for (const auto& entry : line_->First().tests.trace_replies) {
    ++replies[entry.reply.transaction_id];
  }
  EXPECT_EQ((std::map<std::uint32_t, int>{{one.transaction_id, 1}, {two.transaction_id, 2}}),
            replies);
  EXPECT_THAT(line_->First().tests.trace_ends, SizeIs(2));
}

TEST_F(LinktraceRun, EndsWhenTheMepIsRemoved) {
  Build(2, Ends::Down);
  const auto started = line_->engine().StartLinktrace(line_->network.now(), line_->Linktrace());
  line_->engine().RemoveAssociation(line_->network.now(), SampleMa());
  ASSERT_THAT(line_->First().tests.trace_ends, SizeIs(1));
  EXPECT_EQ(started.transaction_id, line_->First().tests.trace_ends[0].transaction_id);
  line_->network.Run(seconds(6));
  EXPECT_THAT(line_->First().tests.trace_ends, SizeIs(1));
  EXPECT_THAT(line_->First().tests.trace_replies, IsEmpty());
}

TEST_F(LinktraceRun, IsRefusedWithTheReason) {
  Build(2, Ends::Down);
  const auto error = [this](const LinktraceRequest& request) {
    return line_->engine().StartLinktrace(line_->network.now(), request).error;
  };
  EXPECT_EQ(TriggerError::UnknownMep, error({1, SampleKey(9), 2, 64}));
  EXPECT_EQ(TriggerError::UnknownRemoteMep, error({1, SampleKey(1), 3, 64}));
  EXPECT_EQ(TriggerError::BadParameter, error({1, SampleKey(1), 2, 256}));
  for (int i = 0; i < 8; ++i) EXPECT_FALSE(error(line_->Linktrace()));
  EXPECT_EQ(TriggerError::TooMany, error(line_->Linktrace()));
}

TEST_F(LinktraceRun, CountsMalformedMessages) {
  Build(3, Ends::Down);
  Trace();
  Frame ltm = SentBy(line_->First(), Opcode::Ltm).at(0).frame;
  ltm.pdu.pop_back();
  line_->At(1).Receive(kLeft, Side::Wire, ltm);
  EXPECT_EQ(1U, line_->At(1).engine().DropsAt(kLeft).malformed());
  Frame ltr = SentBy(line_->At(1), Opcode::Ltr).at(0).frame;
  ltr.pdu.pop_back();
  line_->First().Receive(kRight, Side::Wire, ltr);
  EXPECT_EQ(1U, line_->engine().DropsAt(kRight).malformed());
}

TEST_F(LinktraceRun, TellsTheSenderWhereTheAssociationsAllowIt) {
  line_ = std::make_unique<Line>(3, Ends::Down);
  for (std::size_t i = 0; i < 3; ++i) {
    Association association = line_->AssociationOf(i);
    association.settings.sender_id = 2;
    line_->Configure(i, SampleDomain(), association);
  }
  line_->Settle();
  Trace();
  for (const std::size_t i : {1U, 2U}) {
    const auto sent = SentBy(line_->At(i), Opcode::Ltr);
    ASSERT_THAT(sent, SizeIs(1));
    const auto ltr = pdu::DecodeLtr(sent[0].frame.pdu);
    ASSERT_TRUE(ltr && ltr->sender_id);
    EXPECT_EQ(pdu::OctetView(sent[0].frame.source), ltr->sender_id->chassis_id);
  }
  for (const std::size_t i : {0U, 1U}) {
    const auto ltms = SentBy(line_->At(i), Opcode::Ltm);
    ASSERT_THAT(ltms, SizeIs(1));
    const auto ltm = pdu::DecodeLtm(ltms[0].frame.pdu);
    ASSERT_TRUE(ltm && ltm->sender_id);
    EXPECT_EQ(pdu::OctetView(line_->At(i).MacOf(i == 0 ? kRight : kLeft)),
              ltm->sender_id->chassis_id);
  }
}

}  // namespace
}  // namespace cfm_mgr::engine
