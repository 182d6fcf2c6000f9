/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_PACKET_LINK_MONITOR_H
#define CFM_MGR_NET_PACKET_LINK_MONITOR_H

#include <map>
#include <optional>
#include <vector>

#include "net/packet/link_message.h"
#include "net/packet/netlink_socket.h"

namespace cfm_mgr::net {

/** What happened to an interface. */
struct LinkUpdate {
  engine::PortId index = 0;
  std::optional<LinkState> link;  ///< None when it is gone.
};

/** The interfaces of this network namespace, as they come, change and go. */
class LinkMonitor {
 public:
  /** Knows the interfaces at once. @throws std::system_error */
  LinkMonitor();

  /** Readable when something has changed. */
  int descriptor() const { return socket_.descriptor(); }

  /** Takes in what has changed, in the order in which it did. */
  std::vector<LinkUpdate> Update();

  /** The interfaces that there are. */
  const std::map<engine::PortId, LinkState>& links() const { return links_; }

 private:
  void Take(const LinkMessage& message, std::vector<LinkUpdate>& updates);
  void ReadAll(std::vector<LinkUpdate>& updates);

  NetlinkSocket socket_;
  std::map<engine::PortId, LinkState> links_;
};

}  // namespace cfm_mgr::net

#endif
