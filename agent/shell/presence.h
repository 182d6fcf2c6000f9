// Watches for the CFM server.
#ifndef CFM_AGENT_SHELL_PRESENCE_H
#define CFM_AGENT_SHELL_PRESENCE_H

#include <vorx/vorx.h>

#include <functional>

namespace cfm_agent {

class Presence {
 public:
  Presence(vorx_t* handle, std::function<void()> found, std::function<void()> lost);
  Presence(const Presence&) = delete;
  Presence& operator=(const Presence&) = delete;
  ~Presence();

 private:
  std::function<void()> found_;
  std::function<void()> lost_;
  vorx_subscription_t* subscription_;
};

}  // namespace cfm_agent

#endif
