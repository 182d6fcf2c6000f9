// SPDX-License-Identifier: Apache-2.0
#include "network_namespace.h"

#include <sched.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace cfm_test {
namespace {

bool Write(const char* path, const std::string& text) {
  std::ofstream file(path);
  return static_cast<bool>(file << text << std::flush);
}

}  // namespace

bool Runs(const std::string& command) {
  return std::system(("{ " + command + "; } >/dev/null 2>&1").c_str()) == 0;
}

std::optional<std::string> EnterNamespace() {
  if (geteuid() == 0) {
    if (unshare(CLONE_NEWNET) == 0) return std::nullopt;
    return std::string("no right to create a network namespace: ") + std::strerror(errno);
  }
  const std::string user = std::to_string(geteuid());
  const std::string group = std::to_string(getegid());
  if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
    return std::string("no right to create a user and a network namespace: ") +
           std::strerror(errno);
  }
  Write("/proc/self/setgroups", "deny");
  if (!Write("/proc/self/uid_map", "0 " + user + " 1") ||
      !Write("/proc/self/gid_map", "0 " + group + " 1")) {
    return "no right to be root in a user namespace";
  }
  return std::nullopt;
}

}  // namespace cfm_test
