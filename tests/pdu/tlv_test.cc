// SPDX-License-Identifier: Apache-2.0
#include "pdu/tlv.h"

#include <gtest/gtest.h>

#include <string>

namespace cfm_mgr::pdu {
namespace {

using Octets = std::vector<std::uint8_t>;

struct FaultCase {
  const char* what;
  Octets octets;
  Fault fault;
};

TEST(Header, IsReadFromItsFourOctets) {
  // Level 7 << 5 | version 3, opcode 200, flags 0xa5, first TLV offset 9.
  const auto header = DecodeHeader(Octets{0xe3, 0xc8, 0xa5, 0x09});
  ASSERT_TRUE(header);
  EXPECT_EQ(7, header->level);
  EXPECT_EQ(3, header->version);
  EXPECT_EQ(200, header->opcode);
  EXPECT_EQ(0xa5, header->flags);
  EXPECT_EQ(9, header->first_tlv_offset);
}

TEST(Header, IsWrittenForEveryLevelInVersion0) {
  for (std::uint8_t level = 0; level <= kMaxLevel; ++level) {
    Octets octets;
    Writer writer(octets);
    Encode(writer, level, Opcode::Ltm, 0x80, 17);
    EXPECT_EQ((Octets{static_cast<std::uint8_t>(level * 32), 0x05, 0x80, 0x11}), octets);
  }
}

TEST(Header, IsRefusedWhenTooShortOrTooLong) {
  for (std::size_t size = 0; size < kHeaderSize; ++size) {
    EXPECT_EQ(Fault::Truncated, DecodeHeader(Octets(size)).fault()) << size;
  }
  EXPECT_TRUE(DecodeHeader(Octets(kMaxPduSize)));
  EXPECT_EQ(Fault::TooLong, DecodeHeader(Octets(kMaxPduSize + 1)).fault());
}

TEST(Tlvs, AreFoundByTheirTypesWhateverTheirOrder) {
  const Octets octets = {
      0x04, 0x00, 0x01, 0x07,  // Interface Status
      0x02, 0x00, 0x01, 0x02,  // Port Status
      0x00,                    // End
  };
  const auto tlvs = DecodeTlvs(octets);
  ASSERT_TRUE(tlvs);
  EXPECT_EQ(OctetView(Octets{0x07}), tlvs->Find(TlvType::InterfaceStatus));
  EXPECT_EQ(OctetView(Octets{0x02}), tlvs->Find(TlvType::PortStatus));
  EXPECT_FALSE(tlvs->Find(TlvType::SenderId));
}

TEST(Tlvs, OfUnknownTypesAndOfOrganisationsAreSkippedHoweverOften) {
  const Octets octets = {
      0x1f, 0x00, 0x04, 0x00, 0x80, 0xc2, 0x01,  // Organisation-Specific: OUI, subtype
      0x1f, 0x00, 0x04, 0x00, 0x80, 0xc2, 0x02,  // and another one
      0x63, 0x00, 0x00,                          // type 99 without a value
      0x63, 0x00, 0x01, 0x00,                    // and with one
      0x09, 0x00, 0x01, 0x00,                    // type 9, the first that is reserved
      0x02, 0x00, 0x01, 0x01,                    // Port Status
      0x00,                                      // End
  };
  const auto tlvs = DecodeTlvs(octets);
  ASSERT_TRUE(tlvs);
  EXPECT_EQ(OctetView(Octets{0x01}), tlvs->Find(TlvType::PortStatus));
}

TEST(Tlvs, EndAtTheEndTlvWhateverFollows) {
  const auto tlvs = DecodeTlvs(Octets{0x00, 0x02, 0xff, 0xff});
  ASSERT_TRUE(tlvs);
  EXPECT_FALSE(tlvs->Find(TlvType::PortStatus));
}

TEST(Tlvs, AreRefusedAgainstTheCodingRules) {
  const std::vector<FaultCase> cases = {
      {"nothing at all", {}, Fault::NoEndTlv},
      {"no End TLV", {0x02, 0x00, 0x01, 0x01}, Fault::NoEndTlv},
      {"no length", {0x02}, Fault::Truncated},
      {"half a length", {0x02, 0x00}, Fault::Truncated},
      {"a value past the end", {0x02, 0x00, 0x01}, Fault::Truncated},
      {"a length far past the end", {0x03, 0xff, 0xff, 0x00}, Fault::Truncated},
      {"an unknown type past the end", {0x63, 0x00, 0x02, 0x00}, Fault::Truncated},
      {"twice the same",
       {0x02, 0x00, 0x01, 0x01, 0x02, 0x00, 0x01, 0x01, 0x00},
       Fault::DuplicateTlv},
  };
  for (const FaultCase& c : cases) {
    const auto tlvs = DecodeTlvs(c.octets);
    ASSERT_FALSE(tlvs) << c.what;
    EXPECT_STREQ(Describe(c.fault), Describe(tlvs.fault())) << c.what;
  }
}

TEST(Parts, AreRefusedWithoutAllFixedFieldsOfTheOpcode) {
  // LBM: four octets of transaction identifier are fixed.
  const std::vector<FaultCase> cases = {
      {"another opcode", {0x00, 0x02, 0x00, 0x04, 1, 2, 3, 4, 0x00}, Fault::Opcode},
      {"an offset too small", {0x00, 0x03, 0x00, 0x03, 1, 2, 3, 0x00}, Fault::FirstTlvOffset},
      {"an offset past the end", {0x00, 0x03, 0x00, 0x05, 1, 2, 3, 4}, Fault::Truncated},
      {"an offset to the end", {0x00, 0x03, 0x00, 0x04, 1, 2, 3, 4}, Fault::NoEndTlv},
  };
  for (const FaultCase& c : cases) {
    const auto parts = DecodeParts(c.octets, Opcode::Lbm, 4);
    ASSERT_FALSE(parts) << c.what;
    EXPECT_STREQ(Describe(c.fault), Describe(parts.fault())) << c.what;
  }
}

TEST(Parts, HaveTheFieldsThatALaterVersionAdded) {
  const Octets octets = {0x01, 0x03, 0x00, 0x06, 1, 2, 3, 4, 5, 6, 0x00};
  const auto parts = DecodeParts(octets, Opcode::Lbm, 4);
  ASSERT_TRUE(parts);
  EXPECT_EQ(1, parts->header.version);
  EXPECT_EQ(OctetView(Octets{1, 2, 3, 4, 5, 6}), parts->fields);
}

TEST(Faults, AreDescribedEachInItsWords) {
  std::string before;
  for (int fault = 0; fault <= static_cast<int>(Fault::Value); ++fault) {
    const std::string text = Describe(static_cast<Fault>(fault));
    EXPECT_FALSE(text.empty());
    EXPECT_NE(before, text);
    before = text;
  }
}

}  // namespace
}  // namespace cfm_mgr::pdu
