// SPDX-License-Identifier: Apache-2.0
#include "pdu/octets.h"

#include <gtest/gtest.h>

namespace cfm_mgr::pdu {
namespace {

using Octets = std::vector<std::uint8_t>;

TEST(Reader, ReadsNumbersWithTheirHighestOctetFirst) {
  const Octets octets = {0x01, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd};
  Reader reader(octets);
  EXPECT_EQ(0x01, reader.U8());
  EXPECT_EQ(0x2345, reader.U16());
  EXPECT_EQ(0x6789abcdU, reader.U32());
  EXPECT_TRUE(reader.ok());
  EXPECT_TRUE(reader.rest().empty());
}

TEST(Reader, GivesZeroAndRemembersWhenOctetsAreMissing) {
  const Octets octets = {0xff, 0xff, 0xff};
  Reader reader(octets);
  EXPECT_EQ(0U, reader.U32());
  EXPECT_FALSE(reader.ok());
  EXPECT_EQ(0, reader.U8()) << "nothing is read any more";
}

TEST(Reader, LeavesAnArrayAsItWasWhenOctetsAreMissing) {
  const Octets octets = {1, 2};
  std::array<std::uint8_t, 3> array{7, 8, 9};
  Reader reader(octets);
  reader.Fill(array);
  EXPECT_FALSE(reader.ok());
  EXPECT_EQ((std::array<std::uint8_t, 3>{7, 8, 9}), array);
}

TEST(Writer, WritesNumbersWithTheirHighestOctetFirst) {
  Octets octets;
  Writer writer(octets);
  writer.U8(0x01);
  writer.U16(0x2345);
  writer.U32(0x6789abcd);
  writer.Zeros(2);
  writer.Octets(OctetsOf("a"));
  EXPECT_EQ((Octets{0x01, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd, 0, 0, 'a'}), octets);
}

TEST(OctetView, EndsWhereItsOctetsEnd) {
  const Octets octets = {1, 2, 3};
  const OctetView view(octets);
  EXPECT_EQ(OctetView(Octets({1, 2})), view.First(2));
  EXPECT_EQ(view, view.First(9));
  EXPECT_EQ(OctetView(Octets({3})), view.After(2));
  EXPECT_TRUE(view.After(9).empty());
}

TEST(PatchU32, OverwritesFourOctets) {
  Octets octets = {9, 9, 9, 9, 9, 9};
  PatchU32(octets, 1, 0x01020304);
  EXPECT_EQ((Octets{9, 1, 2, 3, 4, 9}), octets);
}

}  // namespace
}  // namespace cfm_mgr::pdu
