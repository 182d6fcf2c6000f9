// SPDX-License-Identifier: Apache-2.0
#include "shell/bus.h"

#include <cerrno>

namespace cfm_agent {
namespace {

const char* NullIfEmpty(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

}  // namespace

Bus::Bus(const std::string& name, const std::string& address, const std::string& log_config) {
  vorx_options_t options = {};
  options.name = name.c_str();
  options.bus_address = NullIfEmpty(address);
  options.log_config = NullIfEmpty(log_config);
  vorx_t* handle = nullptr;
  const int result = vorx_open(&options, &handle);
  if (result == -EEXIST) {
    throw BusError("another process on the bus is called " + name +
                   "; stop it, or give this one another name");
  }
  if (result < 0) {
    throw BusError(vorx_last_error(nullptr));
  }
  handle_.reset(handle);
}

void Bus::Dispatch() const {
  if (vorx_dispatch(handle()) < 0) {
    throw BusError(std::string("the bus has gone away: ") + vorx_last_error(handle()));
  }
}

}  // namespace cfm_agent
