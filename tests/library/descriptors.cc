// SPDX-License-Identifier: Apache-2.0
#include "descriptors.h"

#include <cfm/identifiers.h>

namespace cfm_test {
namespace {

template <typename Descriptor>
struct Known {
  const Descriptor* descriptor;
  const char* name;
  const char* message;
};

// clang-format off
const Known<vorx_sig_descriptor> kSignals[] = {
    {CFM_MGR_C2S_SIG_MD_CREATE, "MD_CREATE", "OpCreateMaintenanceDomain"},
    {CFM_MGR_C2S_SIG_MD_UPDATE, "MD_UPDATE", "OpUpdateMaintenanceDomain"},
    {CFM_MGR_C2S_SIG_MD_DELETE, "MD_DELETE", "OpDeleteMaintenanceDomain"},
    {CFM_MGR_C2S_SIG_MA_CREATE, "MA_CREATE", "OpCreateMaintenanceAssociation"},
    {CFM_MGR_C2S_SIG_MA_UPDATE, "MA_UPDATE", "OpUpdateMaintenanceAssociation"},
    {CFM_MGR_C2S_SIG_MA_DELETE, "MA_DELETE", "OpDeleteMaintenanceAssociation"},
    {CFM_MGR_C2S_SIG_MEP_CREATE, "MEP_CREATE", "OpCreateMaintenanceEndpoint"},
    {CFM_MGR_C2S_SIG_MEP_UPDATE, "MEP_UPDATE", "OpUpdateMaintenanceEndpoint"},
    {CFM_MGR_C2S_SIG_MEP_DELETE, "MEP_DELETE", "OpDeleteMaintenanceEndpoint"},
    {CFM_MGR_C2S_SIG_CACHE_GET, "CACHE_GET", ""},
    {CFM_MGR_C2S_SIG_STATS_GET, "STATS_GET", ""},
    {CFM_MGR_C2S_SIG_STATS_CLEAR, "STATS_CLEAR", "OpStatsClear"},
    {CFM_MGR_C2S_SIG_STATUS_GET_ALL, "STATUS_GET_ALL", ""},
    {CFM_MGR_C2S_SIG_LT_TRIGGER, "LT_TRIGGER", "OpLinktraceTriggerMsg"},
    {CFM_MGR_C2S_SIG_LB_TRIGGER, "LB_TRIGGER", "OpLoopbackTriggerMsg"},
    {CFM_MGR_C2S_SIG_DM_TRIGGER, "DM_TRIGGER", "OpDelayMeasurementTriggerMsg"},
    {CFM_MGR_C2S_SIG_DM_PROBE_CREATE, "DM_PROBE_CREATE", "OpCreateDelayMeasurementProbe"},
    {CFM_MGR_C2S_SIG_DM_PROBE_DELETE, "DM_PROBE_DELETE", "OpDeleteDelayMeasurementProbe"},
    {CFM_MGR_C2S_SIG_DM_SESSION_CREATE, "DM_SESSION_CREATE", "OpCreateDelayMeasurementSession"},
    {CFM_MGR_C2S_SIG_DM_SESSION_DELETE, "DM_SESSION_DELETE", "OpDeleteDelayMeasurementSession"},
    {CFM_MGR_S2C_SIG_CACHE_REPLY, "CACHE_REPLY", "OpCacheSync"},
    {CFM_MGR_S2C_SIG_STATS_REPLY, "STATS_REPLY", "OpReplyAllStats"},
    {CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR, "LT_TRIGGER_ERROR", "OpLinktraceTriggerError"},
    {CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR, "LB_TRIGGER_ERROR", "OpLoopbackTriggerError"},
    {CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR, "DM_TRIGGER_ERROR", "OpDelayMeasurementTriggerError"},
};

const Known<vorx_event_descriptor> kEvents[] = {
    {CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, "STATUS_LOCAL_MEP", "StatusLocalMaintenanceEndpoint"},
    {CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, "STATUS_REMOTE_MEP", "StatusRemoteMaintenanceEndpoint"},
    {CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, "REMOVED_LOCAL_MEP", "RemovedLocalMaintenanceEndpoint"},
    {CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP, "REMOVED_REMOTE_MEP", "RemovedRemoteMaintenanceEndpoint"},
    {CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, "LINKTRACE_STARTED", "OpLinktraceStarted"},
    {CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, "LINKTRACE_REPLY_RX", "OpLinktraceReplyRx"},
    {CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, "LINKTRACE_ENDED", "OpLinktraceEnded"},
    {CFM_MGR_SRV_EVENT_LOOPBACK_STARTED, "LOOPBACK_STARTED", "OpLoopbackStarted"},
    {CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX, "LOOPBACK_REPLY_RX", "OpLoopbackReplyRx"},
    {CFM_MGR_SRV_EVENT_LOOPBACK_ENDED, "LOOPBACK_ENDED", "OpLoopbackEnded"},
    {CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_STARTED, "DELAY_MEASUREMENT_STARTED", "OpDelayMeasurementStarted"},
    {CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX, "DELAY_MEASUREMENT_REPLY_RX", "OpDelayMeasurementReplyRx"},
    {CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_ENDED, "DELAY_MEASUREMENT_ENDED", "OpDelayMeasurementEnded"},
    {CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_SESSION_ENDED, "DELAY_MEASUREMENT_SESSION_ENDED", "OpDelayMeasurementSessionEnded"},
};
// clang-format on

constexpr std::size_t kClientSignals = 20;

template <typename Descriptor, std::size_t Size>
std::string NameIn(const Known<Descriptor> (&table)[Size], const Descriptor* descriptor) {
  for (const auto& entry : table) {
    if (entry.descriptor == descriptor) {
      return entry.name;
    }
  }
  return "UNKNOWN";
}

template <typename Descriptor>
std::vector<const Descriptor*> Descriptors(const Known<Descriptor>* begin,
                                           const Known<Descriptor>* end) {
  std::vector<const Descriptor*> result;
  for (const auto* entry = begin; entry != end; ++entry) {
    result.push_back(entry->descriptor);
  }
  return result;
}

}  // namespace

std::string NameOf(const vorx_sig_descriptor* signal) { return NameIn(kSignals, signal); }

std::string NameOf(const vorx_event_descriptor* event) { return NameIn(kEvents, event); }

std::string MessageOf(const std::string& name) {
  for (const auto& entry : kSignals) {
    if (name == entry.name) {
      return entry.message;
    }
  }
  for (const auto& entry : kEvents) {
    if (name == entry.name) {
      return entry.message;
    }
  }
  return "";
}

const std::vector<const vorx_sig_descriptor*>& ClientSignals() {
  static const auto signals =
      Descriptors(std::begin(kSignals), std::begin(kSignals) + kClientSignals);
  return signals;
}

const std::vector<const vorx_sig_descriptor*>& ServerSignals() {
  static const auto signals =
      Descriptors(std::begin(kSignals) + kClientSignals, std::end(kSignals));
  return signals;
}

const std::vector<const vorx_event_descriptor*>& ServerEvents() {
  static const auto events = Descriptors(std::begin(kEvents), std::end(kEvents));
  return events;
}

}  // namespace cfm_test
