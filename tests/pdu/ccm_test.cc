// SPDX-License-Identifier: Apache-2.0
#include "pdu/ccm.h"

#include <gtest/gtest.h>

namespace cfm_mgr::pdu {
namespace {

using Octets = std::vector<std::uint8_t>;

// MEP 10 of MD "D1" (character string), MA "A1" (character string), level 5, 1 s, RDI.
const Octets kCcm = {
    0xa0,                    // level 5 << 5 | version 0
    0x01,                    // opcode CCM 1
    0x84,                    // flags: RDI 0x80 | interval 4 (1 s)
    0x46,                    // first TLV offset 70: 4 + 2 + 48 + 16
    0x01, 0x02, 0x03, 0x04,  // sequence number
    0x00, 0x0a,              // MEP identifier 10
    // MAID, 48 octets
    0x04, 0x02, 'D', '1',                            // MD name format 4, length 2
    0x02, 0x02, 'A', '1',                            // MA name format 2, length 2
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  // 40 octets of zero
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  //
    0, 0, 0, 0, 0, 0, 0, 0,                          //
    // Y.1731: TxFCf, RxFCb, TxFCb, reserved
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  //
    // TLVs
    0x02, 0x00, 0x01, 0x02,              // Port Status 2, 1 octet: up 2
    0x04, 0x00, 0x01, 0x01,              // Interface Status 4, 1 octet: up 1
    0x01, 0x00, 0x08,                    // Sender ID 1, 8 octets
    0x06, 0x04,                          // chassis ID of 6 octets, subtype 4 (MAC address)
    0x02, 0x00, 0x5e, 0x00, 0x00, 0x01,  //
    0x00,                                // End
};

// Where octets of it stand.
constexpr std::size_t kVersion = 0;
constexpr std::size_t kOpcode = 1;
constexpr std::size_t kFlags = 2;
constexpr std::size_t kOffset = 3;
constexpr std::size_t kMepId = 8;
constexpr std::size_t kMdLength = 11;
constexpr std::size_t kTlvs = 74;

const Octets kMac = {0x02, 0x00, 0x5e, 0x00, 0x00, 0x01};

Octets WithOctet(Octets octets, std::size_t index, std::uint8_t value) {
  octets[index] = value;
  return octets;
}

/** The CCM up to its TLVs, then these ones. */
Octets WithTlvs(const Octets& tlvs) {
  Octets octets(kCcm.begin(), kCcm.begin() + kTlvs);
  octets.insert(octets.end(), tlvs.begin(), tlvs.end());
  return octets;
}

Ccm Sample() {
  Ccm ccm;
  ccm.level = 5;
  ccm.rdi = true;
  ccm.interval = 4;
  ccm.sequence = 0x01020304;
  ccm.mep_id = 10;
  ccm.maid = *EncodeMaid(4, "D1", 2, "A1");
  ccm.port_status = 2;
  ccm.interface_status = 1;
  ccm.sender_id.emplace();
  ccm.sender_id->chassis_subtype = kChassisIdMac;
  ccm.sender_id->chassis_id = kMac;
  return ccm;
}

TEST(CcmPdu, IsEncodedAsInItsTable) { EXPECT_EQ(kCcm, Encode(Sample())); }

TEST(CcmPdu, IsSeventyFiveOctetsWithoutTlvs) {
  Ccm ccm = Sample();
  ccm.port_status.reset();
  ccm.interface_status.reset();
  ccm.sender_id.reset();
  EXPECT_EQ(WithTlvs({0x00}), Encode(ccm));
  EXPECT_EQ(75U, Encode(ccm).size());
}

TEST(CcmPdu, IsDecodedToWhatWasEncoded) {
  const auto ccm = DecodeCcm(kCcm);
  ASSERT_TRUE(ccm);
  EXPECT_EQ(5, ccm->level);
  EXPECT_TRUE(ccm->rdi);
  EXPECT_EQ(4, ccm->interval);
  EXPECT_EQ(0x01020304U, ccm->sequence);
  EXPECT_EQ(10, ccm->mep_id);
  EXPECT_EQ(Sample().maid, ccm->maid);
  EXPECT_EQ(std::optional<std::uint8_t>(2), ccm->port_status);
  EXPECT_EQ(std::optional<std::uint8_t>(1), ccm->interface_status);
  ASSERT_TRUE(ccm->sender_id);
  EXPECT_EQ("02:00:5e:00:00:01", ToText(*ccm->sender_id));
}

TEST(CcmPdu, MayHaveNoTlvs) {
  const auto ccm = DecodeCcm(WithTlvs({0x00}));
  ASSERT_TRUE(ccm);
  EXPECT_FALSE(ccm->port_status);
  EXPECT_FALSE(ccm->interface_status);
  EXPECT_FALSE(ccm->sender_id);
}

TEST(CcmPdu, IsRefusedWhenCutAnywhere) {
  for (std::size_t size = 0; size < kCcm.size(); ++size) {
    EXPECT_FALSE(DecodeCcm({kCcm.data(), size})) << size;
  }
}

TEST(CcmPdu, MayBePadded) {
  Octets padded = kCcm;
  padded.insert(padded.end(), 40, 0xee);
  EXPECT_TRUE(DecodeCcm(padded));
}

TEST(CcmPdu, TellsEveryIntervalAndIgnoresReservedFlags) {
  for (std::uint8_t interval = 1; interval <= 7; ++interval) {
    const auto ccm = DecodeCcm(WithOctet(kCcm, kFlags, static_cast<std::uint8_t>(0x78 | interval)));
    ASSERT_TRUE(ccm);
    EXPECT_EQ(interval, ccm->interval);
    EXPECT_FALSE(ccm->rdi);
  }
}

struct FaultCase {
  const char* what;
  Octets octets;
  Fault fault;
};

std::vector<FaultCase> Faults() {
  return {
      {"another opcode", WithOctet(kCcm, kOpcode, 3), Fault::Opcode},
      {"an offset too small", WithOctet(kCcm, kOffset, 69), Fault::FirstTlvOffset},
      {"an offset past the end", WithOctet(kCcm, kOffset, 255), Fault::Truncated},
      {"interval 0", WithOctet(kCcm, kFlags, 0x80), Fault::Value},
      {"MEP 0", WithOctet(kCcm, kMepId + 1, 0), Fault::Value},
      {"MEP 8202", WithOctet(kCcm, kMepId, 0x20), Fault::Value},
      {"no MD name", WithOctet(kCcm, kMdLength, 0), Fault::Maid},
      {"an MD name past the MAID", WithOctet(kCcm, kMdLength, 44), Fault::Maid},
      {"no End TLV", WithTlvs({0x02, 0x00, 0x01, 0x02}), Fault::NoEndTlv},
      {"port status twice", WithTlvs({0x02, 0x00, 0x01, 0x02, 0x02, 0x00, 0x01, 0x02, 0x00}),
       Fault::DuplicateTlv},
      {"port status 0", WithTlvs({0x02, 0x00, 0x01, 0x00, 0x00}), Fault::Value},
      {"port status 3", WithTlvs({0x02, 0x00, 0x01, 0x03, 0x00}), Fault::Value},
      {"interface status 0", WithTlvs({0x04, 0x00, 0x01, 0x00, 0x00}), Fault::Value},
      {"interface status 8", WithTlvs({0x04, 0x00, 0x01, 0x08, 0x00}), Fault::Value},
      {"port status of no octets", WithTlvs({0x02, 0x00, 0x00, 0x00}), Fault::TlvLength},
      {"port status of two octets", WithTlvs({0x02, 0x00, 0x02, 0x02, 0x00, 0x00}),
       Fault::TlvLength},
      {"interface status of two octets", WithTlvs({0x04, 0x00, 0x02, 0x01, 0x00, 0x00}),
       Fault::TlvLength},
      {"a sender ID past its TLV", WithTlvs({0x01, 0x00, 0x02, 0x06, 0x04, 0x00}),
       Fault::TlvLength},
  };
}

TEST(CcmPdu, IsRefusedForWhatIsWrongWithIt) {
  for (const FaultCase& c : Faults()) {
    const auto ccm = DecodeCcm(c.octets);
    ASSERT_FALSE(ccm) << c.what;
    EXPECT_STREQ(Describe(c.fault), Describe(ccm.fault())) << c.what;
  }
}

TEST(CcmPdu, OfALaterVersionIsReadAsFarAsItIsKnown) {
  // Version 1: offset 72, two octets of fields not known here, a longer Port Status TLV, an
  // Interface Status that version 0 does not have, a TLV of a type not known here.
  Octets later(kCcm.begin(), kCcm.begin() + kTlvs);
  later[kVersion] = 0xa1;
  later[kOffset] = 72;
  const Octets rest = {0xaa, 0xbb, 0x02, 0x00, 0x02, 0x01, 0xcc, 0x04,
                       0x00, 0x01, 0x09, 0x40, 0x00, 0x00, 0x00};
  later.insert(later.end(), rest.begin(), rest.end());
  const auto ccm = DecodeCcm(later);
  ASSERT_TRUE(ccm);
  EXPECT_EQ(10, ccm->mep_id);
  EXPECT_EQ(std::optional<std::uint8_t>(1), ccm->port_status);
  EXPECT_FALSE(ccm->interface_status);
}

TEST(CcmPdu, ChangesWhereItsPatchesGo) {
  Ccm ccm = Sample();
  Octets patched = Encode(ccm);
  patched[kCcmFlagsAt] = CcmFlags(false, 7);
  PatchU32(patched, kCcmSequenceAt, 77);
  ccm.rdi = false;
  ccm.interval = 7;
  ccm.sequence = 77;
  EXPECT_EQ(Encode(ccm), patched);
}

}  // namespace
}  // namespace cfm_mgr::pdu
