// SPDX-License-Identifier: Apache-2.0
// An application that has an event loop already: poll(2) over the bus, a timer and the signals that
// end the process. At every tick of the timer it asks for statistics.
//
// usage: event_loop [INTERFACE [MILLISECONDS]]

#include <cfm/client.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <system_error>

#include "common/host.h"
#include "common/one_endpoint.h"

namespace {

std::system_error SystemFailure(const char* what) { return {errno, std::generic_category(), what}; }

// A file descriptor, closed with its owner.
class Descriptor {
 public:
  Descriptor(int fd, const char* what) : fd_(fd) {
    if (fd < 0) throw SystemFailure(what);
  }
  ~Descriptor() { close(fd_); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return fd_; }

 private:
  int fd_;
};

void Start(const Descriptor& timer, std::chrono::milliseconds period) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(period);
  timespec time{};
  time.tv_sec = seconds.count();
  time.tv_nsec = std::chrono::nanoseconds(period - seconds).count();
  const itimerspec every = {time, time};
  if (timerfd_settime(timer.get(), 0, &every, nullptr) < 0) throw SystemFailure("timerfd_settime");
}

// The signals that end the process, taken out of their ordinary delivery.
sigset_t BlockSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  if (sigprocmask(SIG_BLOCK, &signals, nullptr) < 0) throw SystemFailure("sigprocmask");
  return signals;
}

std::chrono::milliseconds Period(const std::string& text) {
  const int period = std::stoi(text);
  if (period <= 0) throw std::invalid_argument("the period has to be at least 1 ms");
  return std::chrono::milliseconds(period);
}

class Counters : public cfm::ReceivedStatisticsHandlerIntf {
 public:
  void OnStatsReplyLocalMep(const std::string& /*md_name*/, const std::string& /*ma_name*/,
                            std::uint16_t /*mep_id*/, const cfm::local_mep_stats& stats) override {
    sent_ += stats.ccm_tx_total;
  }
  void OnStatsReplyRemoteMep(const std::string& /*md_name*/, const std::string& /*ma_name*/,
                             std::uint16_t /*mep_id*/, std::uint16_t /*remote_mep_id*/,
                             const cfm::remote_mep_stats& /*stats*/) override {}
  void OnStatsReply() override {
    examples::Say("statistics: " + std::to_string(sent_) + " CCMs sent");
    sent_ = 0;
  }

 private:
  std::uint64_t sent_ = 0;
};

// Waits until one of the three has work. The host is asked for events and time-out before every
// wait: both change as messages come and go.
std::array<pollfd, 3> Wait(const examples::Handle& handle, const Descriptor& timer,
                           const Descriptor& signals) {
  const int events = vorx_poll_events(handle.get());
  if (events < 0) throw examples::Failure("the bus has gone", handle.get());
  std::array<pollfd, 3> fds = {{{vorx_fd(handle.get()), static_cast<short>(events), 0},
                                {timer.get(), POLLIN, 0},
                                {signals.get(), POLLIN, 0}}};
  const int ready = poll(fds.data(), fds.size(), vorx_poll_timeout(handle.get()));
  if (ready < 0 && errno != EINTR) throw SystemFailure("poll");
  return fds;
}

int Program(int argc, char** argv) {
  const cfm::hierarchy config = examples::OneEndpoint(argc > 1 ? argv[1] : "eth0");
  const Descriptor timer(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC), "timerfd");
  Start(timer, Period(argc > 2 ? argv[2] : "1000"));
  const sigset_t ending = BlockSignals();
  const Descriptor signals(signalfd(-1, &ending, SFD_NONBLOCK | SFD_CLOEXEC), "signalfd");
  const examples::Handle handle = examples::Join("event-loop");
  Counters counters;  // outlives the client, which borrows it
  cfm::Client client(handle.get());
  client.RegisterStatisticsHandler(&counters);
  client.UpdateConfig(config);  // before the first dispatch

  std::uint64_t ticks = 0;
  while (true) {
    // Whatever the wait ended for: this reads, writes and calls back as far as there is something
    // to do, and returns without waiting.
    if (vorx_dispatch(handle.get()) < 0) throw examples::Failure("the bus has gone", handle.get());
    const auto ready = Wait(handle, timer, signals);
    if (ready[2].revents != 0) return 0;
    std::uint64_t expirations = 0;
    if (ready[1].revents != 0 && read(timer.get(), &expirations, sizeof expirations) > 0) {
      ticks += expirations;
      examples::Say("tick " + std::to_string(ticks));
      client.RequestStatistics();  // does nothing while the server is absent
    }
  }
}

}  // namespace

int main(int argc, char** argv) { return examples::Main("event_loop", Program, argc, argv); }
