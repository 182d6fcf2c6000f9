// SPDX-License-Identifier: Apache-2.0
#include "net/packet/link_message.h"

#include <linux/if.h>
#include <linux/if_arp.h>
#include <linux/if_bridge.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <array>

#include "net/packet/attributes.h"

namespace cfm_mgr::net {
namespace {

// Codes of the IEEE 802.1ag MIB.
enum InterfaceStatus : std::uint8_t {
  kUp = 1,
  kDown = 2,
  kTesting = 3,
  kDormant = 5,
  kNotPresent = 6,
  kLowerLayerDown = 7,
};
constexpr std::uint8_t kPortBlocked = 1;
constexpr std::uint8_t kPortUp = 2;

// Operational states of the kernel, by their number. Many drivers never say more than that it is
// unknown: then the flags tell.
std::uint8_t ToInterfaceStatus(std::uint8_t operational_state, unsigned int flags) {
  if ((flags & IFF_UP) == 0) return kDown;
  switch (operational_state) {
    case IF_OPER_UP:
      return kUp;
    case IF_OPER_DORMANT:
      return kDormant;
    case IF_OPER_TESTING:
      return kTesting;
    case IF_OPER_LOWERLAYERDOWN:
      return kLowerLayerDown;
    case IF_OPER_DOWN:
      return kDown;
    case IF_OPER_NOTPRESENT:
      return kNotPresent;
    default:
      return (flags & IFF_RUNNING) != 0 ? kUp : kDown;
  }
}

std::uint8_t ToPortStatus(std::optional<std::uint8_t> bridge_port_state) {
  return bridge_port_state.value_or(BR_STATE_FORWARDING) == BR_STATE_FORWARDING ? kPortUp
                                                                                : kPortBlocked;
}

LinkState ToLinkState(const ifinfomsg& header, const Attributes& attributes) {
  LinkState link;
  link.index = static_cast<engine::PortId>(header.ifi_index);
  link.name = attributes.FindText(IFLA_IFNAME);
  link.mac = attributes.Find<engine::Mac>(IFLA_ADDRESS).value_or(engine::Mac{});
  link.is_ethernet = header.ifi_type == ARPHRD_ETHER || header.ifi_type == ARPHRD_LOOPBACK;
  link.interface_status = ToInterfaceStatus(
      attributes.Find<std::uint8_t>(IFLA_OPERSTATE).value_or(IF_OPER_UNKNOWN), header.ifi_flags);
  const Attributes info = attributes.FindNested(IFLA_LINKINFO);
  if (info.FindText(IFLA_INFO_SLAVE_KIND) == "bridge") {
    link.bridge = attributes.Find<std::uint32_t>(IFLA_MASTER).value_or(0);
    link.port_status =
        ToPortStatus(info.FindNested(IFLA_INFO_SLAVE_DATA).Find<std::uint8_t>(IFLA_BRPORT_STATE));
  }
  return link;
}

}  // namespace

std::optional<LinkMessage> DecodeLinkMessage(const nlmsghdr& message) {
  const bool is_change = message.nlmsg_type == RTM_NEWLINK;
  if (!is_change && message.nlmsg_type != RTM_DELLINK) return std::nullopt;
  ifinfomsg header{};
  if (message.nlmsg_len < sizeof message + sizeof header) return std::nullopt;
  std::memcpy(&header, &message + 1, sizeof header);
  const Attributes attributes(message, sizeof header);
  const auto index = static_cast<engine::PortId>(header.ifi_index);
  if (header.ifi_family == AF_UNSPEC) {
    if (!is_change) return LinkGone{index};
    return ToLinkState(header, attributes);
  }
  // A bridge tells about its ports too; a port that leaves a bridge is not gone.
  if (header.ifi_family != AF_BRIDGE || !is_change) return std::nullopt;
  const auto state = attributes.FindNested(IFLA_PROTINFO).Find<std::uint8_t>(IFLA_BRPORT_STATE);
  if (!state) return std::nullopt;
  return BridgePortState{index, ToPortStatus(state)};
}

engine::PortInfo ToPortInfo(const LinkState& link) {
  engine::PortInfo info;
  info.mac = link.mac;
  info.interface_status = link.interface_status;
  info.port_status = link.port_status;
  info.name = link.name;
  return info;
}

}  // namespace cfm_mgr::net
