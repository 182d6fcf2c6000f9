// SPDX-License-Identifier: Apache-2.0
#include "wire_fixture.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <linux/if_ether.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace cfm_mgr::net {
void Ip(const std::string& command) {
  ASSERT_EQ(std::system(("ip " + command).c_str()), 0) << "ip " << command;
}

// The kernel drops what is sent until it has noticed that the interface works.
void SetUpAndWait(const std::string& interface) {
  Ip("link set " + interface + " up");
  EXPECT_TRUE(WaitUntil([&] { return Runs("ip link show " + interface + " | grep 'state UP'"); }));
}

engine::PortId IndexOf(const std::string& interface) { return if_nametoindex(interface.c_str()); }

engine::Mac MacOf(const std::string& interface) {
  const FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM, 0), "socket");
  ifreq request{};
  interface.copy(request.ifr_name, IFNAMSIZ - 1);
  EXPECT_EQ(ioctl(socket.get(), SIOCGIFHWADDR, &request), 0) << interface;
  engine::Mac mac{};
  std::memcpy(mac.data(), request.ifr_hwaddr.sa_data, mac.size());
  return mac;
}

bool WaitUntil(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

RawSender::RawSender(const std::string& interface)
    : socket_(socket(AF_PACKET, SOCK_RAW, 0), "socket"),
      interface_(static_cast<int>(IndexOf(interface))) {}

void RawSender::Send(const Octets& octets) const {
  sockaddr_ll address{};
  address.sll_family = AF_PACKET;
  address.sll_ifindex = interface_;
  address.sll_protocol = htons(ETH_P_ALL);
  const auto sent = sendto(socket_.get(), octets.data(), octets.size(), 0,
                           reinterpret_cast<const sockaddr*>(&address), sizeof address);
  ASSERT_EQ(sent, static_cast<ssize_t>(octets.size())) << std::strerror(errno);
}

void WireTest::SetUp() {
  if (!Runs("ip -V")) GTEST_SKIP() << "there is no ip(8): install iproute2";
  if (const auto reason = EnterNamespace()) GTEST_SKIP() << *reason;
  if (!Runs("ip link add v0 type veth peer name v1")) {
    GTEST_SKIP() << "this kernel has no veth pairs, or gives no right to create them";
  }
  Ip("link set v1 up");
  SetUpAndWait("v0");
  SetUpAndWait("v1");
}

void WireTest::AddPair(const std::string& one, const std::string& other) {
  Ip("link add " + one + " type veth peer name " + other);
  Ip("link set " + one + " up");
  SetUpAndWait(other);
  SetUpAndWait(one);
}

}  // namespace cfm_mgr::net
