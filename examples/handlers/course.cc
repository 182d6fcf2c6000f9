// SPDX-License-Identifier: Apache-2.0
#include "handlers/course.h"

#include "common/one_endpoint.h"

namespace examples {
namespace {

// Not in the association's MEP list.
constexpr std::uint16_t kNobody = 3;

// One probe with one session: ten delay measurement messages, ten a second, once a minute. The
// units are those of the reference server.
cfm::probe OneProbe() {
  cfm::probe_cfg cfg;
  cfg.id = 1;
  cfg.interval = 60;
  cfg.md = kDomain;
  cfg.ma = kAssociation;
  cfg.lmep = kHere;
  cfg.rmep = kThere;
  cfg.sessions[1] = {10, 100, 64, 7};
  cfm::probe config;
  config.probes[1] = cfg;
  return config;
}

// Fills what the triggers of all kinds have.
template <class Trigger>
Trigger TriggerFor(std::uint32_t request_id, std::uint16_t remote_mep_id) {
  Trigger trigger;
  trigger.request_id = request_id;
  trigger.md_name = kDomain;
  trigger.ma_name = kAssociation;
  trigger.mep_id = kHere;
  trigger.remote_mep_id = remote_mep_id;
  return trigger;
}

}  // namespace

// Every application on the bus gets the events of all tests. Numbers that begin with the process's
// own identifier are nobody else's.
Course::Course(const Handle& handle, cfm::Client& client)
    : handle_(handle),
      client_(client),
      last_request_(static_cast<std::uint32_t>(vorx_self(handle.get())) << 16U) {}

void Course::Begin(const std::string& interface) {
  client_.UpdateConfig(OneEndpoint(interface));
  client_.UpdateConfigProbe(OneProbe());
}

void Course::LocalMepKnown() {
  if (local_known_) return;
  local_known_ = true;
  Trigger(kNobody);
}

void Course::RemoteMepSeen() {
  if (remote_seen_) return;
  remote_seen_ = true;
  linktrace_request_ = Trigger(kThere);
}

std::uint32_t Course::Trigger(std::uint16_t remote_mep_id) {
  auto loopback = TriggerFor<cfm::loopback_trigger>(NewRequest(), remote_mep_id);
  loopback.param_a = 3;  // messages
  client_.LoopbackTrigger(loopback);

  auto delay = TriggerFor<cfm::delay_measurement_trigger>(NewRequest(), remote_mep_id);
  delay.param_a = 3;    // messages
  delay.param_b = 100;  // milliseconds between them
  delay.param_c = 64;   // octets of each
  client_.DelayMeasurementTrigger(delay);

  auto linktrace = TriggerFor<cfm::linktrace_trigger>(NewRequest(), remote_mep_id);
  linktrace.ttl = 64;
  client_.LinktraceTrigger(linktrace);
  return linktrace.request_id;
}

std::uint32_t Course::NewRequest() {
  running_.insert(++last_request_);
  return last_request_;
}

void Course::TestEnded(std::uint32_t request_id) {
  running_.erase(request_id);
  AskForStatisticsWhenAllIsOver();
}

void Course::LinktraceStarted(std::uint32_t transaction_id) {
  linktrace_transaction_ = transaction_id;
}

void Course::LinktraceEnded(std::uint32_t transaction_id) {
  if (transaction_id == linktrace_transaction_) TestEnded(linktrace_request_);
}

void Course::SessionEnded() {
  session_ended_ = true;
  AskForStatisticsWhenAllIsOver();
}

void Course::AskForStatisticsWhenAllIsOver() {
  const bool over = local_known_ && remote_seen_ && session_ended_ && running_.empty();
  if (!over || statistics_asked_) return;
  statistics_asked_ = true;
  client_.RequestStatistics();
}

void Course::StatisticsComplete() {
  if (!statistics_asked_ || taken_back_) return;
  taken_back_ = true;
  // An application that only ends leaves its configuration in the server.
  client_.UpdateConfigProbe({});
  client_.UpdateConfig({});
}

void Course::LocalMepRemoved() {
  if (taken_back_) vorx_stop(handle_.get(), 0);
}

}  // namespace examples
