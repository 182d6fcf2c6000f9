/* SPDX-License-Identifier: Apache-2.0 */
// The agent's handle of the messaging middleware.
#ifndef CFM_AGENT_SHELL_BUS_H
#define CFM_AGENT_SHELL_BUS_H

#include <vorx/host.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace cfm_agent {

// The bus cannot be joined, or has gone away.
class BusError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Bus {
 public:
  // Empty texts take the host's defaults. Throws BusError.
  Bus(const std::string& name, const std::string& address, const std::string& log_config);

  vorx_t* handle() const { return handle_.get(); }

  // Reads, writes and delivers what is ready, without waiting. Throws BusError.
  void Dispatch() const;

 private:
  struct Close {
    void operator()(vorx_t* handle) const { vorx_close(handle); }
  };

  std::unique_ptr<vorx_t, Close> handle_;
};

}  // namespace cfm_agent

#endif
