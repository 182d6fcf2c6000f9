// SPDX-License-Identifier: Apache-2.0
#include "pdu/delay.h"

#include <gtest/gtest.h>

namespace cfm_mgr::pdu {
namespace {

using Octets = std::vector<std::uint8_t>;

// Level 3, sent at 2 s and 999,999,999 ns (0x3b9ac9ff), five octets of Data TLV in all.
const Octets kDmm = {
    0x60,                                            // level 3 << 5 | version 0
    0x2f,                                            // opcode DMM 47
    0x00,                                            // flags: all zero
    0x20,                                            // first TLV offset: four timestamps of 8
    0x00, 0x00, 0x00, 0x02, 0x3b, 0x9a, 0xc9, 0xff,  // TxTimeStampf: seconds, nanoseconds
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // room for RxTimeStampf
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // room for TxTimeStampb
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // room for RxTimeb
    0x03, 0x00, 0x02, 0x00, 0x00,                    // Data TLV 3 of 2 octets
    0x00,                                            // End TLV
};

// The reply to it: got at 5 s + 1 ns, answered at 5 s + 258 ns.
const Octets kDmr = {
    0x60,                                            // level 3 << 5 | version 0
    0x2e,                                            // opcode DMR 46
    0x00, 0x20,                                      // flags and offset of the DMM
    0x00, 0x00, 0x00, 0x02, 0x3b, 0x9a, 0xc9, 0xff,  // TxTimeStampf of the DMM
    0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00, 0x01,  // RxTimeStampf
    0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x01, 0x02,  // TxTimeStampb: 0x102 = 258
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // RxTimeb, the initiator's to fill
    0x03, 0x00, 0x02, 0x00, 0x00,                    // Data TLV of the DMM
    0x00,                                            // End TLV
};

constexpr Timestamp kSent{2, 999'999'999};

TEST(DmmPdu, IsEncodedAsInItsTable) { EXPECT_EQ(kDmm, EncodeDmm(3, kSent, 42)); }

TEST(DmmPdu, HasTheSizeThatIsAskedFor) {
  for (std::size_t size = kMinDelayPduSize; size < 120; ++size) {
    const Octets dmm = EncodeDmm(3, kSent, size);
    EXPECT_EQ(size, dmm.size());
    EXPECT_TRUE(DecodeDmm(dmm)) << size;
  }
}

TEST(DmmPdu, HasNoDataTlvWhenThereIsNoRoomForOne) {
  for (const std::size_t size : {37U, 38U, 39U}) EXPECT_EQ(0, EncodeDmm(0, kSent, size)[36]);
  EXPECT_EQ(3, EncodeDmm(0, kSent, 40)[36]);
}

TEST(DmmPdu, IsDecoded) {
  const auto dmm = DecodeDmm(kDmm);
  ASSERT_TRUE(dmm);
  EXPECT_EQ(3, dmm->level);
  EXPECT_EQ(kSent, dmm->tx_f);
}

TEST(DmmPdu, IsRefusedWhenCutAnywhere) {
  for (std::size_t size = 0; size < kDmm.size(); ++size) {
    EXPECT_FALSE(DecodeDmm(Octets(kDmm.begin(), kDmm.begin() + static_cast<long>(size)))) << size;
  }
}

TEST(DmmPdu, SaysWhyItIsRefused) {
  Octets dmm = kDmm;
  dmm[3] = 31;
  EXPECT_EQ(Fault::FirstTlvOffset, DecodeDmm(dmm).fault());
  dmm = kDmm;
  dmm.back() = 9;
  EXPECT_EQ(Fault::Truncated, DecodeDmm(dmm).fault());
  dmm.pop_back();
  EXPECT_EQ(Fault::NoEndTlv, DecodeDmm(dmm).fault());
  EXPECT_EQ(Fault::Opcode, DecodeDmm(kDmr).fault());
}

TEST(DmrPdu, IsItsDmmWithTheRespondersTimes) { EXPECT_EQ(kDmr, DmrTo(kDmm, {5, 1}, {5, 258})); }

TEST(DmrPdu, IsDecodedWithAllItsTimes) {
  const auto dmr = DecodeDmr(kDmr);
  ASSERT_TRUE(dmr);
  EXPECT_EQ(3, dmr->level);
  EXPECT_EQ(kSent, dmr->tx_f);
  EXPECT_EQ((Timestamp{5, 1}), dmr->rx_f);
  EXPECT_EQ((Timestamp{5, 258}), dmr->tx_b);
  EXPECT_EQ(Fault::Opcode, DecodeDmr(kDmm).fault());
}

}  // namespace
}  // namespace cfm_mgr::pdu
