/* SPDX-License-Identifier: Apache-2.0 */
// Everything that a server sends, once with all fields set, each to a value of its own.
#ifndef CFM_TESTS_LIBRARY_SAMPLE_REPORTS_H
#define CFM_TESTS_LIBRARY_SAMPLE_REPORTS_H

#include <cfm/client_server.pb.h>
#include <vorx/vorx.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "recording_host.h"

namespace cfm_test {

/// The octets of a string literal, also those that are zero.
template <std::size_t Size>
std::string Octets(const char (&literal)[Size]) {
  return {literal, Size - 1};
}

client_server::StatusLocalMaintenanceEndpoint LocalStatus();
client_server::StatusRemoteMaintenanceEndpoint RemoteStatus();
client_server::RemovedLocalMaintenanceEndpoint RemovedLocal();
client_server::RemovedRemoteMaintenanceEndpoint RemovedRemote();
/// Two local and three remote entries.
client_server::OpReplyAllStats Statistics();
client_server::OpLinktraceTriggerError LinktraceRefusal();
client_server::OpLinktraceStarted LinktraceStarted();
client_server::OpLinktraceEnded LinktraceEnded();
client_server::OpLinktraceReplyRx LinktraceReply();
client_server::OpLoopbackTriggerError LoopbackRefusal();
client_server::OpLoopbackStarted LoopbackStarted();
client_server::OpLoopbackReplyRx LoopbackReply();
client_server::OpLoopbackEnded LoopbackEnded();
client_server::OpDelayMeasurementTriggerError DelayRefusal();
client_server::OpDelayMeasurementStarted DelayStarted();
client_server::OpDelayMeasurementReplyRx DelayReply();
client_server::OpDelayMeasurementEnded DelayEnded();
client_server::OpDelayMeasurementSessionEnded SessionEnded();
client_server::OpCacheSync CacheReply();

/// One of the nineteen callbacks, with a message for it.
struct Report {
  std::string name;
  const vorx_sig_descriptor* signal = nullptr;  // one of the two is set
  const vorx_event_descriptor* event = nullptr;
  std::string bytes;

  struct Reread {
    bool whole = false;  // the bytes were one complete message
    std::string bytes;   // what was read, as a complete message
  };
  std::function<Reread(const std::string& bytes)> reread;

  void Deliver(RecordingHost& host, const std::string& payload) const;
  void DeliverNull(RecordingHost& host) const;
};

/// For the messages of failing tests.
inline void PrintTo(const Report& report, std::ostream* out) { *out << report.name; }

const std::vector<Report>& AllReports();

/// All but the cache reply, which changes what the client knows and calls no handler.
std::vector<Report> ReportsForHandlers();

/// The three that have to be complete.
bool IsLinktraceEvent(const Report& report);

}  // namespace cfm_test

#endif
