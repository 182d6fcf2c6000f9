// MAC addresses on the wire.
#ifndef CFM_SRC_CORE_MAC_H
#define CFM_SRC_CORE_MAC_H

#include <cfm/mac.h>

#include <string_view>

namespace cfm::core {

/// The first six octets of a wire field as an address; what a short field lacks is zero.
st_mac MacFromBytes(std::string_view bytes);

}  // namespace cfm::core

#endif
