/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_PDU_DELAY_H
#define CFM_MGR_PDU_DELAY_H

#include <cstddef>
#include <cstdint>
#include <tuple>
#include <vector>

#include "pdu/tlv.h"

namespace cfm_mgr::pdu {

/** Seconds and nanoseconds since an epoch that only its clock knows. */
struct Timestamp {
  std::uint32_t seconds = 0;
  std::uint32_t nanoseconds = 0;  ///< Below 1,000,000,000 when it means anything.
};

inline bool operator==(const Timestamp& a, const Timestamp& b) {
  return a.seconds == b.seconds && a.nanoseconds == b.nanoseconds;
}
inline bool operator<(const Timestamp& a, const Timestamp& b) {
  return std::tie(a.seconds, a.nanoseconds) < std::tie(b.seconds, b.nanoseconds);
}

/** A Delay Measurement Message or Reply, ITU-T Y.1731 9.15 and 9.16. Timestamps are as they came.
 */
struct DelayMeasurement {
  std::uint8_t level = 0;
  Timestamp tx_f;  ///< When the initiator sent the DMM.
  Timestamp rx_f;  ///< When the responder got it; 0 in a DMM.
  Timestamp tx_b;  ///< When the responder sent the DMR; 0 in a DMM.
};

Decoded<DelayMeasurement> DecodeDmm(OctetView pdu);
Decoded<DelayMeasurement> DecodeDmr(OctetView pdu);

/** Octets of a DMM or DMR without a Data TLV. */
inline constexpr std::size_t kMinDelayPduSize = 37;

/**
 * A DMM of version 0.
 * @param size Octets of the PDU, kMinDelayPduSize at least. A Data TLV of zeros fills it; one or
 * two octets, which are too few for a TLV, become padding after the End TLV.
 */
std::vector<std::uint8_t> EncodeDmm(std::uint8_t level, const Timestamp& tx_f, std::size_t size);

/** The reply to a DMM that could be decoded: the same octets, opcode and two timestamps changed. */
std::vector<std::uint8_t> DmrTo(OctetView dmm, const Timestamp& rx_f, const Timestamp& tx_b);

}  // namespace cfm_mgr::pdu

#endif
