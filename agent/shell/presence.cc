#include "shell/presence.h"

#include <cfm/identifiers.h>

#include <utility>

#include "shell/bus.h"

namespace cfm_agent {

Presence::Presence(vorx_t* handle, std::function<void()> found, std::function<void()> lost)
    : found_(std::move(found)),
      lost_(std::move(lost)),
      subscription_(vorx_proc_subscribe(
          handle, CFM_MGR_PROCESS,
          [](vorx_t* /*handle*/, const vorx_pid_t* /*pid*/, void* user) {
            static_cast<Presence*>(user)->found_();
          },
          [](vorx_t* /*handle*/, void* user) { static_cast<Presence*>(user)->lost_(); }, this)) {
  if (subscription_ == nullptr) {
    throw BusError("cannot watch for the server");
  }
}

Presence::~Presence() { vorx_proc_unsubscribe(&subscription_); }

}  // namespace cfm_agent
