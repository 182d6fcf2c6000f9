// SPDX-License-Identifier: Apache-2.0
#include "pdu/ccm.h"

namespace cfm_mgr::pdu {
namespace {

constexpr std::uint8_t kFixedSize = 70;
/** Counters of Y.1731 loss measurement and reserved octets: sent as 0, not looked at. */
constexpr std::size_t kY1731Size = 16;
constexpr unsigned kRdiFlag = 0x80;
constexpr unsigned kIntervalMask = 0x07;

}  // namespace

Decoded<Ccm> DecodeCcm(OctetView pdu) {
  const Decoded<Parts> parts = DecodeParts(pdu, Opcode::Ccm, kFixedSize);
  if (!parts) return parts.fault();
  Ccm ccm;
  ccm.level = parts->header.level;
  ccm.rdi = (parts->header.flags & kRdiFlag) != 0;
  ccm.interval = static_cast<std::uint8_t>(parts->header.flags & kIntervalMask);
  Reader fields(parts->fields);
  ccm.sequence = fields.U32();
  ccm.mep_id = fields.U16();
  fields.Fill(ccm.maid);
  if (ccm.interval == 0 || ccm.mep_id == 0 || ccm.mep_id > kMaxMepId) return Fault::Value;
  if (!IsWellFormed(ccm.maid)) return Fault::Maid;
  const auto port_status = DecodeStatus(*parts, TlvType::PortStatus, kMaxPortStatus);
  if (!port_status) return port_status.fault();
  const auto interface_status = DecodeStatus(*parts, TlvType::InterfaceStatus, kMaxInterfaceStatus);
  if (!interface_status) return interface_status.fault();
  const auto sender_id = DecodeSenderId(*parts);
  if (!sender_id) return sender_id.fault();
  ccm.port_status = *port_status;
  ccm.interface_status = *interface_status;
  ccm.sender_id = *sender_id;
  return ccm;
}

std::vector<std::uint8_t> Encode(const Ccm& ccm) {
  std::vector<std::uint8_t> pdu;
  Writer writer(pdu);
  Encode(writer, ccm.level, Opcode::Ccm, CcmFlags(ccm.rdi, ccm.interval), kFixedSize);
  writer.U32(ccm.sequence);
  writer.U16(ccm.mep_id);
  writer.Octets(ccm.maid);
  writer.Zeros(kY1731Size);
  if (ccm.port_status) EncodeTlv(writer, TlvType::PortStatus, {&*ccm.port_status, 1});
  if (ccm.interface_status) {
    EncodeTlv(writer, TlvType::InterfaceStatus, {&*ccm.interface_status, 1});
  }
  if (ccm.sender_id) Encode(writer, *ccm.sender_id);
  EncodeEndTlv(writer);
  return pdu;
}

}  // namespace cfm_mgr::pdu
