// SPDX-License-Identifier: Apache-2.0
#include <cfm/identifiers.h>

#include <algorithm>
#include <iterator>

#include "sample_reports.h"

namespace cfm_test {
namespace {

template <typename Message>
Report::Reread RereadAs(const std::string& bytes) {
  Message message;
  const bool whole = message.ParseFromString(bytes);
  return {whole, message.SerializeAsString()};
}

template <typename Message>
Report Row(const vorx_sig_descriptor* signal, const Message& sample) {
  return {NameOf(signal), signal, nullptr, sample.SerializeAsString(), RereadAs<Message>};
}

template <typename Message>
Report Row(const vorx_event_descriptor* event, const Message& sample) {
  return {NameOf(event), nullptr, event, sample.SerializeAsString(), RereadAs<Message>};
}

}  // namespace

const std::vector<Report>& AllReports() {
  static const std::vector<Report> reports = {
      Row(CFM_MGR_S2C_SIG_CACHE_REPLY, CacheReply()),
      Row(CFM_MGR_S2C_SIG_STATS_REPLY, Statistics()),
      Row(CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR, LinktraceRefusal()),
      Row(CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR, LoopbackRefusal()),
      Row(CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR, DelayRefusal()),
      Row(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, LocalStatus()),
      Row(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, RemoteStatus()),
      Row(CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, RemovedLocal()),
      Row(CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP, RemovedRemote()),
      Row(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, LinktraceStarted()),
      Row(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, LinktraceEnded()),
      Row(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, LinktraceReply()),
      Row(CFM_MGR_SRV_EVENT_LOOPBACK_STARTED, LoopbackStarted()),
      Row(CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX, LoopbackReply()),
      Row(CFM_MGR_SRV_EVENT_LOOPBACK_ENDED, LoopbackEnded()),
      Row(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_STARTED, DelayStarted()),
      Row(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX, DelayReply()),
      Row(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_ENDED, DelayEnded()),
      Row(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_SESSION_ENDED, SessionEnded()),
  };
  return reports;
}

std::vector<Report> ReportsForHandlers() {
  std::vector<Report> reports;
  std::copy_if(AllReports().begin(), AllReports().end(), std::back_inserter(reports),
               [](const Report& report) { return report.name != "CACHE_REPLY"; });
  return reports;
}

void Report::Deliver(RecordingHost& host, const std::string& payload) const {
  if (signal != nullptr) {
    host.Signal(signal, payload);
  } else {
    host.Event(event, payload);
  }
}

void Report::DeliverNull(RecordingHost& host) const {
  if (signal != nullptr) {
    host.SignalNull(signal);
  } else {
    host.EventNull(event);
  }
}

bool IsLinktraceEvent(const Report& report) { return report.name.rfind("LINKTRACE_", 0) == 0; }

}  // namespace cfm_test
