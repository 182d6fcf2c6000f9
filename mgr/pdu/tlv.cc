// SPDX-License-Identifier: Apache-2.0
#include "pdu/tlv.h"

namespace cfm_mgr::pdu {

bool TlvSet::Add(std::uint8_t type, OctetView value) {
  if (type >= entries_.size()) return true;
  Entry& entry = entries_[type];
  if (entry.present) return false;
  entry = {true, value};
  return true;
}

Tlv ReadTlv(Reader& reader) {
  Tlv tlv;
  tlv.type = reader.U8();
  if (tlv.type != static_cast<std::uint8_t>(TlvType::End)) tlv.value = reader.Take(reader.U16());
  return tlv;
}

Decoded<TlvSet> DecodeTlvs(OctetView tlvs) {
  TlvSet set;
  Reader reader(tlvs);
  while (!reader.rest().empty()) {
    const Tlv tlv = ReadTlv(reader);
    if (!reader.ok()) return Fault::Truncated;
    if (tlv.type == static_cast<std::uint8_t>(TlvType::End)) return set;
    if (!set.Add(tlv.type, tlv.value)) return Fault::DuplicateTlv;
  }
  return Fault::NoEndTlv;
}

Decoded<Parts> DecodeParts(OctetView pdu, Opcode opcode, std::size_t fixed_size) {
  const Decoded<Header> header = DecodeHeader(pdu);
  if (!header) return header.fault();
  if (header->opcode != static_cast<std::uint8_t>(opcode)) return Fault::Opcode;
  if (header->first_tlv_offset < fixed_size) return Fault::FirstTlvOffset;
  Reader reader(pdu.After(kHeaderSize));
  const OctetView fields = reader.Take(header->first_tlv_offset);
  if (!reader.ok()) return Fault::Truncated;
  const Decoded<TlvSet> tlvs = DecodeTlvs(reader.rest());
  if (!tlvs) return tlvs.fault();
  return Parts{*header, fields, *tlvs};
}

Decoded<std::optional<std::uint8_t>> DecodeStatus(const Parts& parts, TlvType type,
                                                  std::uint8_t max) {
  const std::optional<OctetView> value = parts.tlvs.Find(type);
  if (!value) return std::optional<std::uint8_t>();
  if (!HasSize(*value, 1, parts.header.version)) return Fault::TlvLength;
  const std::uint8_t status = (*value)[0];
  if (status >= 1 && status <= max) return std::optional<std::uint8_t>(status);
  if (parts.header.version == 0) return Fault::Value;
  return std::optional<std::uint8_t>();
}

void EncodeTlv(Writer& writer, TlvType type, OctetView value) {
  writer.U8(static_cast<std::uint8_t>(type));
  writer.U16(static_cast<std::uint16_t>(value.size()));
  writer.Octets(value);
}

void EncodeEndTlv(Writer& writer) { writer.U8(static_cast<std::uint8_t>(TlvType::End)); }

}  // namespace cfm_mgr::pdu
