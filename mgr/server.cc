// SPDX-License-Identifier: Apache-2.0
#include "server.h"

#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>

#include <array>
#include <cstdio>
#include <optional>
#include <utility>

#include "convert.h"
#include "fields.h"
#include "naming.h"
#include "render.h"
#include "reports.h"
#include "test_messages.h"

namespace cfm_mgr {
namespace {

template <class Message>
std::optional<Message> Parse(std::string_view payload) {
  Message message;
  if (!message.ParseFromArray(payload.data(), static_cast<int>(payload.size()))) return {};
  return message;
}

Outcome Refused(std::string reason) {
  Outcome outcome;
  outcome.text = std::move(reason);
  outcome.refused = true;
  return outcome;
}

Outcome Accepted(std::string text) {
  Outcome outcome;
  outcome.text = std::move(text);
  return outcome;
}

template <class Message>
Outcome Unreadable(std::string_view payload) {
  return Refused("payload of " + Plural(payload.size(), "octet") + " is not a " +
                 Message().GetTypeName());
}

// Whom a test trigger and its refusal name: a part of its own for the linktrace.

const auto& KeyOf(const client_server::OpLinktraceTriggerMsg& trigger) { return trigger.key(); }
auto& KeyOf(client_server::OpLinktraceTriggerError& error) { return *error.mutable_key(); }

template <class Message>
Message& KeyOf(Message& message) {
  return message;
}

template <class Key>
std::string SubjectOfTest(const Key& key) {
  return NameMep(key).subject + " remote mep " + std::to_string(key.remote_mep_id()) + " request " +
         std::to_string(key.request_id());
}

std::string ShowMac(const engine::Mac& mac) {
  std::array<char, 18> text{};
  // Six octets always fit.
  static_cast<void>(std::snprintf(text.data(), text.size(), "%02x:%02x:%02x:%02x:%02x:%02x", mac[0],
                                  mac[1], mac[2], mac[3], mac[4], mac[5]));
  return text.data();
}

const char* Describe(TriggerError error) {
  switch (error) {
    case TriggerError::UnknownMep:
      return "no such endpoint";
    case TriggerError::UnknownRemoteMep:
      return "the association's MEP list holds no such other endpoint";
    case TriggerError::NotSupported:
      return "this server does not run the test";
    case TriggerError::UnknownAddress:
      return "the remote endpoint's address is not known: no CCM of it has come in";
    case TriggerError::NotActive:
      return "the endpoint is not active, or its interface is not there";
    case TriggerError::TooMany:
      return "the endpoint runs as many tests as it can";
    case TriggerError::BadParameter:
      return "a parameter is out of its range";
  }
  return "unknown";
}

}  // namespace

const std::vector<Server::Request>& Server::Requests() {
  using namespace client_server;  // NOLINT(google-build-using-namespace): the table's messages
  static const std::vector<Request> kRequests = {
      {CFM_MGR_C2S_SIG_MD_CREATE, "MD create", &Server::Configure<OpCreateMaintenanceDomain>},
      {CFM_MGR_C2S_SIG_MD_UPDATE, "MD update", &Server::Configure<OpUpdateMaintenanceDomain>},
      {CFM_MGR_C2S_SIG_MD_DELETE, "MD delete", &Server::Configure<OpDeleteMaintenanceDomain>},
      {CFM_MGR_C2S_SIG_MA_CREATE, "MA create", &Server::Configure<OpCreateMaintenanceAssociation>},
      {CFM_MGR_C2S_SIG_MA_UPDATE, "MA update", &Server::Configure<OpUpdateMaintenanceAssociation>},
      {CFM_MGR_C2S_SIG_MA_DELETE, "MA delete", &Server::Configure<OpDeleteMaintenanceAssociation>},
      {CFM_MGR_C2S_SIG_MEP_CREATE, "MEP create", &Server::Configure<OpCreateMaintenanceEndpoint>},
      {CFM_MGR_C2S_SIG_MEP_UPDATE, "MEP update", &Server::Configure<OpUpdateMaintenanceEndpoint>},
      {CFM_MGR_C2S_SIG_MEP_DELETE, "MEP delete", &Server::Configure<OpDeleteMaintenanceEndpoint>},
      {CFM_MGR_C2S_SIG_CACHE_GET, "cache request", &Server::SendCache},
      {CFM_MGR_C2S_SIG_STATS_GET, "statistics request", &Server::SendStatistics},
      {CFM_MGR_C2S_SIG_STATS_CLEAR, "statistics clear", &Server::ClearStatistics},
      {CFM_MGR_C2S_SIG_STATUS_GET_ALL, "status request", &Server::PublishStatus},
      {CFM_MGR_C2S_SIG_LT_TRIGGER, "linktrace", &Server::StartLinktrace},
      {CFM_MGR_C2S_SIG_LB_TRIGGER, "loopback", &Server::StartLoopback},
      {CFM_MGR_C2S_SIG_DM_TRIGGER, "delay measurement", &Server::StartDelayMeasurement},
      {CFM_MGR_C2S_SIG_DM_PROBE_CREATE, "probe create",
       &Server::Configure<OpCreateDelayMeasurementProbe>},
      {CFM_MGR_C2S_SIG_DM_PROBE_DELETE, "probe delete",
       &Server::Configure<OpDeleteDelayMeasurementProbe>},
      {CFM_MGR_C2S_SIG_DM_SESSION_CREATE, "session create",
       &Server::Configure<OpCreateDelayMeasurementSession>},
      {CFM_MGR_C2S_SIG_DM_SESSION_DELETE, "session delete",
       &Server::Configure<OpDeleteDelayMeasurementSession>},
  };
  return kRequests;
}

Server::Server(Store store, Environment& environment, const MakeNetwork& make_network)
    : store_(std::move(store)),
      environment_(environment),
      events_(environment),
      network_(make_network(events_)),
      provisioner_(store_.tree(), network_->engine()),
      reporter_(store_.tree(), network_->engine(), events_, environment) {
  Settle();
  events_.TakeChanges();
}

bool Server::Handle(const Request& request, vorx_pid_t client, std::string_view payload) {
  const Outcome outcome = (this->*request.run)(client, payload);
  std::string line = "client " + std::to_string(client) + ": " + request.title + ": ";
  if (!outcome.subject.empty()) line += outcome.subject + ": ";
  if (outcome.refused) line += "refused: ";
  environment_.Log(line + outcome.text);
  provisioner_.Note(outcome);
  reporter_.Note(outcome);
  return outcome.changed;
}

engine::Time Server::Settle() {
  const engine::Time now = environment_.Now();
  network_->Advance(now);
  provisioner_.Apply(now);
  return now;
}

void Server::Run() { network_->Advance(environment_.Now()); }

void Server::EndRound() {
  if (provisioner_.pending()) Settle();
  reporter_.Flush();
}

template <class Message>
Outcome Server::Configure(vorx_pid_t /*client*/, std::string_view payload) {
  const std::optional<Message> message = Parse<Message>(payload);
  return message ? store_.Apply(*message) : Unreadable<Message>(payload);
}

Outcome Server::SendCache(vorx_pid_t client, std::string_view /*payload*/) {
  return Reply(client, *CFM_MGR_S2C_SIG_CACHE_REPLY, ToCacheSync(tree()),
               "sent " + RenderSize(tree()));
}

Outcome Server::SendStatistics(vorx_pid_t client, std::string_view /*payload*/) {
  Settle();
  const client_server::OpReplyAllStats statistics = Statistics(tree(), network_->engine());
  const auto local = static_cast<std::size_t>(statistics.local_mep_stats_size());
  const auto remote = static_cast<std::size_t>(statistics.remote_mep_stats_size());
  return Reply(client, *CFM_MGR_S2C_SIG_STATS_REPLY, statistics,
               "sent " + Plural(local, "endpoint") + ", " + Plural(remote, "remote endpoint"));
}

Outcome Server::ClearStatistics(vorx_pid_t /*client*/, std::string_view payload) {
  const auto scope = Parse<client_server::OpStatsClear>(payload);
  if (!scope) return Unreadable<client_server::OpStatsClear>(payload);
  Settle();
  const std::vector<MepKey> covered = Covered(tree(), *scope);
  for (const MepKey& mep : covered) network_->engine().ClearCounters(mep);
  Outcome outcome = Accepted("cleared, covers " + Plural(covered.size(), "endpoint"));
  outcome.subject = std::string(scope->has_md_name() ? "md " + Quote(scope->md_name()) : "any md") +
                    (scope->has_ma_name() ? " ma " + Quote(scope->ma_name()) : " any ma") +
                    (scope->has_mep_id() ? " mep " + std::to_string(scope->mep_id()) : " any mep");
  return outcome;
}

Outcome Server::PublishStatus(vorx_pid_t /*client*/, std::string_view /*payload*/) {
  Settle();
  const Reporter::Published published = reporter_.PublishAll();
  return Accepted("published " + Plural(published.local, "endpoint") + ", " +
                  Plural(published.remote, "remote endpoint"));
}

Outcome Server::StartLinktrace(vorx_pid_t client, std::string_view payload) {
  return StartTest<client_server::OpLinktraceTriggerMsg, client_server::OpLinktraceTriggerError>(
      client, payload, *CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, *CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR,
      [this](engine::Time now, const engine::LinktraceRequest& request) {
        return network_->engine().StartLinktrace(now, request);
      });
}

Outcome Server::StartLoopback(vorx_pid_t client, std::string_view payload) {
  return StartTest<client_server::OpLoopbackTriggerMsg, client_server::OpLoopbackTriggerError>(
      client, payload, *CFM_MGR_SRV_EVENT_LOOPBACK_STARTED, *CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR,
      [this](engine::Time now, const engine::LoopbackRequest& request) {
        return network_->engine().StartLoopback(now, request);
      });
}

Outcome Server::StartDelayMeasurement(vorx_pid_t client, std::string_view payload) {
  return StartTest<client_server::OpDelayMeasurementTriggerMsg,
                   client_server::OpDelayMeasurementTriggerError>(
      client, payload, *CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_STARTED,
      *CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR,
      [this](engine::Time now, const engine::DelayRequest& request) {
        return network_->engine().StartDelayMeasurement(now, request);
      });
}

template <class Message>
Outcome Server::Reply(vorx_pid_t client, const vorx_sig_descriptor& signal, const Message& message,
                      const std::string& text) {
  const std::string fault = environment_.Send(client, signal, message.SerializeAsString());
  return fault.empty() ? Accepted(text) : Refused("cannot reply: " + fault);
}

template <class Trigger, class Error, class Start>
Outcome Server::StartTest(vorx_pid_t client, std::string_view payload,
                          const vorx_event_descriptor& event, const vorx_sig_descriptor& refusal,
                          const Start& start) {
  const std::optional<Trigger> trigger = Parse<Trigger>(payload);
  if (!trigger) return Unreadable<Trigger>(payload);
  const auto request = FromMessage(*trigger);
  const engine::StartedTest test = start(Settle(), request);
  if (test.error) return RefuseTest<Error>(client, *trigger, *test.error, refusal);
  environment_.Publish(event, Started(request, test).SerializeAsString());
  Outcome outcome = Accepted("started, to " + ShowMac(test.target));
  outcome.subject = SubjectOfTest(KeyOf(*trigger));
  return outcome;
}

template <class Error, class Trigger>
Outcome Server::RefuseTest(vorx_pid_t client, const Trigger& trigger, TriggerError code,
                           const vorx_sig_descriptor& signal) {
  const auto& key = KeyOf(trigger);
  Error error;
  auto& error_key = KeyOf(error);
  error_key.set_md_name(key.md_name());
  error_key.set_ma_name(key.ma_name());
  error_key.set_request_id(key.request_id());
  error_key.set_mep_id(key.mep_id());
  error_key.set_remote_mep_id(key.remote_mep_id());
  error.set_error_code(static_cast<std::uint32_t>(code));
  const std::string reason = std::string(Describe(code)) + " (error " +
                             std::to_string(static_cast<std::uint32_t>(code)) + ")";
  const Outcome reply = Reply(client, signal, error, reason);
  Outcome outcome = Refused(reply.refused ? reason + "; " + reply.text : reason);
  outcome.subject = SubjectOfTest(key);
  return outcome;
}

}  // namespace cfm_mgr
