// SPDX-License-Identifier: Apache-2.0
#include "shell/link_watch.h"

#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace cfm_agent {

LinkWatch::LinkWatch()
    : socket_(socket(AF_NETLINK, SOCK_RAW | SOCK_NONBLOCK | SOCK_CLOEXEC, NETLINK_ROUTE)) {
  sockaddr_nl address = {};
  address.nl_family = AF_NETLINK;
  address.nl_groups = RTMGRP_LINK;
  if (socket_.get() < 0 ||
      bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) < 0) {
    throw std::system_error(errno, std::generic_category(), "netlink");
  }
}

// What the messages say does not matter: the table is looked at anew. So it is when some of them
// got lost, which the kernel tells as an error.
bool LinkWatch::Read() {
  std::array<char, 1024> message = {};
  bool changed = false;
  while (recv(socket_.get(), message.data(), message.size(), 0) >= 0 || errno == ENOBUFS) {
    changed = true;
  }
  return changed;
}

}  // namespace cfm_agent
