/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENVIRONMENT_H
#define CFM_MGR_ENVIRONMENT_H

#include <vorx/vorx.h>

#include <string>

#include "engine/time.h"

namespace cfm_mgr {

/** What the server asks of the process that it runs in. */
class Environment {
 public:
  Environment() = default;
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  virtual ~Environment() = default;

  /** Sends one signal to one client. Returns why it could not, or nothing. */
  virtual std::string Send(vorx_pid_t client, const vorx_sig_descriptor& signal,
                           const std::string& payload) = 0;

  /** Publishes one event to all clients. Failures are the environment's to report. */
  virtual void Publish(const vorx_event_descriptor& event, const std::string& payload) = 0;

  /** Writes one line to the log. */
  virtual void Log(const std::string& line) = 0;

  /** The present, as nanoseconds of uptime. */
  virtual engine::Time Now() = 0;
};

}  // namespace cfm_mgr

#endif
