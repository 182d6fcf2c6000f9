/* SPDX-License-Identifier: Apache-2.0 */
// MAC addresses on the wire.
#ifndef CFM_SRC_CORE_MAC_H
#define CFM_SRC_CORE_MAC_H

#include <cfm/mac.h>

#include <array>
#include <string_view>

namespace cfm::core {

/// The first six octets of a wire field as an address; what a short field lacks is zero.
st_mac MacFromBytes(std::string_view bytes);

/// The text of an address, zero-terminated, without the heap that a string of its length takes.
std::array<char, 18> MacText(const st_mac& mac);

}  // namespace cfm::core

#endif
