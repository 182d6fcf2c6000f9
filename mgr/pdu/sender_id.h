/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_PDU_SENDER_ID_H
#define CFM_MGR_PDU_SENDER_ID_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "pdu/tlv.h"

namespace cfm_mgr::pdu {

/** Chassis ID subtypes of IEEE 802.1AB that are not plain text. */
inline constexpr std::uint8_t kChassisIdMac = 4;
inline constexpr std::uint8_t kChassisIdNetworkAddress = 5;

/**
 * A Sender ID TLV, IEEE 802.1Q 21.5.3. What is decoded points into the PDU; what is encoded points
 * to wherever the caller has it. An empty view is a field that is not there.
 */
struct SenderId {
  std::uint8_t chassis_subtype = 0;  ///< Means something when there is a chassis ID.
  OctetView chassis_id;              ///< At most 255 octets.
  OctetView management_domain;       ///< A transport domain as BER object identifier, without tag.
  OctetView management_address;      ///< There only together with a domain.
  OctetView value;                   ///< All of the TLV's value, when it was decoded.
};

/** The Sender ID TLV of a PDU, if it has one. */
Decoded<std::optional<SenderId>> DecodeSenderId(const Parts& parts);

/** Appends a Sender ID TLV. */
void Encode(Writer& writer, const SenderId& sender_id);

/**
 * The sender's chassis ID as text: MAC addresses as `aa:bb:cc:dd:ee:ff`, IPv4 network addresses as
 * `a.b.c.d`, names as they are, and all that cannot be printed as `\xhh`. The management address
 * follows after a blank, as hexadecimal digits.
 */
std::string ToText(const SenderId& sender_id);

}  // namespace cfm_mgr::pdu

#endif
