/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_PACKET_BRIDGE_TABLE_H
#define CFM_MGR_NET_PACKET_BRIDGE_TABLE_H

#include <cstdint>
#include <optional>

#include "engine/frame.h"
#include "engine/surroundings.h"
#include "net/packet/netlink_socket.h"

namespace cfm_mgr::net {

/** Asks the kernel's bridges what they have learnt. */
class BridgeTable {
 public:
  /** @throws std::system_error */
  BridgeTable() : socket_(0) {}

  /**
   * The port behind which a bridge knows an address; one of the bridge itself is behind none.
   * A bridge that does not tell VLANs apart has learnt it without one.
   */
  std::optional<engine::PortId> Find(engine::PortId bridge, std::uint16_t vid,
                                     const engine::Mac& address);

 private:
  std::optional<engine::PortId> Ask(engine::PortId bridge, std::uint16_t vid,
                                    const engine::Mac& address);

  NetlinkSocket socket_;
};

}  // namespace cfm_mgr::net

#endif
