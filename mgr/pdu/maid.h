/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The Maintenance Association Identifier, IEEE 802.1Q 21.6.5 and ITU-T Y.1731 annex A.
 *
 * The configuration names domains and associations by byte strings. How such a name becomes the
 * octets of a MAID depends on its format:
 *
 * | domain name format     | name                                                            |
 * |------------------------|-----------------------------------------------------------------|
 * | none 1                 | not in the MAID                                                 |
 * | DNS-like 2             | its octets, 1 to 43                                             |
 * | MAC address + uint16 3 | `aa:bb:cc:dd:ee:ff/1234`: hexadecimal octets, a decimal number  |
 * | character string 4     | its octets, 1 to 43                                             |
 *
 * | association name format | name                                                           |
 * |-------------------------|----------------------------------------------------------------|
 * | primary VID 1           | a decimal number, 0 to 4095                                    |
 * | character string 2      | its octets, 1 to 45                                            |
 * | uint16 3                | a decimal number, 0 to 65535                                   |
 * | VPN id 4                | `00163e:0000002a`: OUI and index of RFC 2685, both hexadecimal |
 * | ICC-based 32            | 1 to 13 octets; zeros fill the field of 13                     |
 * | ICC + country code 33   | 1 to 15 octets; zeros fill the field of 15                     |
 */
#ifndef CFM_MGR_PDU_MAID_H
#define CFM_MGR_PDU_MAID_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "pdu/decoded.h"
#include "pdu/octets.h"

namespace cfm_mgr::pdu {

inline constexpr std::size_t kMaidSize = 48;

/** As it stands in a CCM; zeros fill what the names leave. */
using Maid = std::array<std::uint8_t, kMaidSize>;

/**
 * The MAID of an association.
 * @return Fault::Value for a format that does not exist or a name that is not written as its format
 * asks; Fault::Maid for names that are too long, or empty.
 */
Decoded<Maid> EncodeMaid(std::int32_t md_format, std::string_view md_name, std::int32_t ma_format,
                         std::string_view ma_name);

/** @name Octets that a name of a format takes in the MAID
 * As many as its own, unless its format has a size that is fixed.
 * @{ */
std::size_t MdNameOctets(std::int32_t format, std::string_view name);
std::size_t MaNameOctets(std::int32_t format, std::string_view name);
/** @} */

/** Whether the lengths that a received MAID states are lengths that it can have. */
bool IsWellFormed(const Maid& maid);

}  // namespace cfm_mgr::pdu

#endif
