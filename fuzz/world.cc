// SPDX-License-Identifier: Apache-2.0
#include "world.h"

#include <cfm/identifiers.h>

#include "configuration_edits.h"
#include "descriptors.h"
#include "held_configuration.h"
#include "require.h"

namespace cfm_fuzz {
namespace {

template <typename Message>
Message Parse(const std::string& payload) {
  Message message;
  Require(message.ParseFromString(payload), "requests are whole messages");
  return message;
}

bool IsConfiguration(const vorx_sig_descriptor* signal) {
  return signal->number <= CFM_MGR_C2S_SIG_MEP_DELETE->number ||
         signal->number >= CFM_MGR_C2S_SIG_DM_PROBE_CREATE->number;
}

}  // namespace

World::World() {
  host_.on_send = [this](const vorx_sig_descriptor* signal, vorx_pid_t destination,
                         const std::string& payload) { TakeRequest(signal, destination, payload); };
  RestartApplication();
}

// A server refuses what has no parent. The model takes it, and complains.
bool World::HasParent(const std::string& signal, const std::string& payload) const {
  if (signal == "MA_CREATE") {
    return server_.mds.count(
               Parse<client_server::OpCreateMaintenanceAssociation>(payload).md_name()) != 0;
  }
  if (signal == "MEP_CREATE") {
    const auto message = Parse<client_server::OpCreateMaintenanceEndpoint>(payload);
    return server_.mas.count({message.md_name(), message.ma_name()}) != 0;
  }
  if (signal == "DM_SESSION_CREATE") {
    return server_.probes.count(
               Parse<client_server::OpCreateDelayMeasurementSession>(payload).probe_id()) != 0;
  }
  return true;
}

void World::TakeRequest(const vorx_sig_descriptor* signal, vorx_pid_t destination,
                        const std::string& payload) {
  Require(destination == pid_, "requests go to the process that was reported last");
  ++requests_;
  last_request_ = signal;
  if (pid_ == 0 || !IsConfiguration(signal)) {
    return;
  }
  const std::string name = cfm_test::NameOf(signal);
  if (HasParent(name, payload)) {
    server_.Take(name, payload);
  } else {
    server_.complaints.push_back(name + ": has no parent");
  }
}

void World::ExpectHierarchy() {
  hierarchy_.applied_is_consistent = hierarchy_.wanted_is_consistent;
  if (!hierarchy_.server_follows) {
    return;
  }
  for (const std::string& complaint : server_.complaints) {
    Require(complaint.rfind("DM_", 0) == 0, complaint);
  }
  Require(Holds(server_, wanted_hierarchy_), "the server holds the hierarchy handed in last");
}

void World::ExpectProbes() {
  if (!probes_.server_follows) {
    return;
  }
  for (const std::string& complaint : server_.complaints) {
    Require(complaint.rfind("DM_", 0) != 0, complaint);
  }
  Require(Holds(server_, wanted_probes_), "the server holds the probes handed in last");
}

void World::HandIn(const cfm::hierarchy& config) {
  wanted_hierarchy_ = config;
  hierarchy_.wanted_is_consistent = IsConsistent(config);
  server_.complaints.clear();
  const std::size_t requests = requests_;
  client_->UpdateConfig(config);
  if (!InStep()) {
    Require(requests == requests_, "a hierarchy waits until client and server are in step");
    return;
  }
  hierarchy_.server_follows = hierarchy_.server_follows && hierarchy_.applied_is_consistent &&
                              hierarchy_.wanted_is_consistent;
  ExpectHierarchy();
}

void World::HandIn(const cfm::probe& config) {
  wanted_probes_ = config;
  server_.complaints.clear();
  const std::size_t requests = requests_;
  client_->UpdateConfigProbe(config);
  if (!InStep()) {
    Require(requests == requests_, "probes wait until client and server are in step");
    return;
  }
  ExpectProbes();
}

void World::FindServer() {
  pid_ = ++last_pid_;
  const std::size_t requests = requests_;
  host_.ServerFound(pid_);
  Require(requests_ > requests, "a server that was found is asked for its cache");
}

void World::LoseServer() {
  pid_ = 0;
  in_step_ = false;
  const std::size_t requests = requests_;
  host_.ServerLost();
  Require(requests_ == requests, "nothing is sent to a server that is lost");
}

void World::ClearServer() {
  server_ = {};
  hierarchy_.server_follows = false;
  probes_.server_follows = false;
}

void World::ReplyWith(const std::string& cache, bool is_true) {
  const bool is_told = is_true && pid_ != 0;
  const bool gets_old_one_again = server_.mds.empty();
  server_.complaints.clear();
  host_.Deliver(Callbacks().front(), cache);
  in_step_ = true;
  Require(last_request_ == CFM_MGR_C2S_SIG_STATUS_GET_ALL,
          "a cache reply ends with a request for all status");
  hierarchy_.server_follows = is_told && hierarchy_.wanted_is_consistent &&
                              (!gets_old_one_again || hierarchy_.applied_is_consistent);
  ExpectHierarchy();
  probes_.server_follows = is_told;
  ExpectProbes();
}

void World::Report(const Callback& callback, std::string_view payload) {
  if (!host_.Deliver(callback, payload)) {
    RestartApplication();
  }
}

void World::RestartApplication() {
  client_.reset();
  pid_ = 0;
  in_step_ = false;
  wanted_hierarchy_ = {};
  wanted_probes_ = {};
  hierarchy_ = {};
  probes_ = {};
  client_.emplace(host_.handle());
  handlers_.Register(*client_);
}

void World::RunTests() {
  client_->RequestStatistics();
  client_->ClearStatistics("D", nullptr, 0);
  client_->LinktraceTrigger({1, "D", "E", 1, 2, 64});
  client_->LoopbackTrigger({2, "D", "E", 1, 2, 3, 4});
  client_->DelayMeasurementTrigger({3, "D", "E", 1, 2, 3, 4, 5, 6});
}

}  // namespace cfm_fuzz
