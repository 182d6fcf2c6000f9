// SPDX-License-Identifier: Apache-2.0
#include "core/json_renderer.h"

#include <utility>

#include "core/json_answers.h"
#include "core/json_values.h"
#include "core/status_words.h"

namespace cfm_agent {
namespace {

void AddCounts(Json& object, const ConfigCounts& counts) {
  object["domains"] = counts.domains;
  object["associations"] = counts.associations;
  object["endpoints"] = counts.endpoints;
  object["probes"] = counts.probes;
  object["sessions"] = counts.sessions;
}

void AddTest(Json& object, const Test& test) {
  object["test"] = test.number;
  if (test.kind != TestKind::Statistics) {
    AddMep(object, test.mep);
    object["remote_mep_id"] = test.remote;
  }
}

const char* NameOf(ConfigurationNews::What what) {
  switch (what) {
    case ConfigurationNews::What::Loaded:
      return "loaded";
    case ConfigurationNews::What::Reloaded:
      return "reloaded";
    case ConfigurationNews::What::Restored:
      return "restored";
    case ConfigurationNews::What::Unchanged:
      return "unchanged";
  }
  return "";
}

// What a result, a start or a reply is called; a delay measurement by its command.
std::string TypeOf(TestKind kind, std::string_view suffix) {
  const std::string name = kind == TestKind::Delay ? "delay" : WordFor(kTestKinds, kind);
  return name + std::string(suffix);
}

// Fills an object for each kind of record, which has its time already, and gives its type.
class JsonOfRecord {
 public:
  explicit JsonOfRecord(Json& object) : object_(object) {}

  std::string operator()(const ConfigurationNews& news) const {
    object_["state"] = NameOf(news.what);
    AddCounts(object_, news.counts);
    return "configuration";
  }

  std::string operator()(const ServerNews& news) const {
    object_["state"] = WordValue(kServerStates, news.state);
    return "server";
  }

  std::string operator()(const LocalStatusNews& news) const {
    AddMep(object_, news.mep);
    object_["status"] = StatusValue(news.status);
    return "local_status";
  }

  std::string operator()(const RemoteStatusNews& news) const {
    AddMep(object_, news.mep);
    object_["remote_mep_id"] = news.remote;
    object_["status"] = StatusValue(news.status);
    return "remote_status";
  }

  std::string operator()(const RemovalNews& news) const {
    AddMep(object_, news.mep);
    object_["remote_mep_id"] = news.remote ? Json(*news.remote) : Json(nullptr);
    return "removed";
  }

  std::string operator()(const SessionNews& news) const {
    const auto& r = news.result;
    object_["probe"] = r.s_word_1;
    object_["session"] = r.s_word_2;
    object_["run"] = r.s_word_3;
    object_["outcome"] = WordValue(kSessionEnds, r.s_byte);
    object_["began_uptime_ms"] = r.s_wide_1;
    object_["ended_uptime_ms"] = r.s_wide_2;
    object_["sent"] = r.s_word_4;
    object_["received"] = r.s_word_5;
    object_["not_counted"] = r.s_word_10;
    object_["lost_share"] = r.s_real_4;
    object_["delay_us"] = r.s_word_5 == 0 ? Json(nullptr)
                                          : Json{{"least", r.s_word_6},
                                                 {"mean", r.s_real_1},
                                                 {"greatest", r.s_word_7},
                                                 {"deviation", r.s_real_2}};
    object_["variation_us"] =
        r.s_word_5 < 2
            ? Json(nullptr)
            : Json{{"least", r.s_word_8}, {"mean", r.s_real_3}, {"greatest", r.s_word_9}};
    return "session_ended";
  }

  std::string operator()(const WarningNews& news) const {
    object_["message"] = TextValue(news.text);
    return "warning";
  }

  std::string operator()(const InterfaceNews& news) const {
    object_["interface"] = TextValue(news.name);
    return "interface_appeared";
  }

  std::string operator()(const StopNews& /*news*/) const { return "stopped"; }

  std::string operator()(const TestStarted& started) const {
    AddTest(object_, started.test);
    object_["target"] = started.target.to_string();
    if (started.test.kind == TestKind::Linktrace) {
      object_["started_value"] = started.value ? Json(*started.value) : Json(nullptr);
    }
    return TypeOf(started.test.kind, "_started");
  }

  std::string operator()(const TestReply& reply) const {
    AddTest(object_, reply.test);
    if (reply.hop) {
      object_["reply"] = HopValue(*reply.hop);
    } else {
      object_["from"] = reply.from.to_string();
    }
    if (reply.transaction) {
      object_["transaction_id"] = *reply.transaction;
    }
    return TypeOf(reply.test.kind, "_reply");
  }

  std::string operator()(const TestResult& result) const {
    const Findings& findings = result.findings;
    const Test& test = result.end.test;
    const bool refused = result.end.reason == EndReason::Refused;
    AddTest(object_, test);
    object_["outcome"] =
        result.stopped ? Json("stopped") : WordValue(kEndReasons, result.end.reason);
    object_["error_code"] = refused ? Json(result.end.error_code) : Json(nullptr);
    object_["elapsed_ms"] = MillisecondsValue(findings.elapsed);
    if (test.kind != TestKind::Statistics) {
      object_["target"] = findings.target ? Json(findings.target->to_string()) : Json(nullptr);
      object_["replies"] = test.replies;
    }
    AddFindings(object_, test.kind, findings);
    return TypeOf(test.kind, "");
  }

  std::string operator()(const ShowAnswer& answer) const {
    AddAnswer(object_, answer);
    return "show";
  }

  std::string operator()(const ClearAnswer& /*answer*/) const { return "clear"; }

  std::string operator()(const HelpAnswer& answer) const {
    object_["commands"] = Json::array();
    for (const CommandUsage& usage : answer.commands) {
      object_["commands"].push_back(
          {{"name", usage.name}, {"arguments", usage.arguments}, {"purpose", usage.purpose}});
    }
    return "help";
  }

  std::string operator()(const CheckAnswer& answer) const {
    object_["file"] = TextValue(answer.file);
    AddCounts(object_, answer.counts);
    object_["warnings"] = answer.warnings;
    return "check";
  }

  std::string operator()(const Complaint& complaint) const {
    object_["command"] = complaint.command.empty() ? Json(nullptr) : Json(complaint.command);
    object_["message"] = TextValue(complaint.text);
    return "error";
  }

 private:
  Json& object_;
};

}  // namespace

std::vector<std::string> JsonRenderer::Render(const Record& record, WallTime now) const {
  Json object = {{"type", nullptr}, {"time", TimeValue(now)}};
  object["type"] = std::visit(JsonOfRecord(object), record);
  return {object.dump(-1, ' ', true)};
}

}  // namespace cfm_agent
