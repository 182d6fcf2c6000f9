// SPDX-License-Identifier: Apache-2.0
#include "shell/signals.h"

#include <sys/signalfd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

namespace cfm_agent {

Signals::Signals(const std::vector<int>& signals) {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : signals) {
    sigaddset(&set, signal);
  }
  const int error = pthread_sigmask(SIG_BLOCK, &set, nullptr);
  if (error != 0) {
    throw std::system_error(error, std::generic_category(), "pthread_sigmask");
  }
  fd_ = UniqueFd(signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC));
  if (fd_.get() < 0) {
    throw std::system_error(errno, std::generic_category(), "signalfd");
  }
}

int Signals::Take() {
  signalfd_siginfo info = {};
  return read(fd_.get(), &info, sizeof info) == sizeof info ? static_cast<int>(info.ssi_signo) : 0;
}

}  // namespace cfm_agent
