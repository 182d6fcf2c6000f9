/* SPDX-License-Identifier: Apache-2.0 */
// A terminal that a test types on and reads from.
#ifndef CFM_TESTS_AGENT_PSEUDO_TERMINAL_H
#define CFM_TESTS_AGENT_PSEUDO_TERMINAL_H

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>

namespace cfm_agent::testing {

class PseudoTerminal {
 public:
  PseudoTerminal() : fd_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    EXPECT_GE(fd_, 0);
    EXPECT_EQ(grantpt(fd_), 0);
    EXPECT_EQ(unlockpt(fd_), 0);
  }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;
  ~PseudoTerminal() { close(fd_); }

  // The path of the side that a program uses.
  std::string name() const { return ptsname(fd_); }

  void SetColumns(unsigned short columns) const {
    const winsize size = {24, columns, 0, 0};
    ASSERT_EQ(ioctl(fd_, TIOCSWINSZ, &size), 0);
  }

  void Type(const std::string& keys) const {
    ASSERT_EQ(write(fd_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }

  // What has been shown since the last call. Never waits.
  std::string Read() const {
    std::string shown;
    std::array<char, 4096> chunk{};
    pollfd fd = {fd_, POLLIN, 0};
    while (poll(&fd, 1, 0) > 0 && (fd.revents & POLLIN) != 0) {
      const ssize_t size = read(fd_, chunk.data(), chunk.size());
      if (size <= 0) {
        break;
      }
      shown.append(chunk.data(), static_cast<std::size_t>(size));
    }
    return shown;
  }

 private:
  int fd_;
};

}  // namespace cfm_agent::testing

#endif
