#include "bus.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <limits>

namespace cfm_mgr {
namespace {

using Clock = std::chrono::steady_clock;

const char* OrNull(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

/** The time that is left, as poll(2) takes it. */
int LeftUntil(Clock::time_point until) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now());
  return static_cast<int>(
      std::clamp<std::int64_t>(left.count(), 0, std::numeric_limits<int>::max()));
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

bool Wait(const Handle& handle, std::optional<Clock::time_point> until, int fd) {
  int timeout = vorx_poll_timeout(handle.get());
  if (until && (timeout < 0 || LeftUntil(*until) < timeout)) timeout = LeftUntil(*until);
  std::array<pollfd, 2> waits{};
  waits[0] = {vorx_fd(handle.get()), static_cast<short>(vorx_poll_events(handle.get())), 0};
  waits[1] = {fd, POLLIN, 0};
  return poll(waits.data(), waits.size(), timeout) > 0 || vorx_poll_timeout(handle.get()) == 0;
}

void Dispatch(const Handle& handle) {
  if (vorx_dispatch(handle.get()) < 0) throw Failure("the bus has gone: " + LastError(handle));
}

}  // namespace cfm_mgr
