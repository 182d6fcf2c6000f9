// SPDX-License-Identifier: Apache-2.0
#include "bus.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>

namespace cfm_mgr {
namespace {

using Clock = std::chrono::steady_clock;

const char* OrNull(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

/** The time that is left, as ppoll(2) takes it. */
timespec LeftUntil(Clock::time_point until) {
  const auto left = std::max(until - Clock::now(), Clock::duration::zero());
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
  timespec time{};
  time.tv_sec = seconds.count();
  time.tv_nsec = std::chrono::nanoseconds(left - seconds).count();
  return time;
}

}  // namespace

Handle Join(const std::string& name, const Options& options) {
  vorx_options_t bus_options{};
  bus_options.name = name.c_str();
  bus_options.bus_address = OrNull(options.bus);
  bus_options.log_config = OrNull(options.log_config);
  vorx_t* handle = nullptr;
  const int result = vorx_open(&bus_options, &handle);
  if (result == -EEXIST) throw Failure("another process already runs as " + name + " on this bus");
  if (result < 0) throw Failure(std::string("cannot join the bus: ") + vorx_last_error(nullptr));
  return Handle(handle);
}

std::string LastError(const Handle& handle) { return vorx_last_error(handle.get()); }

void Register(const Handle& handle, const vorx_sig_descriptor& signal, vorx_sig_cb callback,
              void* user) {
  if (vorx_sig_register_sized(handle.get(), &signal, callback, user) == nullptr) {
    throw Failure("cannot register for signal " + std::to_string(signal.number) + " of block " +
                  signal.block + ": " + LastError(handle));
  }
}

bool Wait(const Handle& handle, std::optional<Clock::time_point> until, std::array<int, 2> fds) {
  const int timeout = vorx_poll_timeout(handle.get());
  if (timeout >= 0) {
    const auto due = Clock::now() + std::chrono::milliseconds(timeout);
    until = until ? std::min(*until, due) : due;
  }
  std::array<pollfd, 3> waits{};
  waits[0] = {vorx_fd(handle.get()), static_cast<short>(vorx_poll_events(handle.get())), 0};
  waits[1] = {fds[0], POLLIN, 0};
  waits[2] = {fds[1], POLLIN, 0};
  const timespec left = until ? LeftUntil(*until) : timespec{};
  return ppoll(waits.data(), waits.size(), until ? &left : nullptr, nullptr) > 0 ||
         vorx_poll_timeout(handle.get()) == 0;
}

void Dispatch(const Handle& handle) {
  if (vorx_dispatch(handle.get()) < 0) throw Failure("the bus has gone: " + LastError(handle));
}

}  // namespace cfm_mgr
