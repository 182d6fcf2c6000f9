// SPDX-License-Identifier: Apache-2.0
#include "client_impl.h"

#include <cfm/identifiers.h>
#include <google/protobuf/message_lite.h>

#include <iterator>
#include <tuple>

#include "log_points.h"

namespace cfm {

ClientImpl::ClientImpl(vorx_t* handle)
    : token(handle),
      desired_hierarchy(std::make_shared<const core::KeptHierarchy>()),
      applied_hierarchy(desired_hierarchy),
      desired_probes(std::make_shared<const probe>()),
      applied_probes(desired_probes) {
  if (token == nullptr) {
    RaiseFault(fault_point::kInvalidToken);
  }
  subscription = vorx_proc_subscribe(token, CFM_MGR_PROCESS, ServerFound, ServerLost, this);
  log_category = vorx_trace_init(token, "cfm-mgr");
  if (log_category == nullptr) {
    RaiseFault(fault_point::kNoLogCategory);
  }
  Log<log_point::kInitialized>(log_category);
  RegisterSignalHandlers();
}

ClientImpl::~ClientImpl() {
  vorx_proc_unsubscribe(&subscription);
  for (auto& registration : signal_registrations) {
    if (registration != nullptr) {
      vorx_sig_deregister(&registration);
    }
  }
  for (auto& registration : event_registrations) {
    if (registration != nullptr) {
      vorx_event_deregister(&registration);
    }
  }
  Log<log_point::kFinished>(log_category);
}

void ClientImpl::RegisterSignalHandlers() {
  const struct {
    const vorx_sig_descriptor* signal;
    vorx_sig_cb callback;
  } signals[] = {
      {CFM_MGR_S2C_SIG_CACHE_REPLY, ReqCacheReply},
      {CFM_MGR_S2C_SIG_STATS_REPLY, ReqStatsReply},
      {CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR, HandleLinktraceTriggerError},
      {CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR, HandleLoopbackTriggerError},
      {CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR, HandleDelayMeasurementTriggerError},
  };
  const struct {
    const vorx_event_descriptor* event;
    vorx_event_cb callback;
  } events[] = {
      {CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, HandleStatusLocalMep},
      {CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, HandleStatusRemoteMep},
      {CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, HandleRemovedLocalMep},
      {CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP, HandleRemovedRemoteMep},
      {CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, HandleMepLinktraceStarted},
      {CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, HandleMepLinktraceEnded},
      {CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, HandleMepLinktraceReplyRx},
      {CFM_MGR_SRV_EVENT_LOOPBACK_STARTED, HandleLoopbackStarted},
      {CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX, HandleLoopbackReplyRx},
      {CFM_MGR_SRV_EVENT_LOOPBACK_ENDED, HandleLoopbackEnded},
      {CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_STARTED, HandleDelayMeasurementStarted},
      {CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX, HandleDelayMeasurementReplyRx},
      {CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_ENDED, HandleDelayMeasurementEnded},
      {CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_SESSION_ENDED, HandleDelayMeasurementSessionEnded},
  };
  static_assert(std::size(signals) == std::tuple_size_v<decltype(signal_registrations)>);
  static_assert(std::size(events) == std::tuple_size_v<decltype(event_registrations)>);
  auto signal_registration = signal_registrations.begin();
  for (const auto& entry : signals) {
    *signal_registration++ = vorx_sig_register_sized(token, entry.signal, entry.callback, this);
  }
  auto event_registration = event_registrations.begin();
  for (const auto& entry : events) {
    *event_registration++ = vorx_event_register_sized(token, entry.event, entry.callback, this);
  }
}

void ClientImpl::RegisterStatusHandler(ReceivedStatusHandlerIntf* handler) {
  status_handler = handler;
}

void ClientImpl::RegisterStatisticsHandler(ReceivedStatisticsHandlerIntf* handler) {
  statistics_handler = handler;
}

void ClientImpl::RegisterLinktraceHandler(ReceivedLinktraceHandlerIntf* handler) {
  linktrace_handler = handler;
}

void ClientImpl::RegisterLoopbackHandler(ReceivedLoopbackHandlerIntf* handler) {
  loopback_handler = handler;
}

void ClientImpl::RegisterDelayMeasurementHandler(ReceivedDelayMeasurementHandlerIntf* handler) {
  delay_measurement_handler = handler;
}

void ClientImpl::ServerFound(vorx_t* /*handle*/, const vorx_pid_t* pid, void* user) {
  auto& self = *static_cast<ClientImpl*>(user);
  Log<log_point::kServerFound>(self.log_category);
  self.server_pid = *pid;
  self.Send(CFM_MGR_C2S_SIG_CACHE_GET);
  if (self.status_handler != nullptr) {
    self.status_handler->OnServerFound();
  }
}

void ClientImpl::ServerLost(vorx_t* /*handle*/, void* user) {
  auto& self = *static_cast<ClientImpl*>(user);
  Log<log_point::kServerLost>(self.log_category);
  self.server_pid = 0;
  self.server_synced = false;
}

void ClientImpl::Send(const vorx_sig_descriptor* signal) const {
  vorx_sig_send(token, &server_pid, signal, nullptr, 0);
}

void ClientImpl::Send(const vorx_sig_descriptor* signal,
                      const google::protobuf::MessageLite& message) const {
  std::string bytes;
  message.SerializeToString(&bytes);
  SendBytes(signal, bytes);
}

void ClientImpl::SendBytes(const vorx_sig_descriptor* signal, const std::string& bytes) const {
  vorx_sig_send(token, &server_pid, signal, bytes.data(), static_cast<unsigned>(bytes.size()));
}

}  // namespace cfm
