// SPDX-License-Identifier: Apache-2.0
// Linktrace: trigger, refusal, progress and results.
//
// The three events go to the status handler and then to the linktrace handler, whichever there is;
// they are parsed and logged without either, the record coming before the calls. One that does not
// parse ends the process: this holds for no other report. A refusal is logged at once, is not even
// parsed without a linktrace handler, and is used as far as it was read.
#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>

#include "client_impl.h"
#include "core/linktrace_records.h"
#include "core/mac.h"
#include "core/numbers.h"
#include "core/test_requests.h"
#include "log_points.h"
#include "receive.h"
#include "send_trigger.h"

namespace cfm {

using core::Low16;

namespace {

template <typename Message, const FaultPoint& Fault>
Message ReceiveWhole(const void* data, unsigned length) {
  Message message;
  if (!ParsePayload(data, length, message)) {
    RaiseFault(Fault);
  }
  return message;
}

}  // namespace

void ClientImpl::LinktraceTrigger(const linktrace_trigger& trigger) {
  Log<log_point::kLinktracePreparing>(log_category);
  SendTrigger<log_point::kLinktraceSerializing, log_point::kLinktraceSending,
              log_point::kLinktraceSent>(CFM_MGR_C2S_SIG_LT_TRIGGER,
                                         core::LinktraceRequest(trigger));
}

// Logged first; not even parsed without a handler.
void ClientImpl::HandleLinktraceTriggerError(vorx_t* /*handle*/, void* user,
                                             const vorx_pid_t* /*sender*/, void* data,
                                             unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  Log<log_point::kLinktraceTriggerError>(self.log_category);
  if (self.linktrace_handler == nullptr) {
    return;
  }
  self.linktrace_handler->OnLinktraceTriggerError(
      core::LinktraceError(Receive<client_server::OpLinktraceTriggerError>(data, length)));
}

// Fatal if not whole; logged, then both handlers.
void ClientImpl::HandleMepLinktraceStarted(vorx_t* /*handle*/, void* user, void* data,
                                           unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  const auto message =
      ReceiveWhole<client_server::OpLinktraceStarted, fault_point::kLinktraceStarted>(data, length);
  const st_mac target = core::MacFromBytes(message.mac_address());
  Log<log_point::kLinktraceStarted>(self.log_category, message.transaction_id(),
                                    message.md_name().c_str(), message.ma_name().c_str(),
                                    message.mep_id(), core::MacText(target).data(),
                                    message.remote_mep_id());
  const auto call = [&](auto* handler) {
    if (handler != nullptr) {
      handler->OnMepLinktraceStarted(message.md_name(), message.ma_name(), Low16(message.mep_id()),
                                     message.transaction_id(), target,
                                     Low16(message.remote_mep_id()), message.has_started_value(),
                                     message.started_value());
    }
  };
  call(self.status_handler);
  call(self.linktrace_handler);
}

// Fatal if not whole; logged, then both handlers.
void ClientImpl::HandleMepLinktraceEnded(vorx_t* /*handle*/, void* user, void* data,
                                         unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  const auto message =
      ReceiveWhole<client_server::OpLinktraceEnded, fault_point::kLinktraceEnded>(data, length);
  Log<log_point::kLinktraceEnded>(self.log_category, message.transaction_id(),
                                  message.md_name().c_str(), message.ma_name().c_str(),
                                  message.mep_id());
  const auto call = [&](auto* handler) {
    if (handler != nullptr) {
      handler->OnMepLinktraceEnded(message.md_name(), message.ma_name(), Low16(message.mep_id()),
                                   message.transaction_id());
    }
  };
  call(self.status_handler);
  call(self.linktrace_handler);
}

// Fatal if not whole; rendered and logged only if the level is on, then both handlers.
void ClientImpl::HandleMepLinktraceReplyRx(vorx_t* /*handle*/, void* user, void* data,
                                           unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  const auto message =
      ReceiveWhole<client_server::OpLinktraceReplyRx, fault_point::kLinktraceReply>(data, length);
  const std::shared_ptr<LinktraceReplyEntry> entry = core::LinktraceReply(message.reply());
  if (LogEnabled(self.log_category, kDumpLevel)) {
    Log<log_point::kLinktraceReply>(self.log_category, message.md_name().c_str(),
                                    message.ma_name().c_str(), message.mep_id(),
                                    LinktraceReplyEntry::Show(*entry, 0).c_str());
  }
  const auto call = [&](auto* handler) {
    if (handler != nullptr) {
      handler->OnMepLinktraceReplyRx(message.md_name(), message.ma_name(), Low16(message.mep_id()),
                                     *entry);
    }
  };
  call(self.status_handler);
  call(self.linktrace_handler);
}

}  // namespace cfm
