// SPDX-License-Identifier: Apache-2.0
#include "pdu/loopback.h"

#include <gtest/gtest.h>

namespace cfm_mgr::pdu {
namespace {

using Octets = std::vector<std::uint8_t>;

// Level 5, transaction 0x01020304, chassis "sw", three octets of data.
const Octets kLbm = {
    0xa0,                    // level 5 << 5 | version 0
    0x03,                    // opcode LBM 3
    0x00,                    // flags: none are defined
    0x04,                    // first TLV offset: the transaction identifier alone
    0x01, 0x02, 0x03, 0x04,  // transaction identifier
    0x01, 0x00, 0x04,        // Sender ID TLV 1: 1 + 1 + 2 octets
    0x02, 0x07, 's',  'w',   // chassis ID of 2 octets, subtype 7 (local)
    0x03, 0x00, 0x03,        // Data TLV 3: 3 octets
    0xde, 0xad, 0x01,        // data
    0x00,                    // End TLV
};

Octets WithOctet(Octets octets, std::size_t index, std::uint8_t value) {
  octets[index] = value;
  return octets;
}

TEST(LbmPdu, IsEncodedAsInItsTable) {
  const Octets data = {0xde, 0xad, 0x01};
  SenderId sender;
  sender.chassis_subtype = 7;
  sender.chassis_id = OctetsOf("sw");
  EXPECT_EQ(kLbm, EncodeLbm({5, 0x01020304, sender, data}));
}

TEST(LbmPdu, IsNineOctetsWithoutTlvs) {
  const Octets expected = {
      0x00, 0x03, 0x00, 0x04,  // level 0, LBM, no flags, offset 4
      0x00, 0x00, 0x00, 0x09,  // transaction identifier 9
      0x00,                    // End TLV
  };
  EXPECT_EQ(expected, EncodeLbm({0, 9, {}, {}}));
}

TEST(LbmPdu, IsDecodedWithItsTlvs) {
  const auto lbm = DecodeLbm(kLbm);
  ASSERT_TRUE(lbm);
  EXPECT_EQ(5, lbm->level);
  EXPECT_EQ(0x01020304U, lbm->transaction_id);
  ASSERT_TRUE(lbm->sender_id);
  EXPECT_EQ("sw", ToText(*lbm->sender_id));
  ASSERT_TRUE(lbm->data);
  EXPECT_EQ(Octets({0xde, 0xad, 0x01}), Octets(lbm->data->begin(), lbm->data->end()));
}

TEST(LbmPdu, TellsAnEmptyDataTlvFromNone) {
  const Octets empty = {0x00, 0x03, 0x00, 0x04, 0, 0, 0, 1, 0x03, 0x00, 0x00, 0x00};
  const auto with = DecodeLbm(empty);
  ASSERT_TRUE(with);
  ASSERT_TRUE(with->data);
  EXPECT_EQ(0U, with->data->size());
  const auto without = DecodeLbm(EncodeLbm({0, 1, {}, {}}));
  ASSERT_TRUE(without);
  EXPECT_FALSE(without->data);
}

TEST(LbmPdu, IsRefusedWhenCutAnywhere) {
  for (std::size_t size = 0; size < kLbm.size(); ++size) {
    EXPECT_FALSE(DecodeLbm(Octets(kLbm.begin(), kLbm.begin() + static_cast<long>(size)))) << size;
  }
}

TEST(LbmPdu, SaysWhyItIsRefused) {
  EXPECT_EQ(Fault::Opcode, DecodeLbm(WithOctet(kLbm, 1, 2)).fault());
  EXPECT_EQ(Fault::FirstTlvOffset, DecodeLbm(WithOctet(kLbm, 3, 3)).fault());
  EXPECT_EQ(Fault::Truncated, DecodeLbm(WithOctet(kLbm, 3, 200)).fault());
  EXPECT_EQ(Fault::Truncated, DecodeLbm(WithOctet(kLbm, 16, 0xff)).fault());
  EXPECT_EQ(Fault::TlvLength, DecodeLbm(WithOctet(kLbm, 11, 3)).fault());
  EXPECT_EQ(Fault::DuplicateTlv, DecodeLbm(WithOctet(kLbm, 8, 3)).fault());
}

TEST(LbmPdu, OfALaterVersionMayHaveMoreFixedFields) {
  const Octets later = {0x01, 0x03, 0x00, 0x05, 0, 0, 0, 7, 0x55, 0x00};
  const auto lbm = DecodeLbm(later);
  ASSERT_TRUE(lbm);
  EXPECT_EQ(7U, lbm->transaction_id);
}

TEST(LbrPdu, DiffersFromItsLbmInTheOpcodeAlone) {
  EXPECT_EQ(WithOctet(kLbm, 1, 2), LbrTo(kLbm));
  const auto lbr = DecodeLbr(LbrTo(kLbm));
  ASSERT_TRUE(lbr);
  EXPECT_EQ(0x01020304U, lbr->transaction_id);
  EXPECT_EQ(Fault::Opcode, DecodeLbr(kLbm).fault());
}

TEST(LbrPdu, BringsBackAllButTheOpcode) {
  const Octets lbr = LbrTo(kLbm);
  EXPECT_TRUE(BringsBack(lbr, kLbm));
  for (std::size_t i = 0; i < lbr.size(); ++i) {
    const Octets changed = WithOctet(lbr, i, static_cast<std::uint8_t>(lbr[i] ^ 0x10U));
    EXPECT_EQ(i == 1, BringsBack(changed, kLbm)) << i;
  }
}

TEST(LbrPdu, BringsBackLessWhenItIsShorterButNotMoreWhenItIsPadded) {
  Octets lbr = LbrTo(kLbm);
  lbr.insert(lbr.end(), 20, 0);
  EXPECT_TRUE(BringsBack(lbr, kLbm));
  lbr.resize(kLbm.size() - 1);
  EXPECT_FALSE(BringsBack(lbr, kLbm));
}

}  // namespace
}  // namespace cfm_mgr::pdu
