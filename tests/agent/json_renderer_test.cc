// SPDX-License-Identifier: Apache-2.0
// What programs read: valid JSON on a line each, as the schema in docs/ describes it.

#include "core/json_renderer.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "output_schema.h"
#include "sample_records.h"

namespace cfm_agent::testing {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;

constexpr WallTime kTime{std::chrono::milliseconds(1795259049007)};

json Rendered(const Record& record) {
  const auto lines = JsonRenderer().Render(record, kTime);
  EXPECT_EQ(lines.size(), 1U);
  return json::parse(lines.front());
}

std::string RenderedAll(const std::vector<Record>& records) {
  std::string text;
  for (const Record& record : records) {
    for (const std::string& line : JsonRenderer().Render(record, kTime)) {
      text += line + '\n';
    }
  }
  return text;
}

TEST(Schema, DescribesEveryRecordWhateverTheNames) {
  std::vector<Record> records = RecordsNaming("name");
  std::set<std::size_t> kinds;
  for (const Record& record : records) {
    kinds.insert(record.index());
  }
  EXPECT_EQ(kinds.size(), std::variant_size_v<Record>) << "there is no sample of some record";
  for (const std::string& name : HostileNames()) {
    for (Record& record : RecordsNaming(name)) {
      records.push_back(std::move(record));
    }
  }
  EXPECT_EQ(JudgeLines(RenderedAll(records)), "");
}

TEST(Schema, IsUsedWhole) {
  const std::string all = RenderedAll(RecordsNaming("name"));
  const json schema = json::parse(std::ifstream(OUTPUT_SCHEMA));
  for (const json& branch : schema["oneOf"]) {
    const std::string name = branch["$ref"].get<std::string>().substr(8);
    const std::string type = schema["$defs"][name]["properties"]["type"]["const"];
    EXPECT_THAT(all, HasSubstr("{\"type\":\"" + type + "\",\"time\":\"")) << name;
  }
}

TEST(Schema, RefusesWhatIsWrong) {
  json line = Rendered(StopNews{});
  EXPECT_EQ(JudgeLines(line.dump() + '\n'), "");
  json changed = line;
  changed.erase("time");
  EXPECT_THAT(JudgeLines(changed.dump()), HasSubstr("line 1"));
  changed = line;
  changed["more"] = 1;
  EXPECT_THAT(JudgeLines(changed.dump()), HasSubstr("line 1"));
  changed = line;
  changed["type"] = "unheard_of";
  EXPECT_THAT(JudgeLines(changed.dump()), HasSubstr("line 1"));
  EXPECT_THAT(JudgeLines(line.dump() + "\nno JSON\n"), HasSubstr("line 2"));
  EXPECT_THAT(JudgeLines("{\"type\":\"stopped\",\"time\":\"\xFF\"}\n"), HasSubstr("UTF-8"));
}

TEST(JsonRenderer, WritesOneLineOfPrintableAsciiWhateverTheNames) {
  for (const std::string& name : HostileNames()) {
    for (const Record& record : RecordsNaming(name)) {
      const auto lines = JsonRenderer().Render(record, kTime);
      ASSERT_EQ(lines.size(), 1U);
      EXPECT_TRUE(std::all_of(lines[0].begin(), lines[0].end(), [](char c) {
        return c >= ' ' && c <= '~';
      })) << lines[0];
    }
  }
}

TEST(JsonRenderer, GivesBackEveryName) {
  for (const std::string& name : HostileNames()) {
    const json object = Rendered(RemovalNews{{name, "a", 1}, std::nullopt});
    if (object["domain"].is_string()) {
      EXPECT_EQ(object["domain"], name);
    } else {
      EXPECT_EQ(object["domain"], json({{"octets", "ffc328eda080"}}));
    }
  }
}

TEST(JsonRenderer, TellsTimeAndTypeOfEveryLine) {
  EXPECT_EQ(JsonRenderer().Render(StopNews{}, kTime).front(),
            R"({"type":"stopped","time":"2026-11-21T11:04:09.007Z"})");
}

TEST(JsonRenderer, TellsOfAnEndpoint) {
  cfm::local_mep_status status;
  status.intf_status = 7;
  status.port_state = 99;
  status.defect_remote_ccm = true;
  status.highest_defect_priority = 3;
  EXPECT_EQ(Rendered(LocalStatusNews{{"d", "a", 1}, status}),
            json::parse(R"({"type": "local_status", "time": "2026-11-21T11:04:09.007Z",
                "domain": "d", "association": "a", "mep_id": 1,
                "status": {"address": "00:00:00:00:00:00", "port_status": 99,
                           "interface_status": "lower_layer_down", "sends_rdi": false,
                           "block_state": 0, "shutdown_state": 0, "defects": ["missing_ccms"],
                           "highest_defect": "missing_ccms"}})"));
}

TEST(JsonRenderer, KeepsNumbersWhole) {
  cfm::remote_mep_status status;
  status.last_change_uptime = 18446744073709551615U;
  EXPECT_THAT(JsonRenderer().Render(RemoteStatusNews{{"d", "a", 1}, 9, status}, kTime).front(),
              HasSubstr("\"last_change_uptime_ms\":18446744073709551615"));
}

TEST(JsonRenderer, GivesNullForWhatIsNotKnown) {
  cfm_agent::Test test;
  test.kind = TestKind::Delay;
  Findings findings;
  const json timed_out = Rendered(TestResult{{test, EndReason::TimedOut, 0}, findings, false});
  EXPECT_EQ(timed_out["outcome"], "timed_out");
  EXPECT_EQ(timed_out["sent"], nullptr);
  EXPECT_EQ(timed_out["delay_us"], nullptr);
  findings.delay = DelayResult{1, 2, {0.5, 0.5, 0.5}, {}, 0};
  const json complete = Rendered(TestResult{{test, EndReason::Complete, 0}, findings, false});
  EXPECT_EQ(complete["sent"], 2);
  EXPECT_EQ(complete["delay_us"]["least"], 0.5);
  EXPECT_EQ(complete["variation_us"], nullptr);
}

TEST(JsonRenderer, TellsThePathInItsOrder) {
  cfm_agent::Test test;
  test.kind = TestKind::Linktrace;
  Findings findings;
  findings.plan.ttl = 64;
  findings.hops.resize(2);
  findings.hops[0].ttl = 60;
  findings.hops[0].terminal_mep = true;
  findings.hops[1].ttl = 63;
  const json path = Rendered(TestResult{{test, EndReason::Complete, 0}, findings, false});
  EXPECT_EQ(path["reached"], true);
  ASSERT_EQ(path["path"].size(), 3U);
  EXPECT_EQ(path["path"][0]["reply"]["ttl"], 63);
  EXPECT_EQ(path["path"][1], json::parse(R"({"first_hop": 2, "last_hop": 3, "reply": null})"));
  EXPECT_EQ(path["path"][2]["first_hop"], 4);
}

}  // namespace
}  // namespace cfm_agent::testing
