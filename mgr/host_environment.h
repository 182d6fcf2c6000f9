/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_HOST_ENVIRONMENT_H
#define CFM_MGR_HOST_ENVIRONMENT_H

#include <chrono>
#include <string>

#include "bus.h"
#include "environment.h"
#include "logger.h"

namespace cfm_mgr {

/** The bus, the kernel and the log, as the server sees them. */
class HostEnvironment : public Environment {
 public:
  /** Both outlive this object. */
  HostEnvironment(const Handle& handle, const Logger& logger) : handle_(handle), logger_(logger) {}

  std::string Send(vorx_pid_t client, const vorx_sig_descriptor& signal,
                   const std::string& payload) override;
  void Publish(const vorx_event_descriptor& event, const std::string& payload) override;
  void Log(const std::string& line) override { logger_.Write(line); }
  engine::Time Now() override { return std::chrono::steady_clock::now().time_since_epoch(); }

 private:
  const Handle& handle_;
  const Logger& logger_;
  int last_fault_ = 0;  ///< So that a bus that takes no more events is reported once.
};

}  // namespace cfm_mgr

#endif
