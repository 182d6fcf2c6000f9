// SPDX-License-Identifier: Apache-2.0
#include "pdu/sender_id.h"

namespace cfm_mgr::pdu {
namespace {

constexpr std::size_t kMacSize = 6;
constexpr std::uint8_t kAddressFamilyIpv4 = 1;
constexpr std::size_t kIpv4Size = 4;

void AppendHex(std::string& text, std::uint8_t octet) {
  constexpr const char* kDigits = "0123456789abcdef";
  text += kDigits[octet >> 4U];
  text += kDigits[octet & 0xfU];
}

std::string MacText(OctetView mac) {
  std::string text;
  for (const std::uint8_t octet : mac) {
    if (!text.empty()) text += ':';
    AppendHex(text, octet);
  }
  return text;
}

std::string Ipv4Text(OctetView address) {
  std::string text;
  for (const std::uint8_t octet : address) {
    if (!text.empty()) text += '.';
    text += std::to_string(octet);
  }
  return text;
}

std::string PlainText(OctetView octets) {
  std::string text;
  for (const std::uint8_t octet : octets) {
    if (octet >= ' ' && octet < 0x7f && octet != '\\') {
      text += static_cast<char>(octet);
    } else {
      text += "\\x";
      AppendHex(text, octet);
    }
  }
  return text;
}

std::string ChassisText(std::uint8_t subtype, OctetView id) {
  if (subtype == kChassisIdMac && id.size() == kMacSize) return MacText(id);
  if (subtype == kChassisIdNetworkAddress && id.size() == 1 + kIpv4Size &&
      id[0] == kAddressFamilyIpv4) {
    return Ipv4Text(id.After(1));
  }
  return PlainText(id);
}

}  // namespace

Decoded<std::optional<SenderId>> DecodeSenderId(const Parts& parts) {
  const std::optional<OctetView> value = parts.tlvs.Find(TlvType::SenderId);
  if (!value) return std::optional<SenderId>();
  SenderId sender;
  sender.value = *value;
  Reader reader(*value);
  const std::uint8_t chassis_size = reader.U8();
  if (chassis_size > 0) {
    sender.chassis_subtype = reader.U8();
    sender.chassis_id = reader.Take(chassis_size);
  }
  if (reader.ok() && !reader.rest().empty()) {
    sender.management_domain = reader.Take(reader.U8());
    if (!sender.management_domain.empty()) sender.management_address = reader.Take(reader.U8());
  }
  if (!reader.ok()) return Fault::TlvLength;
  if (parts.header.version == 0 && !reader.rest().empty()) return Fault::TlvLength;
  return std::optional<SenderId>(sender);
}

void Encode(Writer& writer, const SenderId& sender_id) {
  std::vector<std::uint8_t> value;
  Writer fields(value);
  fields.U8(static_cast<std::uint8_t>(sender_id.chassis_id.size()));
  if (!sender_id.chassis_id.empty()) {
    fields.U8(sender_id.chassis_subtype);
    fields.Octets(sender_id.chassis_id);
  }
  if (!sender_id.management_domain.empty()) {
    fields.U8(static_cast<std::uint8_t>(sender_id.management_domain.size()));
    fields.Octets(sender_id.management_domain);
    fields.U8(static_cast<std::uint8_t>(sender_id.management_address.size()));
    fields.Octets(sender_id.management_address);
  }
  EncodeTlv(writer, TlvType::SenderId, value);
}

std::string ToText(const SenderId& sender_id) {
  std::string text = ChassisText(sender_id.chassis_subtype, sender_id.chassis_id);
  if (sender_id.management_address.empty()) return text;
  if (!text.empty()) text += ' ';
  for (const std::uint8_t octet : sender_id.management_address) AppendHex(text, octet);
  return text;
}

}  // namespace cfm_mgr::pdu
