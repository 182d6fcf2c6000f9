// SPDX-License-Identifier: Apache-2.0
#include "pdu/ais.h"

#include <gtest/gtest.h>

namespace cfm_mgr::pdu {
namespace {

using Octets = std::vector<std::uint8_t>;

// Level 6, one a minute.
const Octets kAis = {
    0xc0,  // level 6 << 5 | version 0
    0x21,  // opcode AIS 33
    0x06,  // flags: period 6 (1 min)
    0x00,  // first TLV offset: there are no fields
    0x00,  // End TLV
};

TEST(AisPdu, IsEncodedAsInItsTable) { EXPECT_EQ(kAis, Encode(Ais{6, kAisOneMinute})); }

TEST(AisPdu, IsDecodedToWhatWasEncoded) {
  const auto ais = DecodeAis(kAis);
  ASSERT_TRUE(ais);
  EXPECT_EQ(6, ais->level);
  EXPECT_EQ(kAisOneMinute, ais->period);
}

TEST(AisPdu, IsRefusedWhenCutAnywhere) {
  for (std::size_t size = 0; size < kAis.size(); ++size) {
    EXPECT_FALSE(DecodeAis({kAis.data(), size})) << size;
  }
}

TEST(AisPdu, HasOneOfTwoPeriods) {
  for (std::uint8_t flags = 0; flags < 8; ++flags) {
    Octets octets = kAis;
    octets[2] = flags;
    EXPECT_EQ(flags == 4 || flags == 6, static_cast<bool>(DecodeAis(octets))) << int{flags};
  }
}

TEST(AisPdu, OfALaterVersionMayHaveFields) {
  const auto ais = DecodeAis(Octets{0xc1, 0x21, 0x04, 0x02, 0xaa, 0xbb, 0x00});
  ASSERT_TRUE(ais);
  EXPECT_EQ(kAisOneSecond, ais->period);
}

}  // namespace
}  // namespace cfm_mgr::pdu
