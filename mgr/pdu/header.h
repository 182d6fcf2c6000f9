/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * What every CFM PDU begins with, IEEE 802.1Q 21.4.
 *
 * A PDU of a later version than 0 is decoded as one of version 0: its header may have more fixed
 * fields (the First TLV Offset tells where they end), its TLVs may be longer, and what is not known
 * of it is ignored.
 */
#ifndef CFM_MGR_PDU_HEADER_H
#define CFM_MGR_PDU_HEADER_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "pdu/decoded.h"
#include "pdu/octets.h"

namespace cfm_mgr::pdu {

enum class Opcode : std::uint8_t {
  Ccm = 1,
  Lbr = 2,
  Lbm = 3,
  Ltr = 4,
  Ltm = 5,
  Ais = 33,
  Lck = 35,
  OneWayDm = 45,
  Dmr = 46,
  Dmm = 47,
};

inline constexpr std::size_t kHeaderSize = 4;
/** Where a PDU has its First TLV Offset. */
inline constexpr std::size_t kFirstTlvOffsetAt = 3;
/** The most octets that one frame carries, jumbo frames included. */
inline constexpr std::size_t kMaxPduSize = 9600;
inline constexpr std::uint8_t kMaxLevel = 7;

struct Header {
  std::uint8_t level = 0;    ///< 0 to 7.
  std::uint8_t version = 0;  ///< 0 to 31.
  std::uint8_t opcode = 0;   ///< As it came, known or not.
  std::uint8_t flags = 0;
  std::uint8_t first_tlv_offset = 0;  ///< Octets between the header and the first TLV.
};

/** The header alone: enough to tell whose PDU it is. Looks at nothing that follows. */
Decoded<Header> DecodeHeader(OctetView pdu);

/** Appends a header of version 0. */
void Encode(Writer& writer, std::uint8_t level, Opcode opcode, std::uint8_t flags,
            std::uint8_t first_tlv_offset);

}  // namespace cfm_mgr::pdu

#endif
