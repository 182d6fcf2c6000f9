// SPDX-License-Identifier: Apache-2.0
// What people read.

#include "core/text_renderer.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "sample_records.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

const MepKey kMep = {"d", "a", 1};

std::vector<std::string> TextOf(const Record& record, const Style& style = {}) {
  return TextRenderer(style).Render(record, {});
}

Test TestOf(TestKind kind) {
  Test test;
  test.number = 1;
  test.kind = kind;
  test.mep = kMep;
  test.remote = 9;
  return test;
}

std::string WithoutColours(std::string line) {
  for (std::size_t at = line.find("\x1b["); at != std::string::npos; at = line.find("\x1b[")) {
    line.erase(at, line.find('m', at) + 1 - at);
  }
  return line;
}

TEST(TextRenderer, SaysWhatTheConfigurationBecame) {
  using What = ConfigurationNews::What;
  const ConfigCounts counts = {1, 2, 3, 4, 5};
  const std::string summary = "1 domain, 2 associations, 3 endpoints, 4 probes with 5 sessions";
  EXPECT_THAT(TextOf(ConfigurationNews{What::Loaded, counts}),
              ElementsAre("configuration loaded: " + summary));
  EXPECT_THAT(TextOf(ConfigurationNews{What::Reloaded, counts}),
              ElementsAre("configuration reloaded: " + summary));
  EXPECT_THAT(TextOf(ConfigurationNews{What::Restored, counts}),
              ElementsAre("configuration as in force; nothing to do"));
  EXPECT_THAT(TextOf(ConfigurationNews{What::Unchanged, counts}),
              ElementsAre("configuration unchanged"));
  EXPECT_THAT(TextOf(CheckAnswer{"x.yaml", counts}),
              ElementsAre("x.yaml: no mistakes: " + summary));
  EXPECT_THAT(TextOf(CheckAnswer{"x.yaml", counts, 2}),
              ElementsAre("x.yaml: no mistakes, 2 warnings: " + summary));
}

TEST(TextRenderer, SaysWhatCommandAComplaintIsAbout) {
  EXPECT_THAT(TextOf(Complaint{"no such name", "show"}), ElementsAre("show: no such name"));
  EXPECT_THAT(TextOf(Complaint{"stopped", ""}), ElementsAre("stopped"));
  const TextRenderer renderer({true, true});
  EXPECT_EQ(renderer.StreamOf(Complaint{}), Stream::Error);
  EXPECT_EQ(renderer.StreamOf(WarningNews{}), Stream::Error);
  EXPECT_EQ(renderer.StreamOf(StopNews{}), Stream::Output);
}

TEST(TextRenderer, LeavesRepliesToTheResult) {
  EXPECT_TRUE(TextOf(TestReply{TestOf(TestKind::Loopback), {}, 5, std::nullopt}).empty());
}

TEST(TextRenderer, DrawsALinktraceHopByHop) {
  Findings findings;
  findings.plan.ttl = 64;
  findings.hops.resize(2);
  Hop& last = findings.hops[0];
  last.from = {{{2, 0, 0, 0, 0, 4}}};
  last.ttl = 60;
  last.relay_action = 1;
  last.terminal_mep = true;
  last.ingress = cfm::LtrReplyPort{1, last.from, true, 5, "we\nst"};
  Hop& first = findings.hops[1];
  first.from = {{{2, 0, 0, 0, 0, 1}}};
  first.ttl = 63;
  first.relay_action = 2;
  first.forwarded = true;
  first.ingress = cfm::LtrReplyPort{1, first.from, true, 5, "west"};
  first.egress = cfm::LtrReplyPort{3, {{{2, 0, 0, 0, 0, 9}}}, false, 0, ""};
  auto test = TestOf(TestKind::Linktrace);
  test.replies = 2;
  const TestResult result = {{test, EndReason::Complete, 0}, findings, false};
  EXPECT_THAT(TextOf(result),
              ElementsAre("  * MEP 1",  //
                          "  o hop 1: 02:00:00:00:00:01, relay action FDB, forwarded",
                          "  |   ingress OK at 02:00:00:00:00:01 port \"west\"",
                          "  |   egress blocked at 02:00:00:00:00:09",  //
                          "  : hops 2 to 3: no reply",
                          "  * hop 4: 02:00:00:00:00:04, relay action hit, terminal MEP",
                          "      ingress OK at 02:00:00:00:00:04 port \"we\\x0ast\"",
                          "linktrace 1 from MEP d a 1 to 9: complete, 2 replies"));
  EXPECT_THAT(TextOf(result, {false, true}).at(1), ::testing::StartsWith("  \u25CB hop 1: "));
  EXPECT_THAT(TextOf(result, {false, true}).at(2), ::testing::StartsWith("  \u2502   ingress"));
  EXPECT_THAT(TextOf(result, {true, false}).at(3), HasSubstr("\x1b[31mblocked\x1b[0m at"));
}

