// SPDX-License-Identifier: Apache-2.0
#include "pdu/linktrace.h"

#include <algorithm>

namespace cfm_mgr::pdu {
namespace {

constexpr std::uint8_t kLtmFixedSize = 17;
constexpr std::uint8_t kLtrFixedSize = 6;
constexpr std::size_t kLtmTtlAt = kHeaderSize + 4;

constexpr unsigned kUseFdbOnlyFlag = 0x80;
constexpr unsigned kForwardedFlag = 0x40;
constexpr unsigned kTerminalMepFlag = 0x20;

constexpr std::size_t kEgressIdentifierSize = 8;
constexpr std::size_t kReplyPortMinSize = 7;
constexpr auto kMaxRelayAction = static_cast<std::uint8_t>(RelayAction::Mpdb);
constexpr auto kMaxPortAction = static_cast<std::uint8_t>(PortAction::Vid);

/** Whether a code that counts from 1 is one that this version of a PDU may carry. */
bool IsKnownCode(std::uint8_t code, std::uint8_t max, std::uint8_t version) {
  return version != 0 || (code >= 1 && code <= max);
}

/** The value of a TLV that has to be there and holds @p size octets. */
Decoded<OctetView> FindRequired(const Parts& parts, TlvType type, std::size_t size) {
  const std::optional<OctetView> value = parts.tlvs.Find(type);
  if (!value) return Fault::MissingTlv;
  if (!HasSize(*value, size, parts.header.version)) return Fault::TlvLength;
  return *value;
}

Decoded<std::optional<ReplyPortTlv>> DecodeReplyPort(const Parts& parts, TlvType type) {
  const std::optional<OctetView> value = parts.tlvs.Find(type);
  if (!value) return std::optional<ReplyPortTlv>();
  ReplyPortTlv port;
  Reader reader(*value);
  port.action = reader.U8();
  reader.Fill(port.mac);
  if (reader.ok() && !reader.rest().empty()) {
    const std::uint8_t size = reader.U8();
    if (size > 0) {
      port.port_id_subtype = reader.U8();
      port.port_id = reader.Take(size);
    }
  }
  if (!reader.ok()) return Fault::TlvLength;
  if (parts.header.version == 0 && !reader.rest().empty()) return Fault::TlvLength;
  if (!IsKnownCode(port.action, kMaxPortAction, parts.header.version)) return Fault::Value;
  return std::optional<ReplyPortTlv>(port);
}

void EncodeReplyPort(Writer& writer, TlvType type, const ReplyPortTlv& port) {
  std::vector<std::uint8_t> value;
  value.reserve(kReplyPortMinSize);
  Writer fields(value);
  fields.U8(port.action);
  fields.Octets(port.mac);
  if (port.port_id_subtype) {
    fields.U8(static_cast<std::uint8_t>(port.port_id.size()));
    fields.U8(*port.port_id_subtype);
    fields.Octets(port.port_id);
  }
  EncodeTlv(writer, type, value);
}

/** An egress identifier in place of another; what a later version has behind it stays. */
void EncodeNewEgress(Writer& writer, OctetView received, const EgressIdentifier& egress) {
  std::vector<std::uint8_t> value(received.begin(), received.end());
  std::copy(egress.begin(), egress.end(), value.begin());
  EncodeTlv(writer, TlvType::LtmEgressIdentifier, value);
}

std::uint8_t LtrFlags(const Ltr& ltr) {
  return static_cast<std::uint8_t>((ltr.use_fdb_only ? kUseFdbOnlyFlag : 0U) |
                                   (ltr.forwarded ? kForwardedFlag : 0U) |
                                   (ltr.terminal_mep ? kTerminalMepFlag : 0U));
}

/** All of an LTR but its TLVs. */
Ltr LtrFields(const Parts& parts) {
  Ltr ltr;
  ltr.level = parts.header.level;
  ltr.use_fdb_only = (parts.header.flags & kUseFdbOnlyFlag) != 0;
  ltr.forwarded = (parts.header.flags & kForwardedFlag) != 0;
  ltr.terminal_mep = (parts.header.flags & kTerminalMepFlag) != 0;
  Reader fields(parts.fields);
  ltr.transaction_id = fields.U32();
  ltr.ttl = fields.U8();
  ltr.relay_action = fields.U8();
  return ltr;
}

}  // namespace

Decoded<Ltm> DecodeLtm(OctetView pdu) {
  const Decoded<Parts> parts = DecodeParts(pdu, Opcode::Ltm, kLtmFixedSize);
  if (!parts) return parts.fault();
  Ltm ltm;
  ltm.level = parts->header.level;
  ltm.use_fdb_only = (parts->header.flags & kUseFdbOnlyFlag) != 0;
  Reader fields(parts->fields);
  ltm.transaction_id = fields.U32();
  ltm.ttl = fields.U8();
  fields.Fill(ltm.original);
  fields.Fill(ltm.target);
  if (IsGroup(ltm.original) || IsGroup(ltm.target)) return Fault::Value;
  const auto egress = FindRequired(*parts, TlvType::LtmEgressIdentifier, kEgressIdentifierSize);
  if (!egress) return egress.fault();
  Reader(*egress).Fill(ltm.egress_id);
  const auto sender_id = DecodeSenderId(*parts);
  if (!sender_id) return sender_id.fault();
  ltm.sender_id = *sender_id;
  return ltm;
}

Decoded<Ltr> DecodeLtr(OctetView pdu) {
  const Decoded<Parts> parts = DecodeParts(pdu, Opcode::Ltr, kLtrFixedSize);
  if (!parts) return parts.fault();
  Ltr ltr = LtrFields(*parts);
  if (!IsKnownCode(ltr.relay_action, kMaxRelayAction, parts->header.version)) return Fault::Value;
  const auto identifiers =
      FindRequired(*parts, TlvType::LtrEgressIdentifier, 2 * kEgressIdentifierSize);
  if (!identifiers) return identifiers.fault();
  Reader reader(*identifiers);
  reader.Fill(ltr.last_egress);
  reader.Fill(ltr.next_egress);
  const auto ingress = DecodeReplyPort(*parts, TlvType::ReplyIngress);
  if (!ingress) return ingress.fault();
  const auto egress = DecodeReplyPort(*parts, TlvType::ReplyEgress);
  if (!egress) return egress.fault();
  const auto sender_id = DecodeSenderId(*parts);
  if (!sender_id) return sender_id.fault();
  ltr.ingress = *ingress;
  ltr.egress = *egress;
  ltr.sender_id = *sender_id;
  return ltr;
}

std::vector<std::uint8_t> Encode(const Ltm& ltm) {
  std::vector<std::uint8_t> pdu;
  Writer writer(pdu);
  const auto flags = static_cast<std::uint8_t>(ltm.use_fdb_only ? kUseFdbOnlyFlag : 0U);
  Encode(writer, ltm.level, Opcode::Ltm, flags, kLtmFixedSize);
  writer.U32(ltm.transaction_id);
  writer.U8(ltm.ttl);
  writer.Octets(ltm.original);
  writer.Octets(ltm.target);
  EncodeTlv(writer, TlvType::LtmEgressIdentifier, ltm.egress_id);
  if (ltm.sender_id) Encode(writer, *ltm.sender_id);
  EncodeEndTlv(writer);
  return pdu;
}

std::vector<std::uint8_t> ForwardLtm(OctetView received, const Ltm& ltm) {
  const std::size_t fixed_size = kHeaderSize + received[kFirstTlvOffsetAt];
  std::vector<std::uint8_t> pdu(received.begin(), received.First(fixed_size).end());
  pdu[kLtmTtlAt] = ltm.ttl;
  Writer writer(pdu);
  Reader reader(received.After(fixed_size));
  for (Tlv tlv = ReadTlv(reader); tlv.type != static_cast<std::uint8_t>(TlvType::End);
       tlv = ReadTlv(reader)) {
    const auto type = static_cast<TlvType>(tlv.type);
    if (type == TlvType::LtmEgressIdentifier) {
      EncodeNewEgress(writer, tlv.value, ltm.egress_id);
      if (ltm.sender_id) Encode(writer, *ltm.sender_id);
    } else if (type != TlvType::SenderId) {
      EncodeTlv(writer, type, tlv.value);
    }
  }
  EncodeEndTlv(writer);
  return pdu;
}

std::vector<std::uint8_t> Encode(const Ltr& ltr) {
  std::vector<std::uint8_t> pdu;
  Writer writer(pdu);
  Encode(writer, ltr.level, Opcode::Ltr, LtrFlags(ltr), kLtrFixedSize);
  writer.U32(ltr.transaction_id);
  writer.U8(ltr.ttl);
  writer.U8(ltr.relay_action);
  std::vector<std::uint8_t> identifiers(ltr.last_egress.begin(), ltr.last_egress.end());
  identifiers.insert(identifiers.end(), ltr.next_egress.begin(), ltr.next_egress.end());
  EncodeTlv(writer, TlvType::LtrEgressIdentifier, identifiers);
  if (ltr.ingress) EncodeReplyPort(writer, TlvType::ReplyIngress, *ltr.ingress);
  if (ltr.egress) EncodeReplyPort(writer, TlvType::ReplyEgress, *ltr.egress);
  if (ltr.sender_id) Encode(writer, *ltr.sender_id);
  EncodeEndTlv(writer);
  return pdu;
}

}  // namespace cfm_mgr::pdu
