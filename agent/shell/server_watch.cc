// SPDX-License-Identifier: Apache-2.0
#include "shell/server_watch.h"

#include <cfm/identifiers.h>

#include <utility>

#include "shell/bus.h"

namespace cfm_agent {

ServerWatch::ServerWatch(vorx_t* handle, std::function<void()> in_step, std::function<void()> lost)
    : in_step_(std::move(in_step)),
      lost_(std::move(lost)),
      subscription_(vorx_proc_subscribe(
          handle, CFM_MGR_PROCESS, [](vorx_t* /*handle*/, const vorx_pid_t* /*pid*/, void*) {},
          [](vorx_t* /*handle*/, void* user) { static_cast<ServerWatch*>(user)->lost_(); }, this)),
      registration_(vorx_sig_register_sized(
          handle, CFM_MGR_S2C_SIG_CACHE_REPLY,
          [](vorx_t* /*handle*/, void* user, const vorx_pid_t* /*sender*/, void* /*data*/,
             unsigned int /*length*/) { static_cast<ServerWatch*>(user)->in_step_(); },
          this)) {
  if (subscription_ == nullptr || registration_ == nullptr) {
    vorx_proc_unsubscribe(&subscription_);
    vorx_sig_deregister(&registration_);
    throw BusError("cannot watch for the server");
  }
}

ServerWatch::~ServerWatch() {
  vorx_sig_deregister(&registration_);
  vorx_proc_unsubscribe(&subscription_);
}

}  // namespace cfm_agent
