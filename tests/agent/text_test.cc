// SPDX-License-Identifier: Apache-2.0
#include "core/text.h"

#include <gtest/gtest.h>

namespace cfm_agent {
namespace {

TEST(Printable, LeavesOrdinaryTextAlone) {
  EXPECT_EQ(Printable("eline-1001 \xC3\xBC \xE2\x82\xAC \xF0\x9F\x99\x82"),
            "eline-1001 \xC3\xBC \xE2\x82\xAC \xF0\x9F\x99\x82");
}

TEST(Printable, ShowsControlCharactersInHexadecimal) {
  EXPECT_EQ(Printable(std::string("a\0b\n\x1b[2J\x7f", 9)), "a\\x00b\\x0a\\x1b[2J\\x7f");
}

TEST(Printable, ShowsWhatIsNoUtf8InHexadecimal) {
  EXPECT_EQ(Printable("\xFF\xC3"), "\\xff\\xc3");
  EXPECT_EQ(Printable("\xC0\xAF"), "\\xc0\\xaf");                    // overlong
  EXPECT_EQ(Printable("\xED\xA0\x80"), "\\xed\\xa0\\x80");           // surrogate
  EXPECT_EQ(Printable("\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");  // beyond Unicode
  EXPECT_EQ(Printable("\xC2\x9B"), "\\xc2\\x9b");  // a control character of its own
}

TEST(Printable, ShowsWhatChangesOrHidesOtherTextInHexadecimal) {
  EXPECT_EQ(Printable("\xE2\x80\xAE"
                      "evil"),
            "\\xe2\\x80\\xaeevil");                         // from right to left
  EXPECT_EQ(Printable("\xE2\x80\xA8"), "\\xe2\\x80\\xa8");  // end of a line
  EXPECT_EQ(Printable("\xEF\xBB\xBF"), "\\xef\\xbb\\xbf");  // no width
}

TEST(Utf8, IsTold) {
  EXPECT_TRUE(IsUtf8(""));
  EXPECT_TRUE(IsUtf8("a\n\xC2\x9B\xE2\x82\xAC\xF0\x9F\x99\x82"));
  EXPECT_FALSE(IsUtf8("a\xFF"));
  EXPECT_FALSE(IsUtf8("\xE2\x82"));
  EXPECT_FALSE(IsUtf8("\xED\xA0\x80"));
}

TEST(Printable, KeepsDifferentTextsDifferent) {
  EXPECT_EQ(Printable("\\x00"), "\\\\x00");
  EXPECT_EQ(Printable("a\"b"), "a\\\"b");
}

TEST(Quoted, CutsLongTextBetweenCharacters) {
  EXPECT_EQ(Quoted(std::string(40, 'a')), '"' + std::string(40, 'a') + '"');
  EXPECT_EQ(Quoted(std::string(41, 'a')), '"' + std::string(40, 'a') + "...\"");
  EXPECT_EQ(Quoted(std::string(39, 'a') + "\xC3\xBC"), '"' + std::string(39, 'a') + "...\"");
}

TEST(Count, MindsThePlural) {
  EXPECT_EQ(Count(0, "probe"), "0 probes");
  EXPECT_EQ(Count(1, "probe"), "1 probe");
  EXPECT_EQ(Count(2, "probe"), "2 probes");
}

TEST(ClosestWord, FindsSmallMisspellings) {
  EXPECT_EQ(ClosestWord("ccm-intervall", {"vids", "ccm-interval", "mep-ids"}), "ccm-interval");
  EXPECT_EQ(ClosestWord("mep_ids", {"mep-id", "mep-ids"}), "mep-ids");
  EXPECT_EQ(ClosestWord("Level", {"name", "level"}), "level");
}

TEST(ClosestWord, DoesNotGuessWildly) {
  EXPECT_EQ(ClosestWord("colour", {"name", "level"}), std::nullopt);
  EXPECT_EQ(ClosestWord("x", {"id"}), std::nullopt);
  EXPECT_EQ(ClosestWord("", {"id", "a"}), std::nullopt);
  EXPECT_EQ(ClosestWord(std::string(1000, 'a'), {std::string_view("level")}), std::nullopt);
}

}  // namespace
}  // namespace cfm_agent
