/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_OPTIONS_H
#define DEVHOST_VORX_OPTIONS_H

#include <vorx/host.h>

#include <string>

#include "bus.h"

namespace devhost {

/** The options of a handle with every default filled in. */
struct Options {
  std::string name;
  std::string bus_address;
  /** Empty: the file shipped with the development host. */
  std::string log_config;
  SendLimits limits;
};

/** 0, or a negative error number and the reason in @p why. */
int ResolveOptions(const vorx_options_t* given, Options& options, std::string& why);

}  // namespace devhost

#endif
