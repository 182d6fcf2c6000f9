// SPDX-License-Identifier: Apache-2.0
#include "pdu/delay.h"

namespace cfm_mgr::pdu {
namespace {

constexpr std::uint8_t kFixedSize = 32;
constexpr std::size_t kTimestampSize = 8;
constexpr std::size_t kOpcodeAt = 1;
constexpr std::size_t kRxFAt = kHeaderSize + kTimestampSize;
constexpr std::size_t kTxBAt = kRxFAt + kTimestampSize;
constexpr std::size_t kEndTlvSize = 1;
static_assert(kMinDelayPduSize == kHeaderSize + kFixedSize + kEndTlvSize);

Timestamp ReadTimestamp(Reader& reader) {
  const std::uint32_t seconds = reader.U32();
  return {seconds, reader.U32()};
}

void PatchTimestamp(std::vector<std::uint8_t>& pdu, std::size_t offset, const Timestamp& time) {
  PatchU32(pdu, offset, time.seconds);
  PatchU32(pdu, offset + 4, time.nanoseconds);
}

Decoded<DelayMeasurement> Decode(OctetView pdu, Opcode opcode) {
  const Decoded<Parts> parts = DecodeParts(pdu, opcode, kFixedSize);
  if (!parts) return parts.fault();
  Reader fields(parts->fields);
  DelayMeasurement message;
  message.level = parts->header.level;
  message.tx_f = ReadTimestamp(fields);
  message.rx_f = ReadTimestamp(fields);
  message.tx_b = ReadTimestamp(fields);
  return message;
}

}  // namespace

Decoded<DelayMeasurement> DecodeDmm(OctetView pdu) { return Decode(pdu, Opcode::Dmm); }

Decoded<DelayMeasurement> DecodeDmr(OctetView pdu) { return Decode(pdu, Opcode::Dmr); }

std::vector<std::uint8_t> EncodeDmm(std::uint8_t level, const Timestamp& tx_f, std::size_t size) {
  std::vector<std::uint8_t> pdu;
  pdu.reserve(size);
  Writer writer(pdu);
  Encode(writer, level, Opcode::Dmm, 0, kFixedSize);
  writer.U32(tx_f.seconds);
  writer.U32(tx_f.nanoseconds);
  writer.Zeros(kFixedSize - kTimestampSize);
  const std::size_t spare = size - kMinDelayPduSize;
  if (spare >= TlvSize(0)) {
    const std::vector<std::uint8_t> data(spare - TlvSize(0));
    EncodeTlv(writer, TlvType::Data, data);
  }
  EncodeEndTlv(writer);
  writer.Zeros(size - pdu.size());
  return pdu;
}

std::vector<std::uint8_t> DmrTo(OctetView dmm, const Timestamp& rx_f, const Timestamp& tx_b) {
  std::vector<std::uint8_t> dmr(dmm.begin(), dmm.end());
  dmr[kOpcodeAt] = static_cast<std::uint8_t>(Opcode::Dmr);
  PatchTimestamp(dmr, kRxFAt, rx_f);
  PatchTimestamp(dmr, kTxBAt, tx_b);
  return dmr;
}

}  // namespace cfm_mgr::pdu
