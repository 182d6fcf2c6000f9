// SPDX-License-Identifier: Apache-2.0
#include "net/frame_codec.h"

#include <gmock/gmock.h>

#include <numeric>

namespace cfm_mgr::net {
namespace {

using engine::Frame;
using engine::VlanTag;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Octets = std::vector<std::uint8_t>;

// A loopback reply of level 5 without TLVs but the End TLV: 5 << 5 = a0; LBR 2; flags 0; first TLV
// offset 4; transaction 1; End TLV 0.
const Octets kPdu = {0xa0, 0x02, 0x00, 0x04, 0x00, 0x00, 0x00, 0x01, 0x00};

// Two addresses, locally administered, and what follows them.
Octets OnTheWire(const Octets& tags_and_type, const Octets& pdu = kPdu) {
  Octets octets = {0x02, 0x00, 0x5e, 0x00, 0x00, 0x01, 0x02, 0x00, 0x5e, 0x00, 0x00, 0x02};
  octets.insert(octets.end(), tags_and_type.begin(), tags_and_type.end());
  octets.insert(octets.end(), pdu.begin(), pdu.end());
  return octets;
}

Octets Padded(Octets octets) {
  octets.resize(60);
  return octets;
}

Frame FrameWith(std::vector<VlanTag> tags) {
  Frame frame;
  frame.destination = {0x02, 0x00, 0x5e, 0x00, 0x00, 0x01};
  frame.source = {0x02, 0x00, 0x5e, 0x00, 0x00, 0x02};
  frame.tags = std::move(tags);
  frame.pdu = kPdu;
  return frame;
}

Octets Encoded(const Frame& frame) {
  Octets out;
  const std::size_t size = EncodeFrame(frame, out);
  EXPECT_EQ(size, out.size());
  return out;
}

std::optional<Frame> Decoded(const Octets& octets) {
  return DecodeFrame(octets.data(), octets.size());
}

TEST(FrameCodec, EncodesAnUntaggedFrameWithPadding) {
  EXPECT_THAT(Encoded(FrameWith({})), ElementsAreArray(Padded(OnTheWire({0x89, 0x02}))));
}

TEST(FrameCodec, EncodesACustomerTag) {
  // Priority 7, not drop eligible, VID 100: 7 << 13 | 100 = e064.
  EXPECT_THAT(Encoded(FrameWith({{0x8100, 7, false, 100}})),
              ElementsAreArray(Padded(OnTheWire({0x81, 0x00, 0xe0, 0x64, 0x89, 0x02}))));
}

TEST(FrameCodec, EncodesAServiceTagOutsideACustomerTag) {
  // Priority 5, drop eligible, VID 4094: 5 << 13 | 1 << 12 | ffe = bffe. Priority 1, VID 1: 2001.
  EXPECT_THAT(Encoded(FrameWith({{0x88a8, 5, true, 4094}, {0x8100, 1, false, 1}})),
              ElementsAreArray(
                  Padded(OnTheWire({0x88, 0xa8, 0xbf, 0xfe, 0x81, 0x00, 0x20, 0x01, 0x89, 0x02}))));
}

TEST(FrameCodec, AppendsToWhatIsThere) {
  Octets out = {0xAA};
  EXPECT_EQ(EncodeFrame(FrameWith({}), out), 60U);
  EXPECT_EQ(out.size(), 61U);
  EXPECT_EQ(out.front(), 0xAA);
}

TEST(FrameCodec, DoesNotPadALongFrame) {
  Frame frame = FrameWith({});
  frame.pdu.resize(47);
  EXPECT_EQ(Encoded(frame).size(), 61U);
}

TEST(FrameCodec, RefusesToEncodeWhatIsNoFrame) {
  std::vector<Frame> wrong(7, FrameWith({{}}));
  wrong[0].tags = {{}, {}, {}};
  wrong[1].tags[0].tpid = 0x9100;
  wrong[2].tags[0].pcp = 8;
  wrong[3].tags[0].vid = 4095;
  wrong[4].pdu.resize(3);
  wrong[5].pdu.resize(9022 - 18 + 1);
  wrong[6].source[0] |= 1;
  for (std::size_t i = 0; i < wrong.size(); ++i) {
    Octets out;
    EXPECT_EQ(EncodeFrame(wrong[i], out), 0U) << i;
    EXPECT_THAT(out, IsEmpty()) << i;
  }
}

TEST(FrameCodec, DecodesWhatItEncodes) {
  const std::vector<std::vector<VlanTag>> tag_lists = {
      {}, {{0x8100, 3, true, 0}}, {{0x88a8, 5, false, 4094}, {0x8100, 1, true, 1}}};
  for (const auto& tags : tag_lists) {
    const auto frame = Decoded(Encoded(FrameWith(tags)));
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->destination, FrameWith({}).destination);
    EXPECT_EQ(frame->source, FrameWith({}).source);
    ASSERT_EQ(frame->tags.size(), tags.size());
    for (std::size_t i = 0; i < tags.size(); ++i) {
      EXPECT_EQ(frame->tags[i].tpid, tags[i].tpid);
      EXPECT_EQ(frame->tags[i].pcp, tags[i].pcp);
      EXPECT_EQ(frame->tags[i].dei, tags[i].dei);
      EXPECT_EQ(frame->tags[i].vid, tags[i].vid);
    }
    Octets pdu = kPdu;
    pdu.resize(60 - 14 - 4 * tags.size());
    EXPECT_THAT(frame->pdu, ElementsAreArray(pdu));
  }
}

TEST(FrameCodec, TakesTheLongestFrameAndNoLongerOne) {
  Frame frame = FrameWith({{}, {}});
  frame.pdu.resize(9000);
  Octets octets = Encoded(frame);
  EXPECT_TRUE(Decoded(octets));
  octets.push_back(0);
  EXPECT_FALSE(Decoded(octets));
}

TEST(FrameCodec, RefusesOtherEtherTypesAndTags) {
  const Octets ipv4 = {0x08, 0x00};
  const Octets ipv4_tagged = {0x81, 0x00, 0x00, 0x01, 0x08, 0x00};
  const Octets old_tag = {0x91, 0x00, 0x00, 0x01, 0x89, 0x02};
  const Octets reserved_vid = {0x81, 0x00, 0x0f, 0xff, 0x89, 0x02};
  const Octets three_tags = {0x81, 0x00, 0x00, 0x01, 0x81, 0x00, 0x00,
                             0x01, 0x81, 0x00, 0x00, 0x01, 0x89, 0x02};
  for (const Octets& wrong : {ipv4, ipv4_tagged, old_tag, reserved_vid, three_tags}) {
    EXPECT_FALSE(Decoded(Padded(OnTheWire(wrong))))
        << unsigned{wrong[0]} << " " << unsigned{wrong[2]};
  }
}

TEST(FrameCodec, RefusesAGroupAddressAsTheSource) {
  Octets octets = Padded(OnTheWire({0x89, 0x02}));
  octets[6] = 0x03;
  EXPECT_FALSE(Decoded(octets));
}

TEST(FrameCodec, RefusesEveryTruncationBeforeTheEndOfTheHeader) {
  const Octets whole =
      OnTheWire({0x88, 0xa8, 0xbf, 0xfe, 0x81, 0x00, 0x20, 0x01, 0x89, 0x02}, {0xa0, 2, 0, 4});
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Octets part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_FALSE(Decoded(part)) << size;
  }
  EXPECT_TRUE(Decoded(whole));
}

}  // namespace
}  // namespace cfm_mgr::net
