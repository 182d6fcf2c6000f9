// SPDX-License-Identifier: Apache-2.0
// The least that a server does: it keeps what clients configure, gives it back when they ask, tells
// the status of endpoints, and refuses tests. It runs no protocol; "Here:" marks where a server
// goes on from this.
//
// It is written with the messages, the identifiers and the host alone. It has the name that clients
// look for, so that it and cfm-mgr cannot run on one bus.

#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>

#include <climits>
#include <string>

#include "common/host.h"
#include "server_skeleton/configuration.h"

namespace {

using client_server::OpCreateMaintenanceEndpoint;
using google::protobuf::MessageLite;

// Error codes are the server's own. With the reference server, too, this one means that it does not
// run this kind of test.
constexpr std::uint32_t kNotSupported = 3;

class Server {
 public:
  // Registers for all that clients send. Throws std::runtime_error.
  explicit Server(const examples::Handle& handle);

 private:
  template <class Message>
  using Handler = void (Server::*)(vorx_pid_t client, const Message& request);

  // Has the operation called for each signal of this kind.
  template <class Message, Handler<Message> Handle>
  void On(const vorx_sig_descriptor* signal);
  // The same for signals that carry nothing.
  template <void (Server::*Handle)(vorx_pid_t client)>
  void On(const vorx_sig_descriptor* signal);
  void Register(const vorx_sig_descriptor* signal, vorx_sig_cb callback);

  template <class Message>
  void Configure(vorx_pid_t client, const Message& request);
  void SendCache(vorx_pid_t client);
  void SendStatistics(vorx_pid_t client);
  void ClearStatistics(vorx_pid_t client, const client_server::OpStatsClear& request);
  void PublishAllStatus(vorx_pid_t client);
  void RefuseLinktrace(vorx_pid_t client, const client_server::OpLinktraceTriggerMsg& trigger);
  void RefuseLoopback(vorx_pid_t client, const client_server::OpLoopbackTriggerMsg& trigger);
  void RefuseDelayMeasurement(vorx_pid_t client,
                              const client_server::OpDelayMeasurementTriggerMsg& trigger);

  void PublishStatus(const OpCreateMaintenanceEndpoint& mep) const;
  void PublishRemoved(const OpCreateMaintenanceEndpoint& mep) const;
  void Send(vorx_pid_t client, const vorx_sig_descriptor* signal, const MessageLite& message) const;
  void Publish(const vorx_event_descriptor* event, const MessageLite& message) const;

