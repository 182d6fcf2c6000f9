// SPDX-License-Identifier: Apache-2.0
#include "core/table.h"

#include <gmock/gmock.h>

namespace cfm_agent {
namespace {

using ::testing::ElementsAre;
using Side = Column::Side;

constexpr const char* kWide = "\xE4\xB8\xAD\xE6\x96\x87";  // two characters of two cells
constexpr const char* kCombining = "e\xCC\x81";            // two characters in one cell
constexpr const char* kSmile = "\xF0\x9F\x99\x82";

TEST(DisplayWidth, CountsTheCellsOfATerminal) {
  EXPECT_EQ(DisplayWidth(""), 0U);
  EXPECT_EQ(DisplayWidth("abc"), 3U);
  EXPECT_EQ(DisplayWidth("\xC3\xBC"), 1U);
  EXPECT_EQ(DisplayWidth(kWide), 4U);
  EXPECT_EQ(DisplayWidth(kCombining), 1U);
  EXPECT_EQ(DisplayWidth(kSmile), 2U);
  EXPECT_EQ(DisplayWidth(std::string("a") + kWide + "b"), 6U);
}

TEST(Table, LinesUpItsColumnsAndEndsLinesWithoutBlanks) {
  Table table({{"A"}, {"NUMBER", Side::Right}, {"C"}});
  EXPECT_TRUE(table.empty());
  table.Add({{"aaa"}, {"1"}});
  table.Add({{kWide}, {"1234567"}, {"c"}});
  table.Add({{kCombining}, {""}, {"c"}});
  EXPECT_FALSE(table.empty());
  EXPECT_THAT(table.Lines(2, {}),
              ElementsAre("  A      NUMBER  C",  //
                          "  aaa         1",     //
                          "  " + std::string(kWide) + "  1234567  c",
                          "  " + std::string(kCombining) + "              c"));
}

TEST(Table, LeavesOutAColumnWithoutAnything) {
  Table table({{"A"}, {"NOTHING"}, {"B"}});
  table.Add({{"a"}, {""}, {"b"}});
  table.Add({{"c"}});
  EXPECT_THAT(table.Lines(0, {}), ElementsAre("A  B", "a  b", "c"));
}

TEST(Table, HasColoursThatTakeNoRoom) {
  Table table({{"A"}, {"B", Side::Right}});
  table.Add({{"good", Tone::Good}, {"1", Tone::Bad}});
  table.Add({{"x"}, {"22"}});
  EXPECT_THAT(table.Lines(0, {true, false}),
              ElementsAre("\x1b[1mA\x1b[0m      \x1b[1mB\x1b[0m",
                          "\x1b[32mgood\x1b[0m   \x1b[31m1\x1b[0m", "x     22"));
}

}  // namespace
}  // namespace cfm_agent
