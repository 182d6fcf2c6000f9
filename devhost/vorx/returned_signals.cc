// SPDX-License-Identifier: Apache-2.0
#include "returned_signals.h"

#include <algorithm>
#include <string>

#include "names.h"

namespace devhost {
namespace {

/** How many of the latest signals can be told apart. */
constexpr std::size_t kMaxSent = 4096;

bool IsNoSuchProcess(const sd_bus_error& error) {
  return sd_bus_error_has_name(&error, SD_BUS_ERROR_SERVICE_UNKNOWN) != 0 ||
         sd_bus_error_has_name(&error, SD_BUS_ERROR_NAME_HAS_NO_OWNER) != 0;
}

std::string ReasonOf(const sd_bus_error& error) {
  if (IsNoSuchProcess(error)) {
    return "there is no such process any more";
  }
  if (sd_bus_error_has_name(&error, SD_BUS_ERROR_LIMITS_EXCEEDED) != 0) {
    return "it does not read and its queue at the bus is full";
  }
  return std::string(error.name) + ": " + (error.message == nullptr ? "" : error.message);
}

}  // namespace

void ReturnedSignals::NoteSent(sd_bus_message* message) {
  const char* const destination = sd_bus_message_get_destination(message);
  std::uint64_t cookie = 0;
  if (destination == nullptr || sd_bus_message_get_cookie(message, &cookie) < 0) {
    return;
  }
  sent_.push_back({cookie, PidOf(destination)});
  if (sent_.size() > kMaxSent) {
    sent_.pop_front();
  }
}

void ReturnedSignals::Report(sd_bus_message* error_message, std::uint64_t cookie) {
  const sd_bus_error* const error = sd_bus_message_get_error(error_message);
  if (error == nullptr || error->name == nullptr) {
    return;
  }
  const vorx_pid_t destination = DestinationOf(cookie);
  if (destination != 0 && IsNoSuchProcess(*error)) {
    peers_.Gone(destination);
  }
  const std::string process =
      destination == 0 ? std::string("another process") : "process " + std::to_string(destination);
  diagnostics_.SayCounted("returned " + process + error->name,
                          "a signal to " + process + " was not delivered: " + ReasonOf(*error));
}

vorx_pid_t ReturnedSignals::DestinationOf(std::uint64_t cookie) const {
  const auto found =
      std::lower_bound(sent_.begin(), sent_.end(), cookie,
                       [](const Sent& sent, std::uint64_t wanted) { return sent.cookie < wanted; });
  return found != sent_.end() && found->cookie == cookie ? found->destination : 0;
}

}  // namespace devhost
