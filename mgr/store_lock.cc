// SPDX-License-Identifier: Apache-2.0
#include "store_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace cfm_mgr {
namespace {

// Whoever may open the file may lock it, too, and so keep the server from starting.
constexpr mode_t kMode = 0600;

[[noreturn]] void FailInUse(const std::string& store, const std::string& lock) {
  throw std::runtime_error("another cfm-mgr uses the store " + store + ", as the lock on " + lock +
                           " says: end that server, or give this one another file with --store");
}

}  // namespace

StoreLock::StoreLock(const std::string& store)
    : descriptor_(open((store + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kMode)) {
  if (descriptor_ >= 0 && flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return;
  const int error = errno;
  const std::string lock = store + ".lock";
  if (descriptor_ >= 0) close(descriptor_);
  if (error == EWOULDBLOCK) FailInUse(store, lock);
  descriptor_ = -1;
  fault_ = lock + ": cannot lock: " + std::generic_category().message(error) +
           "; another server with this store would not be noticed";
}

StoreLock::~StoreLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace cfm_mgr
