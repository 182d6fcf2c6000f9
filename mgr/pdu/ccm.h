/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_PDU_CCM_H
#define CFM_MGR_PDU_CCM_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "pdu/maid.h"
#include "pdu/sender_id.h"

namespace cfm_mgr::pdu {

/** Greatest codes of a Port Status and of an Interface Status TLV; the least are 1. */
inline constexpr std::uint8_t kMaxPortStatus = 2;
inline constexpr std::uint8_t kMaxInterfaceStatus = 7;

inline constexpr std::uint16_t kMaxMepId = 8191;

/** A Continuity Check Message, IEEE 802.1Q 21.6. */
struct Ccm {
  std::uint8_t level = 0;
  bool rdi = false;
  std::uint8_t interval = 0;   ///< Code, 1 to 7.
  std::uint32_t sequence = 0;  ///< 0 when the sender does not count.
  std::uint16_t mep_id = 0;    ///< 1 to 8191.
  Maid maid{};
  std::optional<std::uint8_t> port_status;       ///< 1 blocked, 2 up.
  std::optional<std::uint8_t> interface_status;  ///< 1 to 7.
  std::optional<SenderId> sender_id;             ///< Points into the PDU that was decoded.
};

/** Refuses what no MEP may send: interval code 0, MEP identifiers and MAIDs that cannot be. */
Decoded<Ccm> DecodeCcm(OctetView pdu);

/** Version 0, TLVs in the order port status, interface status, sender ID. */
std::vector<std::uint8_t> Encode(const Ccm& ccm);

/** @name Where the octets that change from CCM to CCM stand
 * @{ */
inline constexpr std::size_t kCcmFlagsAt = 2;
inline constexpr std::size_t kCcmSequenceAt = 4;
/** @} */

/** The flags of a CCM. */
constexpr std::uint8_t CcmFlags(bool rdi, std::uint8_t interval) {
  return static_cast<std::uint8_t>((rdi ? 0x80U : 0U) | interval);
}

}  // namespace cfm_mgr::pdu

#endif
