// SPDX-License-Identifier: Apache-2.0
#include <net/if.h>
#include <sepan/host.h>
#include <sepan/sepan.h>

#include <cerrno>
#include <cstring>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

/** Names in the order in which they came; the port of a name is its place, counted from 1. */
class PortTable {
 public:
  sepan_port_t PortOf(std::string_view name) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto next = static_cast<sepan_port_t>(names_.size() + 1);
    const auto [entry, is_new] = ports_.emplace(name, next);
    if (is_new) {
      try {
        names_.emplace_back(name);
      } catch (...) {
        ports_.erase(entry);
        throw;
      }
    }
    return entry->second;
  }

  /** Empty for an unknown port. */
  std::string NameOf(sepan_port_t port) {
    const std::lock_guard<std::mutex> lock(mutex_);
    return port == 0 || port > names_.size() ? std::string() : names_[port - 1];
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> names_;
  std::unordered_map<std::string, sepan_port_t> ports_;
};

/** Never destroyed: threads may still look ports up while the process exits. */
PortTable& Ports() {
  static auto* const table = new PortTable;
  return *table;
}

/** 0, or the error number that tells why the kernel has no interface of this name. */
int CheckInterfaceName(std::string_view name) {
  constexpr std::string_view kNotInNames = "/: \t\n\v\f\r";
  if (name.empty() || name == "." || name == ".." ||
      name.find_first_of(kNotInNames) != std::string_view::npos) {
    return EINVAL;
  }
  return name.size() < IFNAMSIZ ? 0 : ENAMETOOLONG;
}

}  // namespace

[[gnu::visibility("default")]] sepan_port_t sepan_port_by_name(const char* name) {
  errno = name == nullptr ? EINVAL : CheckInterfaceName(name);
  if (errno != 0) {
    return 0;
  }
  try {
    return Ports().PortOf(name);
  } catch (const std::bad_alloc&) {
    errno = ENOMEM;
    return 0;
  }
}

[[gnu::visibility("default")]] int sepan_to_ifindex(sepan_port_t port, uint32_t* ifindex) {
  if (ifindex == nullptr) {
    return -EINVAL;
  }
  const std::string name = Ports().NameOf(port);
  const unsigned int found = name.empty() ? 0 : if_nametoindex(name.c_str());
  if (found == 0) {
    return -ENODEV;
  }
  *ifindex = found;
  return 0;
}

[[gnu::visibility("default")]] int sepan_to_intfname(sepan_port_t port, char* buffer, size_t size) {
  const std::string name = Ports().NameOf(port);
  if (name.empty()) {
    return -ENODEV;
  }
  if (buffer == nullptr || size <= name.size()) {
    return -ERANGE;
  }
  std::memcpy(buffer, name.c_str(), name.size() + 1);
  return 0;
}

[[gnu::visibility("default")]] sepan_interface_t sepan_from_ifindex(uint32_t ifindex) {
  char name[IFNAMSIZ] = {};
  if (if_indextoname(ifindex, name) == nullptr) {
    return {0};
  }
  return {sepan_port_by_name(name)};
}