TEST(TextRenderer, SaysThatALinktraceDidNotArrive) {
  Findings findings;
  findings.hops.resize(1);
  findings.hops[0].ttl = 63;
  const auto test = TestOf(TestKind::Linktrace);
  EXPECT_THAT(TextOf(TestResult{{test, EndReason::TimedOut, 0}, findings, false}),
              ElementsAre("  * MEP 1", "  o hop 1: 00:00:00:00:00:00, relay action 0",
                          "  : no reply from MEP 9", "linktrace 1 from MEP d a 1 to 9: timed out"));
  EXPECT_THAT(TextOf(TestResult{{test, EndReason::Complete, 0}, Findings(), false}),
              ElementsAre("linktrace 1 from MEP d a 1 to 9: complete, 0 replies"));
}

TEST(TextRenderer, ShowsNoDelayThatWasNotMeasured) {
  Findings findings;
  findings.delay = DelayResult{1, 2, {10462.7164, 10462.7164, 10462.7164}, {}, 0};
  const auto test = TestOf(TestKind::Delay);
  EXPECT_THAT(TextOf(TestResult{{test, EndReason::Complete, 0}, findings, false}),
              ElementsAre("  MICROSECONDS      LEAST       MEAN   GREATEST",
                          "  delay         10462.716  10462.716  10462.716",
                          "  variation             -          -          -",
                          "delay measurement 1 from MEP d a 1 to 9: complete, 2 sent, 1 received, "
                          "1 lost, 0 not counted"));
}

TEST(TextRenderer, SaysWhyATestEndedEarly) {
  const auto test = TestOf(TestKind::Loopback);
  const auto line = [&test](EndReason reason, std::uint32_t code, bool stopped) {
    return TextOf(TestResult{{test, reason, code}, Findings(), stopped}).back();
  };
  const std::string loopback = "loopback 1 from MEP d a 1 to 9: ";
  EXPECT_EQ(line(EndReason::Refused, 4, false),
            loopback + "refused with error code 4 (the address of the remote endpoint is unknown)");
  EXPECT_EQ(line(EndReason::Refused, 70, false), loopback + "refused with error code 70");
  EXPECT_EQ(line(EndReason::EndpointRemoved, 0, false), loopback + "endpoint removed");
  EXPECT_EQ(line(EndReason::ServerLost, 0, true), loopback + "the agent stopped before its end");
}

TEST(TextRenderer, NeverTellsByColourAlone) {
  for (const Record& record : RecordsNaming("name")) {
    const auto plain = TextOf(record);
    auto coloured = TextOf(record, {true, false});
    std::transform(coloured.begin(), coloured.end(), coloured.begin(), WithoutColours);
    EXPECT_EQ(coloured, plain);
  }
}

TEST(TextRenderer, LetsNoNameActOnATerminal) {
  for (const std::string& name : HostileNames()) {
    for (const Record& record : RecordsNaming(name)) {
      for (const std::string& line : TextOf(record, {false, true})) {
        EXPECT_TRUE(std::none_of(line.begin(), line.end(), [](char c) {
          return (c >= 0 && c < ' ') || c == '\x7f';
        })) << line;
        EXPECT_EQ(line.find("\xC2\x9B"), std::string::npos) << line;
        EXPECT_EQ(line.find("\xE2\x80\xAE"), std::string::npos) << line;
      }
    }
  }
}

}  // namespace
}  // namespace cfm_agent::testing
