// SPDX-License-Identifier: Apache-2.0
// The mutator has to keep most messages whole, or it is no better than changing single bytes.
#include "message_mutator.h"

#include <gmock/gmock.h>

#include <set>

#include "sample_reports.h"

namespace cfm_fuzz {
namespace {

const std::uint8_t* Data(const std::string& bytes) {
  return reinterpret_cast<const std::uint8_t*>(bytes.data());
}

MessageInput Decoded(const std::string& bytes) { return DecodeMessages(Data(bytes), bytes.size()); }

TEST(WireTree, WritesAWholeMessageAsItWasRead) {
  for (const cfm_test::Report& report : cfm_test::AllReports()) {
    const auto* const schema = cfm_test::Schema::Get().Find(cfm_test::MessageOf(report.name));
    ASSERT_NE(schema, nullptr) << report.name;
    const WireMessage tree = ParseWire(schema, report.bytes);
    EXPECT_TRUE(tree.rest.empty()) << report.name;
    EXPECT_EQ(WriteWire(tree), report.bytes) << report.name;
  }
}

TEST(WireTree, KeepsWhatIsNoFieldAtTheEnd) {
  const std::string bytes = cfm_test::CacheReply().SerializeAsString() + "\xff\xff";
  const WireMessage tree = ParseWire(cfm_test::Schema::Get().Find("OpCacheSync"), bytes);
  EXPECT_EQ(tree.rest, "\xff\xff");
  EXPECT_EQ(WriteWire(tree), bytes);
}

TEST(MessageInput, ReadsBackWhatItWrote) {
  const MessageInput input = {2, {{0, "abc"}, {18, ""}, {7, std::string(300, 'x')}}};
  const MessageInput read = Decoded(EncodeMessages(input));
  EXPECT_EQ(read.state, 2);
  ASSERT_EQ(read.messages.size(), 3U);
  EXPECT_EQ(read.messages[1].callback, 18U);
  EXPECT_EQ(read.messages[2].payload, input.messages[2].payload);
}

TEST(MessageMutator, KeepsMostMessagesWholeAndComesToAllKinds) {
  std::size_t messages = 0;
  std::size_t whole = 0;
  std::set<std::size_t> kinds;
  MessageInput input;
  for (unsigned seed = 1; seed <= 2000; ++seed) {
    MessageMutator(seed).Change(input);
    input = Decoded(EncodeMessages(input));
    for (const auto& [callback, payload] : input.messages) {
      ++messages;
      whole += Callbacks()[callback].reread(payload).whole ? 1U : 0U;
      kinds.insert(callback);
    }
    EXPECT_LE(input.messages.size(), MessageInput::kMostMessages);
  }
  EXPECT_EQ(kinds.size(), Callbacks().size());
  EXPECT_GT(messages, 2000U);
  EXPECT_GT(whole, messages * 3 / 4);
}

TEST(MessageMutator, ChangesWhatItIsGiven) {
  const auto sample = EncodeMessages({0, {{0, cfm_test::CacheReply().SerializeAsString()}}});
  std::set<std::string> results;
  for (unsigned seed = 1; seed <= 200; ++seed) {
    MessageInput input = Decoded(sample);
    MessageMutator(seed).Change(input);
    results.insert(EncodeMessages(input));
  }
  EXPECT_GT(results.size(), 150U);
}

TEST(MessageMutator, CrossesTwoInputs) {
  const MessageInput other = {0, {{1, "\x0a\x00"}, {2, ""}}};
  for (unsigned seed = 1; seed <= 20; ++seed) {
    MessageInput input = {0, {{0, ""}}};
    MessageMutator(seed).Cross(input, other);
    EXPECT_EQ(input.messages.size(), 3U);
  }
}

}  // namespace
}  // namespace cfm_fuzz