  vorx_t* handle_;
  examples::Configuration configuration_;
};

void Say(vorx_pid_t client, const std::string& what) {
  examples::Say("client " + std::to_string(client) + ": " + what);
}

Server::Server(const examples::Handle& handle) : handle_(handle.get()) {
  using namespace client_server;  // NOLINT(google-build-using-namespace)
  On<OpCreateMaintenanceDomain, &Server::Configure>(CFM_MGR_C2S_SIG_MD_CREATE);
  On<OpUpdateMaintenanceDomain, &Server::Configure>(CFM_MGR_C2S_SIG_MD_UPDATE);
  On<OpDeleteMaintenanceDomain, &Server::Configure>(CFM_MGR_C2S_SIG_MD_DELETE);
  On<OpCreateMaintenanceAssociation, &Server::Configure>(CFM_MGR_C2S_SIG_MA_CREATE);
  On<OpUpdateMaintenanceAssociation, &Server::Configure>(CFM_MGR_C2S_SIG_MA_UPDATE);
  On<OpDeleteMaintenanceAssociation, &Server::Configure>(CFM_MGR_C2S_SIG_MA_DELETE);
  On<OpCreateMaintenanceEndpoint, &Server::Configure>(CFM_MGR_C2S_SIG_MEP_CREATE);
  On<OpUpdateMaintenanceEndpoint, &Server::Configure>(CFM_MGR_C2S_SIG_MEP_UPDATE);
  On<OpDeleteMaintenanceEndpoint, &Server::Configure>(CFM_MGR_C2S_SIG_MEP_DELETE);
  On<OpCreateDelayMeasurementProbe, &Server::Configure>(CFM_MGR_C2S_SIG_DM_PROBE_CREATE);
  On<OpDeleteDelayMeasurementProbe, &Server::Configure>(CFM_MGR_C2S_SIG_DM_PROBE_DELETE);
  On<OpCreateDelayMeasurementSession, &Server::Configure>(CFM_MGR_C2S_SIG_DM_SESSION_CREATE);
  On<OpDeleteDelayMeasurementSession, &Server::Configure>(CFM_MGR_C2S_SIG_DM_SESSION_DELETE);
  On<&Server::SendCache>(CFM_MGR_C2S_SIG_CACHE_GET);
  On<&Server::PublishAllStatus>(CFM_MGR_C2S_SIG_STATUS_GET_ALL);
  On<&Server::SendStatistics>(CFM_MGR_C2S_SIG_STATS_GET);
  On<OpStatsClear, &Server::ClearStatistics>(CFM_MGR_C2S_SIG_STATS_CLEAR);
  On<OpLinktraceTriggerMsg, &Server::RefuseLinktrace>(CFM_MGR_C2S_SIG_LT_TRIGGER);
  On<OpLoopbackTriggerMsg, &Server::RefuseLoopback>(CFM_MGR_C2S_SIG_LB_TRIGGER);
  On<OpDelayMeasurementTriggerMsg, &Server::RefuseDelayMeasurement>(CFM_MGR_C2S_SIG_DM_TRIGGER);
}

template <class Message, Server::Handler<Message> Handle>
void Server::On(const vorx_sig_descriptor* signal) {
  Register(signal,
           [](vorx_t*, void* user, const vorx_pid_t* sender, void* data, unsigned int length) {
             Message message;
             // Any process of the bus may have sent anything.
             if (length > INT_MAX || !message.ParseFromArray(data, static_cast<int>(length))) {
               Say(*sender, message.GetTypeName() + ": cannot be read");
               return;
             }
             (static_cast<Server*>(user)->*Handle)(*sender, message);
           });
}

template <void (Server::*Handle)(vorx_pid_t client)>
void Server::On(const vorx_sig_descriptor* signal) {
  Register(signal, [](vorx_t*, void* user, const vorx_pid_t* sender, void*, unsigned int) {
    (static_cast<Server*>(user)->*Handle)(*sender);
  });
}

void Server::Register(const vorx_sig_descriptor* signal, vorx_sig_cb callback) {
  if (vorx_sig_register_sized(handle_, signal, callback, this) == nullptr) {
    throw examples::Failure("cannot register for a signal", handle_);
  }
}

// Here: a server checks the ranges of what it is given, starts or stops the protocol for what has
// changed, and perhaps keeps the configuration in a file.
template <class Message>
void Server::Configure(vorx_pid_t client, const Message& request) {
  const examples::Outcome outcome = configuration_.Apply(request);
  Say(client, request.GetTypeName() + (outcome.refused ? ": refused" : ": done"));
  for (const auto& mep : outcome.removed) PublishRemoved(mep);
  for (const auto& mep : outcome.created) PublishStatus(mep);
}

// The client asks for this as soon as it sees the server, and holds back everything else until the
// answer has come: a server that does not answer never gets a configuration.
void Server::SendCache(vorx_pid_t client) {
  Say(client, "asks for the configuration");
  Send(client, CFM_MGR_S2C_SIG_CACHE_REPLY, configuration_.Whole());
}

void Server::PublishAllStatus(vorx_pid_t client) {
  Say(client, "asks for the status of all endpoints");
  const client_server::OpCacheSync whole = configuration_.Whole();
  for (const auto& mep : whole.meps()) PublishStatus(mep);
}

// Here: counts. A reply without entries is complete, too.
void Server::SendStatistics(vorx_pid_t client) {
  Say(client, "asks for statistics");
  const client_server::OpCacheSync whole = configuration_.Whole();
  client_server::OpReplyAllStats reply;
  for (const auto& mep : whole.meps()) {
    client_server::LocalMepStats& stats = *reply.add_local_mep_stats();
    stats.set_md_name(mep.md_name());
    stats.set_ma_name(mep.ma_name());
    stats.set_mep_id(mep.mep_id());
    stats.set_ccm_rx_seq_errors(0);
    stats.set_ccm_tx_seq_number(0);
    stats.set_ccm_tx_total(0);
  }
  Send(client, CFM_MGR_S2C_SIG_STATS_REPLY, reply);
}

void Server::ClearStatistics(vorx_pid_t client, const client_server::OpStatsClear& request) {
  Say(client, request.GetTypeName() + ": there is nothing to clear");
}

// Here: a test begins. Its progress and end are events, which all clients get; only a refusal goes
// to the one that asked, with the request_id that it chose.
void Server::RefuseLinktrace(vorx_pid_t client,
                             const client_server::OpLinktraceTriggerMsg& trigger) {
  client_server::OpLinktraceTriggerError error;
  *error.mutable_key() = trigger.key();
  error.set_error_code(kNotSupported);
  Send(client, CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR, error);
}

template <class Error, class Trigger>
Error Refusal(const Trigger& trigger) {
  Error error;
  error.set_md_name(trigger.md_name());
  error.set_ma_name(trigger.ma_name());
  error.set_request_id(trigger.request_id());
  error.set_error_code(kNotSupported);
  error.set_mep_id(trigger.mep_id());
  error.set_remote_mep_id(trigger.remote_mep_id());
  return error;
}

void Server::RefuseLoopback(vorx_pid_t client, const client_server::OpLoopbackTriggerMsg& trigger) {
  Send(client, CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR,
       Refusal<client_server::OpLoopbackTriggerError>(trigger));
}

void Server::RefuseDelayMeasurement(vorx_pid_t client,
                                    const client_server::OpDelayMeasurementTriggerMsg& trigger) {
  Send(client, CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR,
       Refusal<client_server::OpDelayMeasurementTriggerError>(trigger));
}

// Here: what the protocol knows, and an event for each remote endpoint as well. Every field is set:
// what is left out reads as zero, but says that nobody thought of it.
void Server::PublishStatus(const OpCreateMaintenanceEndpoint& mep) const {
  constexpr char kNoAddress[6] = {};
  client_server::StatusLocalMaintenanceEndpoint status;
  status.set_md_name(mep.md_name());
  status.set_ma_name(mep.ma_name());
  status.set_mep_id(mep.mep_id());
  status.set_mac_address(kNoAddress, sizeof kNoAddress);
  status.set_highest_defect_priority(0);
  status.set_intf_status(4);  // unknown
  status.set_port_state(0);
  status.set_block_state(0);
  status.set_shutdown_state(0);
  status.set_rdi(false);
  status.set_defect_mac_status(false);
  status.set_defect_remote_ccm(false);
  status.set_defect_error_ccm(false);
  status.set_defect_xcon_ccm(false);
  status.set_defect_rdi(false);
  status.set_defect_ais(false);
  Publish(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, status);
}

void Server::PublishRemoved(const OpCreateMaintenanceEndpoint& mep) const {
  client_server::RemovedLocalMaintenanceEndpoint removed;
  removed.set_md_name(mep.md_name());
  removed.set_ma_name(mep.ma_name());
  removed.set_mep_id(mep.mep_id());
  Publish(CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, removed);
}

// A client that has gone cannot be answered, which is no reason to end.
void Server::Send(vorx_pid_t client, const vorx_sig_descriptor* signal,
                  const MessageLite& message) const {
  const std::string bytes = message.SerializeAsString();
  const auto length = static_cast<unsigned int>(bytes.size());
  std::string result = "sent";
  if (vorx_sig_send(handle_, &client, signal, bytes.data(), length) < 0) {
    result = std::string("not sent: ") + vorx_last_error(handle_);
  }
  Say(client, message.GetTypeName() + ": " + result);
}

void Server::Publish(const vorx_event_descriptor* event, const MessageLite& message) const {
  const std::string bytes = message.SerializeAsString();
  const auto length = static_cast<unsigned int>(bytes.size());
  if (vorx_event_publish(handle_, event, bytes.data(), length) < 0) {
    examples::Say("cannot publish: " + std::string(vorx_last_error(handle_)));
  }
}

int Program(int /*argc*/, char** /*argv*/) {
  const examples::Handle handle = examples::Join(CFM_MGR_PROCESS);
  // Whoever sees the server may send at once: what comes is delivered from Run() on only.
  const Server server(handle);
  const examples::StopOnSignals stop(handle);
  return examples::Run(handle);
}

}  // namespace

int main(int argc, char** argv) { return examples::Main("server_skeleton", Program, argc, argv); }
