// SPDX-License-Identifier: Apache-2.0
#include "pdu/maid.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace cfm_mgr::pdu {
namespace {

using Octets = std::vector<std::uint8_t>;

/** The octets given, and zeros up to the size of a MAID. */
Maid Filled(const Octets& octets) {
  Maid maid{};
  std::copy(octets.begin(), octets.end(), maid.begin());
  return maid;
}

struct Case {
  const char* what;
  std::int32_t md_format;
  std::string md_name;
  std::int32_t ma_format;
  std::string ma_name;
  Octets octets;
};

TEST(Maid, HasEveryNameFormatAsInItsTable) {
  const std::vector<Case> cases = {
      // Format 1, which has no length; format 2, length, text.
      {"no domain name", 1, "ignored", 2, "ma", {1, 2, 2, 'm', 'a'}},
      {"DNS-like",
       2,
       "a.example",
       2,
       "x",
       {2, 9, 'a', '.', 'e', 'x', 'a', 'm', 'p', 'l', 'e', 2, 1, 'x'}},
      // Six octets of address, two of number: 4660 = 0x1234.
      {"MAC and number",
       3,
       "00:1a:FF:03:04:05/4660",
       2,
       "x",
       {3, 8, 0x00, 0x1a, 0xff, 0x03, 0x04, 0x05, 0x12, 0x34, 2, 1, 'x'}},
      {"character string", 4, "D", 2, "A1", {4, 1, 'D', 2, 2, 'A', '1'}},
      // 100 = 0x0064
      {"primary VID", 4, "D", 1, "100", {4, 1, 'D', 1, 2, 0x00, 0x64}},
      {"greatest VID", 1, "", 1, "4095", {1, 1, 2, 0x0f, 0xff}},
      {"number", 4, "D", 3, "65535", {4, 1, 'D', 3, 2, 0xff, 0xff}},
      {"VPN id",
       4,
       "D",
       4,
       "00163E:0000002a",
       {4, 1, 'D', 4, 7, 0x00, 0x16, 0x3e, 0x00, 0x00, 0x00, 0x2a}},
      // Six octets of carrier code, seven of MEG code, zeros at the end.
      {"ICC",
       1,
       "",
       32,
       "ACMECOLINK",
       {1, 32, 13, 'A', 'C', 'M', 'E', 'C', 'O', 'L', 'I', 'N', 'K', 0, 0, 0}},
      {"ICC and country",
       1,
       "",
       33,
       "NOACMECOLINK1",
       {1, 33, 15, 'N', 'O', 'A', 'C', 'M', 'E', 'C', 'O', 'L', 'I', 'N', 'K', '1', 0, 0}},
      {"octets that are no text",
       4,
       std::string("\0\xff", 2),
       2,
       std::string("\0", 1),
       {4, 2, 0x00, 0xff, 2, 1, 0x00}},
  };
  for (const Case& c : cases) {
    const auto maid = EncodeMaid(c.md_format, c.md_name, c.ma_format, c.ma_name);
    ASSERT_TRUE(maid) << c.what;
    EXPECT_EQ(Filled(c.octets), *maid) << c.what;
    // Two octets in front of each name, or one for no name.
    const std::size_t before = c.md_format == 1 ? 3 : 4;
    EXPECT_EQ(c.octets.size() - before,
              MdNameOctets(c.md_format, c.md_name) + MaNameOctets(c.ma_format, c.ma_name))
        << c.what;
    EXPECT_TRUE(IsWellFormed(*maid)) << c.what;
  }
}

TEST(Maid, HoldsTheLongestNamesAndNoLonger) {
  const auto name = [](std::size_t size) { return std::string(size, 'n'); };
  // 48 octets less format, format, length; or less one more format and length.
  EXPECT_TRUE(EncodeMaid(1, "", 2, name(45)));
  EXPECT_TRUE(EncodeMaid(4, name(43), 2, name(1)));
  EXPECT_TRUE(EncodeMaid(4, name(1), 2, name(43)));
  EXPECT_EQ(Fault::Maid, EncodeMaid(1, "", 2, name(46)).fault());
  EXPECT_EQ(Fault::Maid, EncodeMaid(4, name(43), 2, name(2)).fault());
  EXPECT_EQ(Fault::Maid, EncodeMaid(4, name(44), 2, name(1)).fault());
  EXPECT_EQ(Fault::Maid, EncodeMaid(4, name(30), 33, "x").fault()) << "15 octets, however short";
}

TEST(Maid, HasNoEmptyName) {
  EXPECT_EQ(Fault::Maid, EncodeMaid(4, "", 2, "A").fault());
  EXPECT_EQ(Fault::Maid, EncodeMaid(4, "D", 2, "").fault());
}

struct Unfit {
  std::int32_t md_format;
  const char* md_name;
  std::int32_t ma_format;
  const char* ma_name;
};

TEST(Maid, IsNotMadeOfNamesThatDoNotFitTheirFormats) {
  const std::vector<Unfit> cases = {
      {0, "D", 2, "A"},                        // no such format
      {5, "D", 2, "A"},                        // nor this
      {4, "D", 0, "A"},                        // nor this
      {4, "D", 5, "A"},                        // nor this
      {3, "00:1a:ff:03:04:05", 2, "A"},        // no number
      {3, "00:1a:ff:03:04:05/", 2, "A"},       // an empty one
      {3, "00:1a:ff:03:04:05/65536", 2, "A"},  // one of 17 bits
      {3, "00:1a:ff:03:04:05-1", 2, "A"},      // another sign between
      {3, "00-1a-ff-03-04-05/1", 2, "A"},      // other signs between
      {3, "0:1a:ff:03:04:05/12345", 2, "A"},   // one digit
      {3, "00:1g:ff:03:04:05/1", 2, "A"},      // not a digit
      {4, "D", 1, "4096"},                     // a VID of 13 bits
      {4, "D", 1, "-1"},                       // negative
      {4, "D", 1, "1 "},                       // more than a number
      {4, "D", 1, ""},                         // less than one
      {4, "D", 3, "65536"},                    // 17 bits
      {4, "D", 3, "0x10"},                     // not decimal
      {4, "D", 4, "00163e-0000002a"},          // another sign between
      {4, "D", 4, "00163e:2a"},                // too short
      {4, "D", 4, "00163e:0000002x"},          // not a digit
      {1, "", 32, ""},                         // empty
      {1, "", 32, "14 characters."},           // one too many
      {1, "", 33, "16 characters..."},         // one too many
  };
  for (const Unfit& c : cases) {
    const auto maid = EncodeMaid(c.md_format, c.md_name, c.ma_format, c.ma_name);
    ASSERT_FALSE(maid) << c.md_format << c.md_name << ' ' << c.ma_format << c.ma_name;
    EXPECT_EQ(Fault::Value, maid.fault()) << c.md_name << ' ' << c.ma_name;
  }
}

TEST(Maid, IsIllFormedWhenItsLengthsLeadOutOfIt) {
  EXPECT_TRUE(IsWellFormed(Filled({1, 2, 45})));
  EXPECT_FALSE(IsWellFormed(Filled({1, 2, 46}))) << "past the end";
  EXPECT_FALSE(IsWellFormed(Filled({1, 2, 0}))) << "no MA name";
  EXPECT_FALSE(IsWellFormed(Filled({4, 0, 2, 1, 'A'}))) << "no MD name";
  EXPECT_FALSE(IsWellFormed(Filled({4, 44, 'D'}))) << "too long an MD name";
  EXPECT_FALSE(IsWellFormed(Filled({4, 255, 'D'}))) << "far too long an MD name";
  EXPECT_FALSE(IsWellFormed(Filled({4, 1, 'D', 2, 44, 'A'}))) << "one octet past the end";
  EXPECT_TRUE(IsWellFormed(Filled({4, 1, 'D', 2, 43, 'A'})));
  EXPECT_FALSE(IsWellFormed(Maid{})) << "all zeros";
}

}  // namespace
}  // namespace cfm_mgr::pdu
