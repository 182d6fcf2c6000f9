// SPDX-License-Identifier: Apache-2.0
#include "connection.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <limits>

namespace devhost {
namespace {

std::uint64_t MonotonicMicroseconds() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000U +
         static_cast<std::uint64_t>(now.tv_nsec) / 1'000U;
}

int ConfigureAndStart(sd_bus* bus, const std::string& address) {
  int result = sd_bus_set_address(bus, address.c_str());
  if (result >= 0) {
    result = sd_bus_set_bus_client(bus, 1);
  }
  if (result >= 0) {
    result = sd_bus_negotiate_fds(bus, 0);
  }
  return result < 0 ? result : sd_bus_start(bus);
}

}  // namespace

milliseconds Until(Clock::time_point deadline) {
  const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
  return std::max(left, milliseconds::zero());
}

Connection::~Connection() {
  Close();
  if (fd_ >= 0) {
    close(fd_);
  }
}

int Connection::Open(const std::string& address, milliseconds limit) {
  const auto deadline = Clock::now() + limit;
  int result = sd_bus_new(&bus_);
  if (result >= 0) {
    result = ConfigureAndStart(bus_, address);
  }
  if (result < 0) {
    return result;
  }
  // sd-bus closes its own descriptor as soon as the bus hangs up, while an event loop still polls.
  fd_ = fcntl(sd_bus_get_fd(bus_), F_DUPFD_CLOEXEC, 0);
  if (fd_ < 0) {
    return -errno;
  }
  while (sd_bus_is_ready(bus_) == 0) {
    MessagePtr ignored;
    result = Step(ignored);
    if (result < 0) {
      return result;
    }
    if (result == 0 && !Wait(Events(), Until(deadline)) && Clock::now() >= deadline) {
      return -ETIMEDOUT;
    }
  }
  return IsOpen() ? 0 : -ECONNRESET;
}

void Connection::Close() {
  if (bus_ != nullptr) {
    sd_bus_close_unref(bus_);
    bus_ = nullptr;
  }
}

std::string Connection::UniqueName() const {
  const char* name = nullptr;
  return sd_bus_get_unique_name(bus_, &name) < 0 ? std::string() : std::string(name);
}

int Connection::Events() const { return IsOpen() ? sd_bus_get_events(bus_) : -ENOTCONN; }

int Connection::TimeoutMs() const {
  std::uint64_t until = 0;
  if (!IsOpen() || sd_bus_get_timeout(bus_, &until) < 0) {
    return 0;
  }
  if (until == std::numeric_limits<std::uint64_t>::max()) {
    return -1;
  }
  const std::uint64_t now = MonotonicMicroseconds();
  const std::uint64_t left = until <= now ? 0 : (until - now + 999U) / 1'000U;
  return static_cast<int>(
      std::min<std::uint64_t>(left, static_cast<std::uint64_t>(std::numeric_limits<int>::max())));
}

bool Connection::Wait(int events, milliseconds limit) const {
  if (events < 0) {
    return false;
  }
  const int own = TimeoutMs();
  const auto most =
      static_cast<int>(std::min<milliseconds::rep>(limit.count(), std::numeric_limits<int>::max()));
  pollfd descriptor{fd_, static_cast<std::int16_t>(events), 0};
  return poll(&descriptor, 1, own < 0 ? most : std::min(own, most)) > 0 || own == 0;
}

int Connection::Step(MessagePtr& message) {
  sd_bus_message* raw = nullptr;
  const int result = sd_bus_process(bus_, &raw);
  message.reset(raw);
  return result;
}

bool Connection::IsWriting() const {
  std::uint64_t queued = 0;
  return sd_bus_get_n_queued_write(bus_, &queued) >= 0 && queued > 0;
}

int Connection::Post(sd_bus_message* message, bool wants_reply) {
  std::uint64_t cookie = 0;
  return sd_bus_send(bus_, message, wants_reply ? &cookie : nullptr);
}

}  // namespace devhost
