/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_TRACE_H
#define DEVHOST_VORX_TRACE_H

#include <vorx/vorx.h>

#include <string>

#include "diagnostics.h"

namespace devhost {

/**
 * Sets zlog up from a configuration file, once per process, and gives a category of it.
 *
 * @param config  path of the file; empty for the one shipped with the development host
 * @return null, with the reason in @p why, when that cannot be done
 */
zlog_category_t* InitTrace(const std::string& config, const std::string& category,
                           const Diagnostics& diagnostics, std::string& why);

}  // namespace devhost

#endif
