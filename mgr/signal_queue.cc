// SPDX-License-Identifier: Apache-2.0
#include "signal_queue.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

namespace cfm_mgr {
namespace {

int Open() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGUSR1, SIGUSR2}) sigaddset(&signals, signal);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  // A reader of the output that goes away is no reason to end either.
  sigset_t pipe;
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  sigprocmask(SIG_BLOCK, &pipe, nullptr);
  return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

}  // namespace

SignalQueue::SignalQueue() : fd_(Open()) {
  if (fd_ < 0) throw std::system_error(errno, std::generic_category(), "cannot wait for signals");
}

SignalQueue::~SignalQueue() { close(fd_); }

int SignalQueue::Take() const {
  signalfd_siginfo info{};
  if (read(fd_, &info, sizeof info) != static_cast<ssize_t>(sizeof info)) return 0;
  return static_cast<int>(info.ssi_signo);
}

}  // namespace cfm_mgr
