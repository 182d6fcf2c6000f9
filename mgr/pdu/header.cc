// SPDX-License-Identifier: Apache-2.0
#include "pdu/header.h"

namespace cfm_mgr::pdu {
namespace {

constexpr unsigned kLevelShift = 5;
constexpr unsigned kVersionMask = 0x1f;

}  // namespace

const char* Describe(Fault fault) {
  switch (fault) {
    case Fault::Truncated:
      return "truncated";
    case Fault::TooLong:
      return "over-long";
    case Fault::Opcode:
      return "another opcode";
    case Fault::FirstTlvOffset:
      return "first TLV offset too small";
    case Fault::NoEndTlv:
      return "no End TLV";
    case Fault::TlvLength:
      return "wrong TLV length";
    case Fault::DuplicateTlv:
      return "TLV there twice";
    case Fault::MissingTlv:
      return "TLV missing";
    case Fault::Maid:
      return "wrong length in MAID";
    case Fault::Value:
      return "value out of range";
  }
  return "";
}

Decoded<Header> DecodeHeader(OctetView pdu) {
  if (pdu.size() < kHeaderSize) return Fault::Truncated;
  if (pdu.size() > kMaxPduSize) return Fault::TooLong;
  Header header;
  header.level = static_cast<std::uint8_t>(pdu[0] >> kLevelShift);
  header.version = static_cast<std::uint8_t>(pdu[0] & kVersionMask);
  header.opcode = pdu[1];
  header.flags = pdu[2];
  header.first_tlv_offset = pdu[3];
  return header;
}

void Encode(Writer& writer, std::uint8_t level, Opcode opcode, std::uint8_t flags,
            std::uint8_t first_tlv_offset) {
  writer.U8(static_cast<std::uint8_t>(level << kLevelShift));
  writer.U8(static_cast<std::uint8_t>(opcode));
  writer.U8(flags);
  writer.U8(first_tlv_offset);
}

}  // namespace cfm_mgr::pdu
