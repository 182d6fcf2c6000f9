// SPDX-License-Identifier: Apache-2.0
#include "core/json_values.h"

#include <array>
#include <ctime>
#include <string>

#include "core/status_words.h"
#include "core/text.h"

namespace cfm_agent {
namespace {

constexpr std::string_view kDigits = "0123456789abcdef";

std::string Octets(std::string_view text) {
  std::string digits;
  for (const char c : text) {
    const auto octet = static_cast<std::uint8_t>(c);
    digits += kDigits[octet >> 4U];
    digits += kDigits[octet & 0x0FU];
  }
  return digits;
}

Json PortValue(const std::optional<cfm::LtrReplyPort>& port) {
  if (!port) {
    return nullptr;
  }
  return {{"action", WordValue(kPortActions, port->action)},
          {"address", port->mac.to_string()},
          {"port_id", port->port_id_present ? TextValue(port->port_id) : Json(nullptr)},
          {"port_id_subtype", port->port_id_present ? Json(port->port_id_subtype) : Json(nullptr)}};
}

}  // namespace

Json TextValue(std::string_view text) {
  if (IsUtf8(text)) {
    return text;
  }
  return {{"octets", Octets(text)}};
}

Json WordValue(std::string_view word) {
  std::string identifier;
  for (const char c : word) {
    const bool upper = c >= 'A' && c <= 'Z';
    identifier += upper ? static_cast<char>(c - 'A' + 'a') : c == ' ' || c == '-' ? '_' : c;
  }
  return identifier;
}

Json WordValue(const WordList& list, std::int64_t number) {
  const std::string word = WordFor(list, number);
  return word == std::to_string(number) ? Json(number) : WordValue(word);
}

Json TimeValue(std::chrono::system_clock::time_point time) {
  using std::chrono::milliseconds;
  const auto since = std::chrono::floor<milliseconds>(time.time_since_epoch()).count();
  const std::time_t seconds =
      std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(time));
  std::tm utc = {};
  gmtime_r(&seconds, &utc);
  std::array<char, 32> text{};
  static_cast<void>(std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S.", &utc));
  const std::string fraction = std::to_string(1000 + since % 1000);
  return text.data() + fraction.substr(1) + 'Z';
}

Json MillisecondsValue(Duration duration) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(duration).count();
}

void AddMep(Json& object, const MepKey& mep) {
  object["domain"] = TextValue(mep.md);
  object["association"] = TextValue(mep.ma);
  object["mep_id"] = mep.id;
}

Json StatusValue(const cfm::local_mep_status& status) {
  Json defects = Json::array();
  for (const std::string_view defect : DefectsOf(status)) {
    defects.push_back(WordValue(defect));
  }
  return {{"address", status.mac.to_string()},
          {"port_status", WordValue(kPortStatuses, status.port_state)},
          {"interface_status", WordValue(kInterfaceStatuses, status.intf_status)},
          {"sends_rdi", status.rdi},
          {"block_state", status.block_state},
          {"shutdown_state", status.shutdown_state},
          {"defects", std::move(defects)},
          {"highest_defect", WordValue(kDefectPriorities, status.highest_defect_priority)}};
}

Json StatusValue(const cfm::remote_mep_status& status) {
  return {{"state", WordValue(kRemoteMepStates, status.fsm_state)},
          {"address", status.mac.to_string()},
          {"port_status", WordValue(kPortStatuses, status.port_state)},
          {"interface_status", WordValue(kInterfaceStatuses, status.intf_status)},
          {"sends_rdi", status.rdi},
          {"sender_id", TextValue(status.sender_id)},
          {"last_change_uptime_ms", status.last_change_uptime}};
}

Json HopValue(const Hop& hop) {
  return {{"from", hop.from.to_string()},
          {"ttl", hop.ttl},
          {"relay_action", WordValue(kRelayActions, hop.relay_action)},
          {"terminal_mep", hop.terminal_mep},
          {"forwarded", hop.forwarded},
          {"use_fdb_only", hop.use_fdb_only},
          {"vlan", hop.vlan},
          {"priority", hop.priority},
          {"last_address", hop.last_mac.to_string()},
          {"next_address", hop.next_mac.to_string()},
          {"ingress", PortValue(hop.ingress)},
          {"egress", PortValue(hop.egress)}};
}

Json PathValue(const std::vector<PathStep>& path) {
  Json steps = Json::array();
  for (const PathStep& step : path) {
    steps.push_back({{"first_hop", step.first},
                     {"last_hop", step.last},
                     {"reply", step.hop ? HopValue(*step.hop) : Json(nullptr)}});
  }
  return steps;
}

Json SpreadValue(const DelayResult::Spread& spread, bool known) {
  if (!known) {
    return nullptr;
  }
  return {{"least", spread.least}, {"mean", spread.mean}, {"greatest", spread.greatest}};
}

}  // namespace cfm_agent
