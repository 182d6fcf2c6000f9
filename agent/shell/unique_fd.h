/* SPDX-License-Identifier: Apache-2.0 */
// A file descriptor that is closed with its owner.
#ifndef CFM_AGENT_SHELL_UNIQUE_FD_H
#define CFM_AGENT_SHELL_UNIQUE_FD_H

#include <unistd.h>

#include <utility>

namespace cfm_agent {

class UniqueFd {
 public:
  UniqueFd() = default;
  explicit UniqueFd(int fd) : fd_(fd) {}
  UniqueFd(UniqueFd&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  UniqueFd(const UniqueFd&) = delete;
  UniqueFd& operator=(const UniqueFd&) = delete;
  ~UniqueFd() {
    if (fd_ >= 0) {
      close(fd_);
    }
  }

  int get() const { return fd_; }

 private:
  int fd_ = -1;
};

}  // namespace cfm_agent

#endif
