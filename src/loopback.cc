// SPDX-License-Identifier: Apache-2.0
// Loopback: trigger, refusal, progress and results.
//
// Every report is parsed and logged with or without a loopback handler, the record coming before
// the call; what does not parse is used as far as it was read.
#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>

#include "client_impl.h"
#include "core/mac.h"
#include "core/numbers.h"
#include "core/test_requests.h"
#include "log_points.h"
#include "receive.h"
#include "send_trigger.h"

namespace cfm {

using core::Low16;

void ClientImpl::LoopbackTrigger(const loopback_trigger& trigger) const {
  SendTrigger<log_point::kLoopbackSerializing, log_point::kLoopbackSending,
              log_point::kLoopbackSent>(CFM_MGR_C2S_SIG_LB_TRIGGER, core::LoopbackRequest(trigger));
}

void ClientImpl::HandleLoopbackTriggerError(vorx_t* /*handle*/, void* user,
                                            const vorx_pid_t* /*sender*/, void* data,
                                            unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  const auto message = Receive<client_server::OpLoopbackTriggerError>(data, length);
  Log<log_point::kLoopbackTriggerError>(self.log_category, message.error_code());
  if (self.loopback_handler != nullptr) {
    self.loopback_handler->OnLoopbackTriggerError(
        message.request_id(), message.error_code(), message.md_name(), message.ma_name(),
        Low16(message.mep_id()), Low16(message.remote_mep_id()));
  }
}

void ClientImpl::HandleLoopbackStarted(vorx_t* /*handle*/, void* user, void* data,
                                       unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  const auto message = Receive<client_server::OpLoopbackStarted>(data, length);
  const st_mac target = core::MacFromBytes(message.mac_address());
  Log<log_point::kLoopbackStarted>(self.log_category, core::MacText(target).data());
  if (self.loopback_handler != nullptr) {
    self.loopback_handler->OnLoopbackStarted(message.request_id(), target);
  }
}

void ClientImpl::HandleLoopbackReplyRx(vorx_t* /*handle*/, void* user, void* data,
                                       unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  const auto message = Receive<client_server::OpLoopbackReplyRx>(data, length);
  const st_mac mac = core::MacFromBytes(message.mac_address());
  Log<log_point::kLoopbackReply>(self.log_category, message.transaction_id(),
                                 core::MacText(mac).data());
  if (self.loopback_handler != nullptr) {
    self.loopback_handler->OnLoopbackReplyRx(message.request_id(), message.transaction_id(), mac);
  }
}

void ClientImpl::HandleLoopbackEnded(vorx_t* /*handle*/, void* user, void* data, unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  const auto message = Receive<client_server::OpLoopbackEnded>(data, length);
  Log<log_point::kLoopbackEnded>(self.log_category,
                                 static_cast<unsigned long long>(message.expected_replies()),
                                 static_cast<unsigned long long>(message.in_order_replies()),
                                 static_cast<unsigned long long>(message.out_of_order_replies()),
                                 static_cast<unsigned long long>(message.wrong_payload_replies()));
  if (self.loopback_handler != nullptr) {
    self.loopback_handler->OnLoopbackEnded(
        message.request_id(), message.expected_replies(), message.in_order_replies(),
        message.out_of_order_replies(), message.wrong_payload_replies());
  }
}

}  // namespace cfm
