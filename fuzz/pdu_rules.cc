// SPDX-License-Identifier: Apache-2.0
#include "pdu_rules.h"

#include <optional>
#include <string>
#include <tuple>

#include "pdu/ais.h"
#include "pdu/ccm.h"
#include "pdu/delay.h"
#include "pdu/linktrace.h"
#include "pdu/loopback.h"
#include "pdu_layout.h"
#include "require.h"

namespace cfm_fuzz {
namespace {

using namespace cfm_mgr::pdu;

bool Same(const std::optional<SenderId>& a, const std::optional<SenderId>& b) {
  const auto fields = [](const SenderId& s) {
    return std::tie(s.chassis_subtype, s.chassis_id, s.management_domain, s.management_address);
  };
  return a.has_value() == b.has_value() && (!a || fields(*a) == fields(*b));
}

bool Same(const std::optional<ReplyPortTlv>& a, const std::optional<ReplyPortTlv>& b) {
  const auto fields = [](const ReplyPortTlv& p) {
    return std::tie(p.action, p.mac, p.port_id_subtype, p.port_id);
  };
  return a.has_value() == b.has_value() && (!a || fields(*a) == fields(*b));
}

bool Same(const Ccm& a, const Ccm& b) {
  const auto fields = [](const Ccm& c) {
    return std::tie(c.level, c.rdi, c.interval, c.sequence, c.mep_id, c.maid, c.port_status,
                    c.interface_status);
  };
  return fields(a) == fields(b) && Same(a.sender_id, b.sender_id);
}

bool Same(const Ais& a, const Ais& b) {
  return std::tie(a.level, a.period) == std::tie(b.level, b.period);
}

bool Same(const Loopback& a, const Loopback& b) {
  return std::tie(a.level, a.transaction_id, a.data) ==
             std::tie(b.level, b.transaction_id, b.data) &&
         Same(a.sender_id, b.sender_id);
}

bool Same(const Ltm& a, const Ltm& b) {
  const auto fields = [](const Ltm& m) {
    return std::tie(m.level, m.use_fdb_only, m.transaction_id, m.ttl, m.original, m.target,
                    m.egress_id);
  };
  return fields(a) == fields(b) && Same(a.sender_id, b.sender_id);
}

bool Same(const Ltr& a, const Ltr& b) {
  const auto fields = [](const Ltr& r) {
    return std::tie(r.level, r.use_fdb_only, r.forwarded, r.terminal_mep, r.transaction_id, r.ttl,
                    r.relay_action, r.last_egress, r.next_egress);
  };
  return fields(a) == fields(b) && Same(a.ingress, b.ingress) && Same(a.egress, b.egress) &&
         Same(a.sender_id, b.sender_id);
}

template <class Value, class Decode>
void RequireSurvives(const Value& value, const std::vector<std::uint8_t>& encoded, Decode decode,
                     std::string_view name) {
  const auto again = decode(encoded);
  Require(static_cast<bool>(again), std::string(name) + ": what is encoded can be decoded");
  Require(Same(value, *again), std::string(name) + ": what is encoded means the same");
}

void Check(const Ccm& ccm, OctetView /*octets*/) {
  Require(ccm.interval >= 1 && ccm.interval <= 7 && ccm.mep_id >= 1 && ccm.mep_id <= kMaxMepId,
          "an accepted CCM has an interval and a MEP identifier");
  RequireSurvives(ccm, Encode(ccm), DecodeCcm, "CCM");
}

void Check(const Ais& ais, OctetView /*octets*/) {
  Require(ais.period == kAisOneSecond || ais.period == kAisOneMinute,
          "an accepted AIS has one of the two periods");
  RequireSurvives(ais, Encode(ais), DecodeAis, "AIS");
}

void CheckLbm(const Loopback& lbm, OctetView octets) {
  RequireSurvives(lbm, EncodeLbm(lbm), DecodeLbm, "LBM");
  const auto lbr = LbrTo(octets);
  RequireSurvives(lbm, lbr, DecodeLbr, "LBR to an LBM");
  Require(BringsBack(lbr, octets), "an LBR brings back its LBM");
}

// TLVs of the types that no bridge replaces in an LTM, one after the other.
std::vector<std::uint8_t> TlvsThatStay(OctetView pdu) {
  std::vector<std::uint8_t> stay;
  OctetView rest = pdu.After(kHeaderSize + pdu[3]);
  while (rest[0] != 0) {
    const std::size_t size = 3 + ((std::size_t{rest[1]} << 8U) | rest[2]);
    if (rest[0] != 1 && rest[0] != 7) stay.insert(stay.end(), rest.begin(), rest.begin() + size);
    rest = rest.After(size);
  }
  return stay;
}

void CheckForwarding(Ltm ltm, OctetView octets) {
  ltm.ttl = static_cast<std::uint8_t>(ltm.ttl - 1);
  ltm.egress_id = {9, 8, 7, 6, 5, 4, 3, 2};
  for (const bool tells : {true, false}) {
    if (!tells) ltm.sender_id.reset();
    const auto forwarded = ForwardLtm(octets, ltm);
    RequireSurvives(ltm, forwarded, DecodeLtm, "forwarded LTM");
    Require(TlvsThatStay(octets) == TlvsThatStay(forwarded),
            "a forwarded LTM keeps the TLVs that are not the forwarder's");
    const std::size_t fixed_size = kHeaderSize + octets[3];
    std::vector<std::uint8_t> fixed(octets.begin(), octets.begin() + fixed_size);
    fixed[8] = ltm.ttl;
    Require(OctetView(forwarded).First(fixed_size) == OctetView(fixed),
            "a forwarded LTM keeps its fixed fields, but for the TTL");
  }
}

void Check(const Ltm& ltm, OctetView octets) {
  Require(!IsGroup(ltm.original) && !IsGroup(ltm.target), "an accepted LTM has plain addresses");
  RequireSurvives(ltm, Encode(ltm), DecodeLtm, "LTM");
  CheckForwarding(ltm, octets);
}

// Version 0 has no names for the codes of later versions.
std::uint8_t CodeOfVersion0(std::uint8_t code, std::uint8_t max) {
  return code >= 1 && code <= max ? code : std::uint8_t{1};
}

void Check(Ltr ltr, OctetView octets) {
  Ltr known = ltr;
  known.relay_action = CodeOfVersion0(ltr.relay_action, 3);
  if (known.ingress) known.ingress->action = CodeOfVersion0(ltr.ingress->action, 4);
  if (known.egress) known.egress->action = CodeOfVersion0(ltr.egress->action, 4);
  const bool version0 = DecodeHeader(octets)->version == 0;
  Require(!version0 || Same(known, ltr), "an accepted LTR of version 0 has codes of version 0");
  RequireSurvives(known, Encode(known), DecodeLtr, "LTR");
}

void CheckDmm(const DelayMeasurement& dmm, OctetView octets) {
  const auto encoded = EncodeDmm(dmm.level, dmm.tx_f, kMinDelayPduSize + octets.size() % 64);
  const auto again = DecodeDmm(encoded);
  Require(again && again->level == dmm.level && again->tx_f == dmm.tx_f,
          "DMM: what is encoded means the same");
  const Timestamp received{1, 2};
  const Timestamp sent{3, 4};
  const auto dmr = DecodeDmr(DmrTo(octets, received, sent));
  Require(dmr && dmr->level == dmm.level && dmr->tx_f == dmm.tx_f && dmr->rx_f == received &&
              dmr->tx_b == sent,
          "a DMR brings back its DMM and adds two times");
}

// Whether the octets are accepted by a decoder, which is only allowed to that of their opcode.
template <class Decode, class Check>
bool Accepted(OctetView octets, Opcode opcode, Decode decode, Check check) {
  const auto decoded = decode(octets);
  if (!decoded) {
    Require(std::string_view(Describe(decoded.fault())).size() > 1, "a fault has a description");
    return false;
  }
  Require(DecodeHeader(octets) && octets[1] == static_cast<std::uint8_t>(opcode),
          "a decoder takes its own opcode alone");
  RequireLayout(octets);
  check(*decoded, octets);
  return true;
}

template <class Value>
constexpr auto kCheck = [](const Value& value, OctetView octets) { Check(value, octets); };
constexpr auto kNoCheck = [](const auto&, OctetView) {};

int CountAccepting(OctetView octets) {
  return Accepted(octets, Opcode::Ccm, DecodeCcm, kCheck<Ccm>) +
         Accepted(octets, Opcode::Ais, DecodeAis, kCheck<Ais>) +
         Accepted(octets, Opcode::Lbm, DecodeLbm, CheckLbm) +
         Accepted(octets, Opcode::Lbr, DecodeLbr, kNoCheck) +
         Accepted(octets, Opcode::Ltm, DecodeLtm, kCheck<Ltm>) +
         Accepted(octets, Opcode::Ltr, DecodeLtr, kCheck<Ltr>) +
         Accepted(octets, Opcode::Dmm, DecodeDmm, CheckDmm) +
         Accepted(octets, Opcode::Dmr, DecodeDmr, kNoCheck);
}

void RequireReadableSender(OctetView octets) {
  const auto ccm = DecodeCcm(octets);
  if (!ccm || !ccm->sender_id) return;
  for (const char c : ToText(*ccm->sender_id)) {
    Require(c >= ' ' && c < 0x7f, "a sender ID as text can be printed");
  }
}

}  // namespace

void RequireRightPdu(OctetView octets) {
  Require(CountAccepting(octets) <= 1, "a PDU is of one kind");
  RequireReadableSender(octets);
  DecodeTlvs(octets);
}

bool IsDecodable(OctetView octets) { return CountAccepting(octets) == 1; }

}  // namespace cfm_fuzz
