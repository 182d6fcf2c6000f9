/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * What the kernel's messages about network interfaces say.
 */
#ifndef CFM_MGR_NET_PACKET_LINK_MESSAGE_H
#define CFM_MGR_NET_PACKET_LINK_MESSAGE_H

#include <linux/netlink.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "engine/engine.h"
#include "engine/frame.h"

namespace cfm_mgr::net {

/** An interface as the kernel reports it. Status codes are those of the IEEE 802.1ag MIB. */
struct LinkState {
  engine::PortId index = 0;
  std::string name;
  engine::Mac mac{};
  bool is_ethernet = false;           ///< Frames have Ethernet's format; also the loopback's do.
  std::uint8_t interface_status = 4;  ///< 1 up to 7 lower layer down.
  std::uint8_t port_status = 2;       ///< 1 blocked by the bridge that it is a port of, 2 up.
  engine::PortId bridge = 0;          ///< The bridge that it is a port of; 0 for none.
};

/** What the engine is told of an interface. */
engine::PortInfo ToPortInfo(const LinkState& link);

/** An interface is gone. */
struct LinkGone {
  engine::PortId index = 0;
};

/** A bridge has blocked a port of it, or lets its frames through. */
struct BridgePortState {
  engine::PortId index = 0;
  std::uint8_t port_status = 2;
};

using LinkMessage = std::variant<LinkState, LinkGone, BridgePortState>;

/**
 * Reads one message.
 *
 * @param message At least as many octets as its header says, which are at least a header.
 * @return None for a message of any other kind, or one that is too short.
 */
std::optional<LinkMessage> DecodeLinkMessage(const nlmsghdr& message);

}  // namespace cfm_mgr::net

#endif
