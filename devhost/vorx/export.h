/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_EXPORT_H
#define DEVHOST_VORX_EXPORT_H

#include <exception>
#include <new>

#include "handle.h"

/** Stands before the definition of each function that the library offers. */
#define VORX_EXPORT extern "C" [[gnu::visibility("default")]]

namespace devhost {

/** Runs @p action, which may allocate; @p fallback when that fails. Callers may be C programs. */
template <typename Result, typename Action>
Result Guarded(Result fallback, Action action) {
  try {
    return action();
  } catch (const std::bad_alloc&) {
    WriteToStderr("vorx: out of memory\n");
    return fallback;
  }
}

}  // namespace devhost

#endif
