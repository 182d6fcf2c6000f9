// SPDX-License-Identifier: Apache-2.0
#include "core/json_answers.h"

#include <utility>

#include "core/status_words.h"

namespace cfm_agent {
namespace {

void AddLoopback(Json& object, const Findings& findings) {
  const auto& result = findings.loopback;
  object["expected_replies"] = result ? Json(result->expected) : Json(nullptr);
  object["in_order_replies"] = result ? Json(result->in_order) : Json(nullptr);
  object["out_of_order_replies"] = result ? Json(result->out_of_order) : Json(nullptr);
  object["wrong_payload_replies"] = result ? Json(result->wrong_payload) : Json(nullptr);
}

void AddDelay(Json& object, const Findings& findings) {
  const DelayResult result = findings.delay.value_or(DelayResult{});
  const auto count = [&](std::uint64_t number) {
    return findings.delay ? Json(number) : Json(nullptr);
  };
  object["sent"] = count(result.sent);
  object["received"] = count(result.received);
  object["not_counted"] = count(result.not_counted);
  object["delay_us"] = SpreadValue(result.delay, HasDelay(result));
  object["variation_us"] = SpreadValue(result.variation, HasVariation(result));
}

void AddLinktrace(Json& object, const Findings& findings) {
  const auto path = PathOf(findings.hops, findings.plan.ttl);
  object["reached"] = IsReached(path);
  object["path"] = PathValue(path);
}

void AddStatistics(Json& object, const Findings& findings) {
  Json local = Json::array();
  for (const auto& [mep, stats] : findings.local) {
    Json entry;
    AddMep(entry, mep);
    entry["ccms_sent"] = stats.ccm_tx_total;
    entry["last_number_sent"] = stats.ccm_tx_seq_number;
    entry["out_of_sequence"] = stats.ccm_rx_seq_errors;
    local.push_back(std::move(entry));
  }
  Json remote = Json::array();
  for (const auto& [mep, id, stats] : findings.remote) {
    Json entry;
    AddMep(entry, mep);
    entry["remote_mep_id"] = id;
    entry["last_number_received"] = stats.last_ccm_seq_number;
    remote.push_back(std::move(entry));
  }
  object["local_meps"] = std::move(local);
  object["remote_meps"] = std::move(remote);
}

Json RemoteValue(const ShownRemote& remote) {
  return {{"mep_id", remote.mep_id},
          {"status", remote.status ? StatusValue(*remote.status) : Json(nullptr)},
          {"gap", WordValue(kGaps, remote.gap)}};
}

Json EndpointValue(const ShownEndpoint& endpoint) {
  Json value = {{"mep_id", endpoint.mep_id},
                {"port", TextValue(endpoint.port.name)},
                {"port_present", endpoint.port.present},
                {"direction", WordValue(kDirections, endpoint.direction)},
                {"active", endpoint.active},
                {"ccm_enabled", endpoint.ccm_enabled},
                {"status", endpoint.status ? StatusValue(*endpoint.status) : Json(nullptr)},
                {"remote_meps_ok", endpoint.remotes_ok},
                {"remote_meps_expected", endpoint.remotes_expected},
                {"gap", WordValue(kGaps, endpoint.gap)}};
  if (endpoint.remotes) {
    Json remotes = Json::array();
    for (const ShownRemote& remote : *endpoint.remotes) {
      remotes.push_back(RemoteValue(remote));
    }
    value["remote_meps"] = std::move(remotes);
  }
  return value;
}

Json DomainValue(const ShownDomain& domain) {
  Json associations = Json::array();
  for (const ShownAssociation& association : domain.associations) {
    Json endpoints = Json::array();
    for (const ShownEndpoint& endpoint : association.endpoints) {
      endpoints.push_back(EndpointValue(endpoint));
    }
    associations.push_back({{"name", TextValue(association.name)},
                            {"ccm_interval", WordValue(kCcmIntervals, association.ccm_interval)},
                            {"endpoints", std::move(endpoints)}});
  }
  return {{"name", TextValue(domain.name)},
          {"level", domain.level},
          {"associations", std::move(associations)}};
}

}  // namespace

void AddFindings(Json& object, TestKind kind, const Findings& findings) {
  switch (kind) {
    case TestKind::Linktrace:
      return AddLinktrace(object, findings);
    case TestKind::Loopback:
      return AddLoopback(object, findings);
    case TestKind::Delay:
      return AddDelay(object, findings);
    case TestKind::Statistics:
    case TestKind::Refresh:
      return AddStatistics(object, findings);
  }
}

void AddAnswer(Json& object, const ShowAnswer& answer) {
  object["found"] = answer.found;
  object["server"] = WordValue(kServerStates, answer.server);
  object["domains"] = Json::array();
  for (const ShownDomain& domain : answer.domains) {
    object["domains"].push_back(DomainValue(domain));
  }
  object["unconfigured"] = Json::array();
  for (const ShownStranger& stranger : answer.unconfigured) {
    Json entry;
    AddMep(entry, stranger.mep);
    entry["status"] = StatusValue(stranger.status);
    object["unconfigured"].push_back(std::move(entry));
  }
}

}  // namespace cfm_agent
