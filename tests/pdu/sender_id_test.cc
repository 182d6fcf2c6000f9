// SPDX-License-Identifier: Apache-2.0
#include "pdu/sender_id.h"

#include <gtest/gtest.h>

namespace cfm_mgr::pdu {
namespace {

using Octets = std::vector<std::uint8_t>;

/** The parts of a PDU whose only TLV is a Sender ID TLV with this value, if it has a value. */
Parts WithSenderId(const Octets& value, std::uint8_t version = 0) {
  Parts parts;
  parts.header.version = version;
  parts.tlvs.Add(static_cast<std::uint8_t>(TlvType::SenderId), value);
  return parts;
}

std::string TextOf(const Octets& value) {
  const auto sender = DecodeSenderId(WithSenderId(value));
  if (!sender || !*sender) return "refused";
  return ToText(**sender);
}

TEST(SenderIdTlv, IsWrittenAsInItsTable) {
  const Octets mac = {0x02, 0x00, 0x5e, 0x00, 0x00, 0x01};
  const Octets domain = {0x2b, 0x06};
  const Octets address = {192, 0, 2, 1};
  SenderId sender;
  sender.chassis_subtype = kChassisIdMac;
  sender.chassis_id = mac;
  Octets octets;
  Writer writer(octets);
  Encode(writer, sender);
  EXPECT_EQ((Octets{0x01, 0x00, 0x08,                      // type 1, 1 + 1 + 6 octets
                    0x06, 0x04,                            // chassis ID length, subtype 4
                    0x02, 0x00, 0x5e, 0x00, 0x00, 0x01}),  // chassis ID
            octets);
  octets.clear();
  sender.management_domain = domain;
  sender.management_address = address;
  Encode(writer, sender);
  EXPECT_EQ((Octets{0x01, 0x00, 0x10,                    // type 1, 8 + 1 + 2 + 1 + 4 octets
                    0x06, 0x04,                          // chassis ID length, subtype 4
                    0x02, 0x00, 0x5e, 0x00, 0x00, 0x01,  // chassis ID
                    0x02, 0x2b, 0x06,                    // domain length, domain
                    0x04, 192, 0, 2, 1}),                // address length, address
            octets);
  octets.clear();
  Encode(writer, SenderId{});
  EXPECT_EQ((Octets{0x01, 0x00, 0x01, 0x00}), octets) << "a chassis ID length of 0 alone";
}

TEST(SenderIdTlv, IsReadAsText) {
  EXPECT_EQ("02:00:5e:00:00:1f", TextOf({6, 4, 0x02, 0x00, 0x5e, 0x00, 0x00, 0x1f}));
  EXPECT_EQ("192.0.2.1", TextOf({5, 5, 1, 192, 0, 2, 1}));
  EXPECT_EQ("sw-1", TextOf({4, 7, 's', 'w', '-', '1'}));
  EXPECT_EQ("\\x00\\x5c\\xff", TextOf({3, 7, 0x00, '\\', 0xff}));
  EXPECT_EQ("ab\\x0a", TextOf({3, 4, 'a', 'b', '\n'})) << "an address of three octets";
  EXPECT_EQ("", TextOf({0}));
  EXPECT_EQ("s c0000201", TextOf({1, 7, 's', 1, 0x2b, 4, 192, 0, 2, 1}));
  EXPECT_EQ("c0000201", TextOf({0, 1, 0x2b, 4, 192, 0, 2, 1}));
  EXPECT_EQ("s", TextOf({1, 7, 's', 0})) << "a domain length of 0 ends it";
}

TEST(SenderIdTlv, IsRefusedWhenItsLengthsDoNotFit) {
  const std::vector<Octets> values = {
      {},                             // no chassis ID length
      {2},                            // no subtype
      {2, 7, 's'},                    // chassis ID past the end
      {1, 7, 's', 2, 0x2b},           // domain past the end
      {1, 7, 's', 1, 0x2b},           // a domain but no address length
      {1, 7, 's', 1, 0x2b, 1},        // address past the end
      {1, 7, 's', 1, 0x2b, 1, 9, 9},  // octets left over
      {1, 7, 's', 0, 9},              // octets after a domain that is not there
  };
  for (const Octets& value : values) {
    const auto sender = DecodeSenderId(WithSenderId(value));
    ASSERT_FALSE(sender) << value.size();
    EXPECT_EQ(Fault::TlvLength, sender.fault());
  }
}

TEST(SenderIdTlv, MayBeLongerInALaterVersion) {
  const Octets longer = {1, 7, 's', 1, 0x2b, 1, 9, 0xaa, 0xbb};
  const auto sender = DecodeSenderId(WithSenderId(longer, 1));
  ASSERT_TRUE(sender);
  EXPECT_EQ("s 09", ToText(**sender));
}

TEST(SenderIdTlv, NeedNotBeThere) {
  const auto sender = DecodeSenderId(Parts{});
  ASSERT_TRUE(sender);
  EXPECT_FALSE(*sender);
}

}  // namespace
}  // namespace cfm_mgr::pdu
