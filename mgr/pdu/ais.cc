// SPDX-License-Identifier: Apache-2.0
#include "pdu/ais.h"

#include "pdu/tlv.h"

namespace cfm_mgr::pdu {
namespace {

constexpr std::uint8_t kFixedSize = 0;
constexpr unsigned kPeriodMask = 0x07;

}  // namespace

Decoded<Ais> DecodeAis(OctetView pdu) {
  const Decoded<Parts> parts = DecodeParts(pdu, Opcode::Ais, kFixedSize);
  if (!parts) return parts.fault();
  Ais ais;
  ais.level = parts->header.level;
  ais.period = static_cast<std::uint8_t>(parts->header.flags & kPeriodMask);
  if (ais.period != kAisOneSecond && ais.period != kAisOneMinute) return Fault::Value;
  return ais;
}

std::vector<std::uint8_t> Encode(const Ais& ais) {
  std::vector<std::uint8_t> pdu;
  Writer writer(pdu);
  Encode(writer, ais.level, Opcode::Ais, ais.period, kFixedSize);
  EncodeEndTlv(writer);
  return pdu;
}

}  // namespace cfm_mgr::pdu
