/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_BUS_H
#define CFM_MGR_BUS_H

#include <vorx/host.h>

#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "options.h"

namespace cfm_mgr {

/** Ends the program with its text as the message. */
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct CloseHandle {
  void operator()(vorx_t* handle) const { vorx_close(handle); }
};

/** A process's connection to the bus, which it leaves with this object. */
using Handle = std::unique_ptr<vorx_t, CloseHandle>;

/**
 * Joins the bus under this name.
 *
 * @throws Failure when there is no bus or another process has the name
 */
Handle Join(const std::string& name, const Options& options);

/** The last failure of a call with this handle, in words. */
std::string LastError(const Handle& handle);

/** Registers for a signal. @throws Failure */
void Register(const Handle& handle, const vorx_sig_descriptor& signal, vorx_sig_cb callback,
              void* user);

/**
 * Waits until the handle has work.
 *
 * @param until  when to stop waiting; nothing waits for ever
 * @param fds    other things to wait for: until one is readable. -1 is none
 * @return whether the handle or another thing is ready
 */
bool Wait(const Handle& handle, std::optional<std::chrono::steady_clock::time_point> until,
          std::array<int, 2> fds = {-1, -1});

/** Delivers what is ready. @throws Failure when the bus has gone away */
void Dispatch(const Handle& handle);

}  // namespace cfm_mgr

#endif
