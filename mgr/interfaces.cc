#include "interfaces.h"

#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <limits>

namespace cfm_mgr {

KernelInterfaces::KernelInterfaces() : socket_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}

KernelInterfaces::~KernelInterfaces() {
  if (socket_ >= 0) close(socket_);
}

Interface KernelInterfaces::Find(std::uint32_t ifindex) const {
  Interface interface;
  ifreq request{};
  if (ifindex > static_cast<std::uint32_t>(std::numeric_limits<int>::max())) return interface;
  request.ifr_ifindex = static_cast<int>(ifindex);
  if (ioctl(socket_, SIOCGIFNAME, &request) != 0) return interface;
  if (ioctl(socket_, SIOCGIFFLAGS, &request) != 0) return interface;
  const auto flags = static_cast<unsigned int>(request.ifr_flags);
  interface.present = true;
  interface.up = (flags & IFF_UP) != 0 && (flags & IFF_RUNNING) != 0;
  if (ioctl(socket_, SIOCGIFHWADDR, &request) == 0) {
    std::memcpy(interface.mac.data(), request.ifr_hwaddr.sa_data, interface.mac.size());
  }
  return interface;
}

}  // namespace cfm_mgr
