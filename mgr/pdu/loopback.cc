// SPDX-License-Identifier: Apache-2.0
#include "pdu/loopback.h"

namespace cfm_mgr::pdu {
namespace {

constexpr std::uint8_t kFixedSize = 4;
constexpr std::size_t kOpcodeAt = 1;

Decoded<Loopback> Decode(OctetView pdu, Opcode opcode) {
  const Decoded<Parts> parts = DecodeParts(pdu, opcode, kFixedSize);
  if (!parts) return parts.fault();
  const auto sender_id = DecodeSenderId(*parts);
  if (!sender_id) return sender_id.fault();
  Reader fields(parts->fields);
  return Loopback{parts->header.level, fields.U32(), *sender_id, parts->tlvs.Find(TlvType::Data)};
}

}  // namespace

Decoded<Loopback> DecodeLbm(OctetView pdu) { return Decode(pdu, Opcode::Lbm); }

Decoded<Loopback> DecodeLbr(OctetView pdu) { return Decode(pdu, Opcode::Lbr); }

std::vector<std::uint8_t> EncodeLbm(const Loopback& lbm) {
  std::vector<std::uint8_t> pdu;
  Writer writer(pdu);
  Encode(writer, lbm.level, Opcode::Lbm, 0, kFixedSize);
  writer.U32(lbm.transaction_id);
  if (lbm.sender_id) Encode(writer, *lbm.sender_id);
  if (lbm.data) EncodeTlv(writer, TlvType::Data, *lbm.data);
  EncodeEndTlv(writer);
  return pdu;
}

std::vector<std::uint8_t> LbrTo(OctetView lbm) {
  std::vector<std::uint8_t> lbr(lbm.begin(), lbm.end());
  lbr[kOpcodeAt] = static_cast<std::uint8_t>(Opcode::Lbr);
  return lbr;
}

bool BringsBack(OctetView lbr, OctetView lbm) {
  return lbr.First(kOpcodeAt) == lbm.First(kOpcodeAt) &&
         lbr.First(lbm.size()).After(kOpcodeAt + 1) == lbm.After(kOpcodeAt + 1);
}

}  // namespace cfm_mgr::pdu
