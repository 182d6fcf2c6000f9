// SPDX-License-Identifier: Apache-2.0
#include "options.h"

#include <cerrno>
#include <cstdlib>
#include <initializer_list>

#include "names.h"

namespace devhost {
namespace {

constexpr unsigned int kDefaultSendTimeoutMs = 10'000;
constexpr std::size_t kDefaultMaxQueuedBytes = std::size_t{8} << 20U;

/** The first of these that is set and not empty, else empty. */
std::string FirstSet(const char* option, std::initializer_list<const char*> variables) {
  if (option != nullptr && *option != '\0') {
    return option;
  }
  for (const char* const variable : variables) {
    const char* const value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe)
    if (value != nullptr && *value != '\0') {
      return value;
    }
  }
  return {};
}

}  // namespace

int ResolveOptions(const vorx_options_t* given, Options& options, std::string& why) {
  if (given == nullptr || given->name == nullptr) {
    why = "a process name is needed";
    return -EINVAL;
  }
  options.name = given->name;
  if (!IsProcessName(options.name)) {
    why = "unusable process name '" + options.name +
          "': 1 to 200 letters, digits, '-' and '_' are right, the first one no digit";
    return -EINVAL;
  }
  options.bus_address =
      FirstSet(given->bus_address, {"VORX_BUS_ADDRESS", "DBUS_SESSION_BUS_ADDRESS"});
  if (options.bus_address.empty()) {
    why =
        "no bus address: give one as an option, or set VORX_BUS_ADDRESS or "
        "DBUS_SESSION_BUS_ADDRESS";
    return -EINVAL;
  }
  options.log_config = FirstSet(given->log_config, {"VORX_LOG_CONFIG"});
  options.limits.timeout =
      milliseconds(given->send_timeout_ms == 0 ? kDefaultSendTimeoutMs : given->send_timeout_ms);
  options.limits.max_queued_bytes =
      given->max_queued_bytes == 0 ? kDefaultMaxQueuedBytes : given->max_queued_bytes;
  return 0;
}

}  // namespace devhost
