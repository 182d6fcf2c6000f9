/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_PDU_LOOPBACK_H
#define CFM_MGR_PDU_LOOPBACK_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "pdu/sender_id.h"

namespace cfm_mgr::pdu {

/** A Loopback Message or Loopback Reply, IEEE 802.1Q 21.7: they differ in the opcode alone. */
struct Loopback {
  std::uint8_t level = 0;
  std::uint32_t transaction_id = 0;
  std::optional<SenderId> sender_id;  ///< Points into the PDU that was decoded.
  std::optional<OctetView> data;      ///< Value of the Data TLV; points into the PDU.
};

Decoded<Loopback> DecodeLbm(OctetView pdu);
Decoded<Loopback> DecodeLbr(OctetView pdu);

/** Version 0, TLVs in the order sender ID, data. The data have at most 9000 octets. */
std::vector<std::uint8_t> EncodeLbm(const Loopback& lbm);

/** The reply to an LBM that could be decoded: the same octets with another opcode. */
std::vector<std::uint8_t> LbrTo(OctetView lbm);

/**
 * Whether a reply brings back what was sent: everything but the opcode, up to the end of the LBM.
 * Padding that a link added after that does not count.
 */
bool BringsBack(OctetView lbr, OctetView lbm);

}  // namespace cfm_mgr::pdu

#endif
