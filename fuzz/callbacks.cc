// SPDX-License-Identifier: Apache-2.0
#include "callbacks.h"

#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>

namespace cfm_fuzz {
namespace {

template <typename Message>
Reread RereadAs(const std::string& payload) {
  Reread reread;
  Message message;
  reread.whole = message.ParseFromString(payload);
  reread.bytes = message.SerializeAsString();
  reread.bytes_whole = reread.whole || message.ParseFromString(reread.bytes);
  return reread;
}

template <typename Message>
constexpr Callback Signal(const vorx_sig_descriptor* signal, const char* message) {
  return {signal, nullptr, message, false, RereadAs<Message>};
}

template <typename Message>
constexpr Callback Event(const vorx_event_descriptor* event, const char* message) {
  return {nullptr, event, message, false, RereadAs<Message>};
}

template <typename Message>
constexpr Callback LinktraceEvent(const vorx_event_descriptor* event, const char* message) {
  return {nullptr, event, message, true, RereadAs<Message>};
}

}  // namespace

const std::array<Callback, 19>& Callbacks() {
  using namespace client_server;  // NOLINT(google-build-using-namespace)
  // clang-format off
  static const std::array<Callback, 19> callbacks = {
      Signal<OpCacheSync>(CFM_MGR_S2C_SIG_CACHE_REPLY, "OpCacheSync"),
      Signal<OpReplyAllStats>(CFM_MGR_S2C_SIG_STATS_REPLY, "OpReplyAllStats"),
      Signal<OpLinktraceTriggerError>(CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR, "OpLinktraceTriggerError"),
      Signal<OpLoopbackTriggerError>(CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR, "OpLoopbackTriggerError"),
      Signal<OpDelayMeasurementTriggerError>(CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR, "OpDelayMeasurementTriggerError"),
      Event<StatusLocalMaintenanceEndpoint>(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, "StatusLocalMaintenanceEndpoint"),
      Event<StatusRemoteMaintenanceEndpoint>(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, "StatusRemoteMaintenanceEndpoint"),
      Event<RemovedLocalMaintenanceEndpoint>(CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, "RemovedLocalMaintenanceEndpoint"),
      Event<RemovedRemoteMaintenanceEndpoint>(CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP, "RemovedRemoteMaintenanceEndpoint"),
      LinktraceEvent<OpLinktraceStarted>(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, "OpLinktraceStarted"),
      LinktraceEvent<OpLinktraceReplyRx>(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, "OpLinktraceReplyRx"),
      LinktraceEvent<OpLinktraceEnded>(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, "OpLinktraceEnded"),
      Event<OpLoopbackStarted>(CFM_MGR_SRV_EVENT_LOOPBACK_STARTED, "OpLoopbackStarted"),
      Event<OpLoopbackReplyRx>(CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX, "OpLoopbackReplyRx"),
      Event<OpLoopbackEnded>(CFM_MGR_SRV_EVENT_LOOPBACK_ENDED, "OpLoopbackEnded"),
      Event<OpDelayMeasurementStarted>(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_STARTED, "OpDelayMeasurementStarted"),
      Event<OpDelayMeasurementReplyRx>(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX, "OpDelayMeasurementReplyRx"),
      Event<OpDelayMeasurementEnded>(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_ENDED, "OpDelayMeasurementEnded"),
      Event<OpDelayMeasurementSessionEnded>(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_SESSION_ENDED, "OpDelayMeasurementSessionEnded"),
  };
  // clang-format on
  return callbacks;
}

}  // namespace cfm_fuzz
