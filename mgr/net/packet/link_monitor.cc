// SPDX-License-Identifier: Apache-2.0
#include "net/packet/link_monitor.h"

#include <linux/rtnetlink.h>

#include <set>

namespace cfm_mgr::net {
namespace {

// How often a list is asked for that changes all the time.
constexpr int kAttempts = 10;

std::set<engine::PortId> IndicesOf(const std::map<engine::PortId, LinkState>& links) {
  std::set<engine::PortId> indices;
  for (const auto& [index, link] : links) indices.insert(index);
  return indices;
}

}  // namespace

LinkMonitor::LinkMonitor() : socket_(RTMGRP_LINK) {
  std::vector<LinkUpdate> updates;
  ReadAll(updates);
}

std::vector<LinkUpdate> LinkMonitor::Update() {
  std::vector<LinkUpdate> updates;
  const auto result = socket_.Read([this, &updates](const nlmsghdr& message) {
    if (const auto decoded = DecodeLinkMessage(message)) Take(*decoded, updates);
  });
  if (result == NetlinkSocket::Result::Incomplete) ReadAll(updates);
  return updates;
}

void LinkMonitor::Take(const LinkMessage& message, std::vector<LinkUpdate>& updates) {
  if (const auto* link = std::get_if<LinkState>(&message)) {
    links_[link->index] = *link;
    updates.push_back({link->index, *link});
  } else if (const auto* gone = std::get_if<LinkGone>(&message)) {
    links_.erase(gone->index);
    updates.push_back({gone->index, std::nullopt});
  } else if (const auto* port = std::get_if<BridgePortState>(&message)) {
    const auto found = links_.find(port->index);
    if (found == links_.end() || found->second.bridge == 0) return;
    found->second.port_status = port->port_status;
    updates.push_back({port->index, found->second});
  }
}

void LinkMonitor::ReadAll(std::vector<LinkUpdate>& updates) {
  NetlinkRequest request(RTM_GETLINK, NLM_F_DUMP);
  request.Append(ifinfomsg{});
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    std::set<engine::PortId> gone = IndicesOf(links_);
    const auto result = socket_.Ask(request, [&](const nlmsghdr& message) {
      const auto decoded = DecodeLinkMessage(message);
      if (!decoded) return;
      if (const auto* link = std::get_if<LinkState>(&*decoded)) gone.erase(link->index);
      Take(*decoded, updates);
    });
    if (result != NetlinkSocket::Result::Done) continue;
    for (const engine::PortId index : gone) Take(LinkGone{index}, updates);
    return;
  }
}

}  // namespace cfm_mgr::net
