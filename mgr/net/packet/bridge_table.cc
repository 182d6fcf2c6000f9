// SPDX-License-Identifier: Apache-2.0
#include "net/packet/bridge_table.h"

#include <linux/neighbour.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

namespace cfm_mgr::net {

std::optional<engine::PortId> BridgeTable::Find(engine::PortId bridge, std::uint16_t vid,
                                                const engine::Mac& address) {
  const auto port = vid == 0 ? std::nullopt : Ask(bridge, vid, address);
  return port ? port : Ask(bridge, 0, address);
}

std::optional<engine::PortId> BridgeTable::Ask(engine::PortId bridge, std::uint16_t vid,
                                               const engine::Mac& address) {
  NetlinkRequest request(RTM_GETNEIGH, 0);
  ndmsg header{};
  header.ndm_family = AF_BRIDGE;
  request.Append(header);
  request.AppendAttribute(NDA_MASTER, bridge);
  request.AppendAttribute(NDA_LLADDR, address);
  if (vid != 0) request.AppendAttribute(NDA_VLAN, vid);
  std::optional<engine::PortId> port;
  socket_.Ask(request, [&port](const nlmsghdr& message) {
    ndmsg answer{};
    if (message.nlmsg_type != RTM_NEWNEIGH || message.nlmsg_len < sizeof message + sizeof answer) {
      return;
    }
    std::memcpy(&answer, &message + 1, sizeof answer);
    port = static_cast<engine::PortId>(answer.ndm_ifindex);
  });
  return port == bridge ? std::nullopt : port;
}

}  // namespace cfm_mgr::net
