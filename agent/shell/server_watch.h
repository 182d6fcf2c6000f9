/* SPDX-License-Identifier: Apache-2.0 */
// Watches what the client library keeps to itself: that the server goes, and that it is in step.
#ifndef CFM_AGENT_SHELL_SERVER_WATCH_H
#define CFM_AGENT_SHELL_SERVER_WATCH_H

#include <vorx/vorx.h>

#include <functional>

namespace cfm_agent {

class ServerWatch {
 public:
  // Make it after the client: callbacks run in the order in which they were registered, and the
  // library has answered the server before `in_step` is called.
  ServerWatch(vorx_t* handle, std::function<void()> in_step, std::function<void()> lost);
  ServerWatch(const ServerWatch&) = delete;
  ServerWatch& operator=(const ServerWatch&) = delete;
  ~ServerWatch();

 private:
  std::function<void()> in_step_;
  std::function<void()> lost_;
  vorx_subscription_t* subscription_;
  vorx_registration_t* registration_;
};

}  // namespace cfm_agent

#endif
