// SPDX-License-Identifier: Apache-2.0
#include "core/text_buffer.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace cfm::core {
namespace {

TEST(TextBuffer, HoldsTextsOfAnyLengthInTheirOrder) {
  std::string expected;
  TextBuffer buffer;
  for (const std::size_t length : {1U, 2047U, 2048U, 2049U, 100000U, 3U}) {
    const std::string text(length, static_cast<char>('a' + length % 26));
    buffer.Add(text);
    expected += text;
  }
  EXPECT_EQ(std::move(buffer).Take(), expected);
}

TEST(TextBuffer, HoldsManyNumbersAndLists) {
  std::string expected;
  TextBuffer buffer;
  for (unsigned number = 0; number < 2000; ++number) {
    buffer.AddNumber(number);
    buffer.AddList(" {", std::vector<unsigned>{number, 7});
    expected += std::to_string(number) + " { " + std::to_string(number) + " 7 }";
  }
  EXPECT_EQ(std::move(buffer).Take(), expected);
}

TEST(TextBuffer, TakesLittleMoreRoomThanManySimilarLinesNeed) {
  constexpr std::size_t kLines = 20000;
  const std::string line(300, 'x');
  TextBuffer buffer;
  for (std::size_t to_come = kLines; to_come > 0; --to_come) {
    buffer.Add(line);
    buffer.EndLine(to_come - 1);
  }
  const std::string text = std::move(buffer).Take();
  EXPECT_EQ(text.size(), kLines * (line.size() + 1));
  EXPECT_LT(text.capacity(), text.size() + text.size() / 8);
}

// The line of an association with many endpoint identifiers is much longer than that of an
// endpoint.
TEST(TextBuffer, DoesNotExpectAllLinesToBeAsLongAsTheFirst) {
  constexpr std::size_t kLongLines = 300;
  constexpr std::size_t kLines = 100000;
  TextBuffer buffer;
  for (std::size_t line = 1; line <= kLines; ++line) {
    buffer.Add(std::string(line <= kLongLines ? 2000 : 100, 'x'));
    buffer.EndLine(kLines - line);
  }
  const std::string text = std::move(buffer).Take();
  EXPECT_EQ(text.size(), kLongLines * 2001 + (kLines - kLongLines) * 101);
  EXPECT_LT(text.capacity(), 2 * text.size());
}

}  // namespace
}  // namespace cfm::core
