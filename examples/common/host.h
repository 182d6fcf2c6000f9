/* SPDX-License-Identifier: Apache-2.0 */
// What every program on the development host does: join the bus, leave it, end on a signal.
#ifndef CFM_EXAMPLES_COMMON_HOST_H
#define CFM_EXAMPLES_COMMON_HOST_H

#include <vorx/host.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace examples {

struct CloseHandle {
  void operator()(vorx_t* handle) const { vorx_close(handle); }
};

// A connection to the bus, which is left with this object. Declare it before the cfm::Client that
// uses it: what is declared last goes first, and the handle has to outlive the client.
using Handle = std::unique_ptr<vorx_t, CloseHandle>;

// The last failure of a call with this handle.
inline std::runtime_error Failure(const std::string& what, const vorx_t* handle) {
  return std::runtime_error(what + ": " + vorx_last_error(handle));
}

// Joins the bus that VORX_BUS_ADDRESS or DBUS_SESSION_BUS_ADDRESS names. Two processes of one name
// cannot be there. Throws std::runtime_error.
Handle Join(const std::string& name);

// While it is there, SIGINT and SIGTERM end vorx_run() with status 0. One at a time.
class StopOnSignals {
 public:
  explicit StopOnSignals(const Handle& handle);
  ~StopOnSignals();
  StopOnSignals(const StopOnSignals&) = delete;
  StopOnSignals& operator=(const StopOnSignals&) = delete;
};

// Services the handle until vorx_stop() is called, and gives the status passed there. Throws
// std::runtime_error when the bus goes away.
int Run(const Handle& handle);

// Prints a line at once, also into a file or a pipe.
void Say(const std::string& line);

// Runs the program: whatever it throws is told on standard error and gives exit status 1.
int Main(const std::string& name, int (*program)(int argc, char** argv), int argc, char** argv);

}  // namespace examples

#endif
