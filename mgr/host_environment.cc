// SPDX-License-Identifier: Apache-2.0
#include "host_environment.h"

namespace cfm_mgr {
namespace {

unsigned int LengthOf(const std::string& payload) {
  return static_cast<unsigned int>(payload.size());
}

}  // namespace

std::string HostEnvironment::Send(vorx_pid_t client, const vorx_sig_descriptor& signal,
                                  const std::string& payload) {
  const int result =
      vorx_sig_send(handle_.get(), &client, &signal, payload.data(), LengthOf(payload));
  return result < 0 ? LastError(handle_) : "";
}

void HostEnvironment::Publish(const vorx_event_descriptor& event, const std::string& payload) {
  const int result = vorx_event_publish(handle_.get(), &event, payload.data(), LengthOf(payload));
  const int fault = result < 0 ? result : 0;
  if (fault != 0 && fault != last_fault_) {
    logger_.Write("cannot publish event " + std::to_string(event.number) + ": " +
                  LastError(handle_));
  }
  last_fault_ = fault;
}

}  // namespace cfm_mgr
