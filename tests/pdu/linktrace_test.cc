// SPDX-License-Identifier: Apache-2.0
#include "pdu/linktrace.h"

#include <gtest/gtest.h>

namespace cfm_mgr::pdu {
namespace {

using Octets = std::vector<std::uint8_t>;

constexpr MacAddress kOriginal = {0x02, 0, 0, 0, 0, 0x01};
constexpr MacAddress kTarget = {0x02, 0, 0, 0, 0, 0x09};

const Octets kLtm = {
    0x60,                                            // level 3 << 5 | version 0
    0x05,                                            // opcode LTM 5
    0x80,                                            // flags: use-FDB-only 0x80
    0x11,                                            // first TLV offset: 4 + 1 + 6 + 6 = 17
    0x00, 0x00, 0x00, 0x2a,                          // transaction identifier 42
    0x40,                                            // TTL 64
    0x02, 0x00, 0x00, 0x00, 0x00, 0x01,              // original MAC address
    0x02, 0x00, 0x00, 0x00, 0x00, 0x09,              // target MAC address
    0x07, 0x00, 0x08,                                // LTM Egress Identifier TLV 7, 8 octets
    0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x00, 0x01,  // two octets, then the sender's address
    0x00,                                            // End TLV
};

const Octets kLtr = {
    0x60,                                            // level 3 << 5 | version 0
    0x04,                                            // opcode LTR 4
    0xe0,                                            // use-FDB-only, forwarded 0x40, terminal 0x20
    0x06,                                            // first TLV offset: 4 + 1 + 1
    0x00, 0x00, 0x00, 0x2a,                          // transaction identifier 42
    0x3f,                                            // TTL 63
    0x02,                                            // relay action FDB 2
    0x08, 0x00, 0x10,                                // LTR Egress Identifier TLV 8, 16 octets
    0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x00, 0x01,  // last
    0x00, 0x01, 0x02, 0x00, 0x00, 0x00, 0x00, 0x02,  // next
    0x05, 0x00, 0x0c,                                // Reply Ingress TLV 5: 1+6+1+1+3 octets
    0x01, 0x02, 0x00, 0x00, 0x00, 0x00, 0x03,        // action OK 1, MAC address
    0x03, 0x05, 'e',  't',  'h',                     // port ID of 3 octets, subtype 5
    0x06, 0x00, 0x07,                                // Reply Egress TLV 6: 1+6 octets
    0x03, 0x02, 0x00, 0x00, 0x00, 0x00, 0x04,        // action blocked 3, MAC address
    0x00,                                            // End TLV
};

Ltr SampleLtr() {
  Ltr ltr;
  ltr.level = 3;
  ltr.use_fdb_only = true;
  ltr.forwarded = true;
  ltr.terminal_mep = true;
  ltr.transaction_id = 42;
  ltr.ttl = 63;
  ltr.relay_action = 2;
  ltr.last_egress = {0, 0, 2, 0, 0, 0, 0, 1};
  ltr.next_egress = {0, 1, 2, 0, 0, 0, 0, 2};
  ltr.ingress = ReplyPortTlv{1, {2, 0, 0, 0, 0, 3}, 5, OctetsOf("eth")};
  ltr.egress = ReplyPortTlv{3, {2, 0, 0, 0, 0, 4}, {}, {}};
  return ltr;
}

Octets WithOctet(Octets octets, std::size_t index, std::uint8_t value) {
  octets[index] = value;
  return octets;
}

TEST(LtmPdu, IsEncodedAsInItsTable) {
  EXPECT_EQ(kLtm, Encode(Ltm{3, true, 42, 64, kOriginal, kTarget, {0, 0, 2, 0, 0, 0, 0, 1}, {}}));
}

TEST(LtmPdu, IsDecoded) {
  const auto ltm = DecodeLtm(kLtm);
  ASSERT_TRUE(ltm);
  EXPECT_EQ(3, ltm->level);
  EXPECT_TRUE(ltm->use_fdb_only);
  EXPECT_EQ(42U, ltm->transaction_id);
  EXPECT_EQ(64, ltm->ttl);
  EXPECT_EQ(kOriginal, ltm->original);
  EXPECT_EQ(kTarget, ltm->target);
  EXPECT_EQ((EgressIdentifier{0, 0, 2, 0, 0, 0, 0, 1}), ltm->egress_id);
  EXPECT_FALSE(ltm->sender_id);
  EXPECT_FALSE(DecodeLtm(WithOctet(kLtm, 2, 0))->use_fdb_only);
}

TEST(LtmPdu, CarriesASenderId) {
  Ltm ltm{3, false, 1, 2, kOriginal, kTarget, {}, SenderId{7, OctetsOf("b1"), {}, {}, {}}};
  const Octets pdu = Encode(ltm);
  const auto decoded = DecodeLtm(pdu);
  ASSERT_TRUE(decoded);
  ASSERT_TRUE(decoded->sender_id);
  EXPECT_EQ("b1", ToText(*decoded->sender_id));
}

TEST(LtmPdu, IsRefusedWhenCutAnywhere) {
  for (std::size_t size = 0; size < kLtm.size(); ++size) {
    EXPECT_FALSE(DecodeLtm(Octets(kLtm.begin(), kLtm.begin() + static_cast<long>(size)))) << size;
  }
}

TEST(LtmPdu, SaysWhyItIsRefused) {
  EXPECT_EQ(Fault::Opcode, DecodeLtm(kLtr).fault());
  EXPECT_EQ(Fault::FirstTlvOffset, DecodeLtm(WithOctet(kLtm, 3, 16)).fault());
  EXPECT_EQ(Fault::MissingTlv, DecodeLtm(WithOctet(kLtm, 21, 31)).fault());
  Octets short_identifier = WithOctet(kLtm, 23, 7);
  short_identifier.erase(short_identifier.end() - 2);
  EXPECT_EQ(Fault::TlvLength, DecodeLtm(short_identifier).fault());
  EXPECT_EQ(Fault::Value, DecodeLtm(WithOctet(kLtm, 9, 0x03)).fault()) << "a group as origin";
  EXPECT_EQ(Fault::Value, DecodeLtm(WithOctet(kLtm, 15, 0x01)).fault()) << "a group as target";
}

/** What a bridge between two others makes of an LTM: a hop less, its own name. */
Ltm Altered(std::optional<SenderId> sender_id = {}) {
  Ltm ltm;
  ltm.ttl = 63;
  ltm.egress_id = {0, 0, 2, 0, 0, 0, 0, 5};
  ltm.sender_id = sender_id;
  return ltm;
}

Octets WithTlvs(Octets pdu, const Octets& tlvs) {
  pdu.insert(pdu.end() - 1, tlvs.begin(), tlvs.end());
  return pdu;
}

const Octets kForwarded = WithOctet(WithOctet(kLtm, 8, 63), 31, 5);

TEST(ForwardedLtm, HasOneHopLessAndAnotherEgressIdentifier) {
  EXPECT_EQ(kForwarded, ForwardLtm(kLtm, Altered()));
}

TEST(ForwardedLtm, KeepsTlvsThatAreNotKnownAndThoseOfOrganisations) {
  const Octets tlvs = {0x1f, 0x00, 0x05, 0x00, 0x00, 0x5e, 0x01, 0xaa,  // organisation-specific 31
                       0x03, 0x00, 0x01, 0xbb,                          // Data 3
                       0x1f, 0x00, 0x04, 0x00, 0x00, 0x5e, 0x02,        // another one of type 31
                       0xc8, 0x00, 0x00};                               // type 200, empty
  EXPECT_EQ(WithTlvs(kForwarded, tlvs), ForwardLtm(WithTlvs(kLtm, tlvs), Altered()));
}

TEST(ForwardedLtm, KeepsTheOrderOfTlvsBeforeTheEgressIdentifier) {
  const Octets before = {0x1f, 0x00, 0x04, 0x00, 0x00, 0x5e, 0x01};
  const auto with_before = [&](Octets pdu) {
    pdu.insert(pdu.begin() + 21, before.begin(), before.end());
    return pdu;
  };
  EXPECT_EQ(with_before(kForwarded), ForwardLtm(with_before(kLtm), Altered()));
}

TEST(ForwardedLtm, HasTheSenderIdOfTheForwarderInsteadOfThatOfTheSender) {
  const Octets theirs = {0x01, 0x00, 0x04, 0x02, 0x07, 'a', '1'};  // Sender ID 1, chassis ID "a1"
  const Octets ours = {0x01, 0x00, 0x04, 0x02, 0x07, 'b', '2'};
  const SenderId sender{7, OctetsOf("b2"), {}, {}, {}};
  EXPECT_EQ(WithTlvs(kForwarded, ours), ForwardLtm(WithTlvs(kLtm, theirs), Altered(sender)));
  EXPECT_EQ(WithTlvs(kForwarded, ours), ForwardLtm(kLtm, Altered(sender)));
  EXPECT_EQ(kForwarded, ForwardLtm(WithTlvs(kLtm, theirs), Altered()));
}

TEST(ForwardedLtm, KeepsVersionReservedFlagsAndFieldsOfALaterVersion) {
  // Two more octets of fixed fields, an egress identifier of ten.
  const auto of_later_version = [](Octets pdu) {
    pdu[0] |= 1;
    pdu[2] = 0xff;
    pdu[3] = 19;
    pdu[23] = 10;
    pdu.insert(pdu.end() - 1, {0xdd, 0xee});
    pdu.insert(pdu.begin() + 21, {0xcc, 0xcd});
    return pdu;
  };
  ASSERT_TRUE(DecodeLtm(of_later_version(kLtm)));
  EXPECT_EQ(of_later_version(kForwarded), ForwardLtm(of_later_version(kLtm), Altered()));
}

TEST(ForwardedLtm, LeavesThePaddingOut) {
  Octets padded = kLtm;
  padded.resize(60, 0xff);
  EXPECT_EQ(kForwarded, ForwardLtm(padded, Altered()));
}

TEST(LtrPdu, IsEncodedAsInItsTable) { EXPECT_EQ(kLtr, Encode(SampleLtr())); }

TEST(LtrPdu, IsDecoded) {
  const auto ltr = DecodeLtr(kLtr);
  ASSERT_TRUE(ltr);
  EXPECT_EQ(3, ltr->level);
  EXPECT_TRUE(ltr->use_fdb_only);
  EXPECT_TRUE(ltr->forwarded);
  EXPECT_TRUE(ltr->terminal_mep);
  EXPECT_EQ(42U, ltr->transaction_id);
  EXPECT_EQ(63, ltr->ttl);
  EXPECT_EQ(2, ltr->relay_action);
  EXPECT_EQ((EgressIdentifier{0, 0, 2, 0, 0, 0, 0, 1}), ltr->last_egress);
  EXPECT_EQ((EgressIdentifier{0, 1, 2, 0, 0, 0, 0, 2}), ltr->next_egress);
}

TEST(LtrPdu, TellsAPortWithIdentifierFromOneWithout) {
  const auto ltr = DecodeLtr(kLtr);
  ASSERT_TRUE(ltr);
  ASSERT_TRUE(ltr->ingress);
  EXPECT_EQ(1, ltr->ingress->action);
  EXPECT_EQ((MacAddress{2, 0, 0, 0, 0, 3}), ltr->ingress->mac);
  EXPECT_EQ(5, ltr->ingress->port_id_subtype);
  EXPECT_EQ(OctetsOf("eth"), ltr->ingress->port_id);
  ASSERT_TRUE(ltr->egress);
  EXPECT_EQ(3, ltr->egress->action);
  EXPECT_EQ((MacAddress{2, 0, 0, 0, 0, 4}), ltr->egress->mac);
  EXPECT_FALSE(ltr->egress->port_id_subtype);
}

TEST(LtrPdu, KeepsEachFlagApart) {
  const auto only = [](std::uint8_t flags) { return *DecodeLtr(WithOctet(kLtr, 2, flags)); };
  EXPECT_TRUE(only(0x80).use_fdb_only);
  EXPECT_FALSE(only(0x80).forwarded || only(0x80).terminal_mep);
  EXPECT_TRUE(only(0x40).forwarded);
  EXPECT_FALSE(only(0x40).use_fdb_only || only(0x40).terminal_mep);
  EXPECT_TRUE(only(0x20).terminal_mep);
  EXPECT_FALSE(only(0x20).use_fdb_only || only(0x20).forwarded);
}

TEST(LtrPdu, IsRefusedWhenCutAnywhere) {
  for (std::size_t size = 0; size < kLtr.size(); ++size) {
    EXPECT_FALSE(DecodeLtr(Octets(kLtr.begin(), kLtr.begin() + static_cast<long>(size)))) << size;
  }
}

TEST(LtrPdu, SaysWhyItIsRefused) {
  EXPECT_EQ(Fault::Opcode, DecodeLtr(kLtm).fault());
  EXPECT_EQ(Fault::FirstTlvOffset, DecodeLtr(WithOctet(kLtr, 3, 5)).fault());
  EXPECT_EQ(Fault::Value, DecodeLtr(WithOctet(kLtr, 9, 0)).fault()) << "relay action 0";
  EXPECT_EQ(Fault::Value, DecodeLtr(WithOctet(kLtr, 9, 4)).fault()) << "relay action 4";
  EXPECT_EQ(Fault::MissingTlv, DecodeLtr(WithOctet(kLtr, 10, 31)).fault());
  EXPECT_EQ(Fault::Value, DecodeLtr(WithOctet(kLtr, 32, 0)).fault()) << "ingress action 0";
  EXPECT_EQ(Fault::Value, DecodeLtr(WithOctet(kLtr, 47, 5)).fault()) << "egress action 5";
  EXPECT_EQ(Fault::TlvLength, DecodeLtr(WithOctet(kLtr, 39, 4)).fault()) << "port ID too long";
  EXPECT_EQ(Fault::TlvLength, DecodeLtr(WithOctet(kLtr, 39, 2)).fault()) << "octets left over";
  EXPECT_EQ(Fault::DuplicateTlv, DecodeLtr(WithOctet(kLtr, 44, 5)).fault());
}

TEST(LtrPdu, OfALaterVersionMayUseCodesOfItsOwn) {
  const Octets later = WithOctet(WithOctet(kLtr, 0, 0x61), 9, 77);
  const auto ltr = DecodeLtr(later);
  ASSERT_TRUE(ltr);
  EXPECT_EQ(77, ltr->relay_action);
}

}  // namespace
}  // namespace cfm_mgr::pdu
