// SPDX-License-Identifier: Apache-2.0
// What an agent's handlers receive when the server runs the protocol: in a simulated line of four
// bridges, from endpoint 1 on the first to endpoint 2 on the last, with intermediate points
// between. Nothing gets lost in it, and one way takes 9 ms at least.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "system.h"

namespace cfm_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

constexpr double kRoundTrip = 18000;  // in microseconds

constexpr const char* kNetwork = R"(
local: b1
bridges:
  - name: b1
    ports: [{name: east, interface: lo, mac: 02:00:5e:00:00:11}]
  - name: b2
    ports: [{name: west, mac: 02:00:5e:00:00:21}, {name: east, mac: 02:00:5e:00:00:22}]
    domains: &middle
      - name: example
        level: 4
        mhf-creation: default
        associations:
          - {name: line-1, vids: [100], mep-ids: [1, 2]}
  - name: b3
    ports: [{name: west, mac: 02:00:5e:00:00:31}, {name: east, mac: 02:00:5e:00:00:32}]
    domains: *middle
  - name: b4
    ports: [{name: west, mac: 02:00:5e:00:00:41}]
    domains:
      - name: example
        level: 4
        associations:
          - name: line-1
            vids: [100]
            ccm-interval: 100ms
            mep-ids: [1, 2]
            endpoints:
              - {mep-id: 2, direction: down, port: west, admin-state: true, ccm-enabled: true}
links:
  - {ends: [b1.east, b2.west], delay: 2ms}
  - {ends: [b2.east, b3.west], delay: 5ms, jitter: 200us}
  - {ends: [b3.east, b4.west], delay: 2ms)";

constexpr const char* kConfig = R"(
domains:
  - name: example
    level: 4
    associations:
      - name: line-1
        vids: [100]
        ccm-interval: 100ms
        mep-ids: [1, 2]
        endpoints:
          - {mep-id: 1, direction: down, port: lo, admin-state: true, ccm-enabled: true}
)";

constexpr const char* kProbe = R"(
probes:
  - id: 7
    interval: 1
    domain: example
    association: line-1
    mep-id: 1
    remote-mep-id: 2
    sessions:
      - {id: 3, count: 4, interval: 20, size: 200, pcp: 5}
)";

const std::string kLocal = "MEP example line-1 1: ";
const std::string kRemote = "MEP example line-1 1 remote 2: ";
const std::string kRemoteOk = kRemote + "02:00:5e:00:00:41, ok, port up, interface up";
const std::string kSessionEnded = "probe 7 session 3 run 1: ";

// The rest of each line behind a text that stands in it.
std::vector<std::string> Behind(const std::string& part, const std::string& text) {
  std::vector<std::string> found;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t at = line.find(part);
    if (at != std::string::npos) found.push_back(line.substr(at + part.size()));
  }
  return found;
}

// The numbers at the beginning of a text, up to the first word that is none.
class ProtocolTest : public testing::Test {
 protected:
  // Waits until endpoint 1 sees endpoint 2. `link`: more about the last link, as its fields.
  void Start(const std::string& config, const std::string& link = "") {
    std::ofstream(system_.File("network.yaml")) << kNetwork << link << "}\n";
    system_.WriteConfig(config);
    system_.StartServer({"--network", system_.File("network.yaml")});
    system_.StartAgent();
    ASSERT_TRUE(AgentSays(kRemoteOk)) << system_.AgentOutput() << system_.ServerLog();
  }

  // Whether the agent says it sooner or later, in what it has not said before at `from`.
  bool AgentSays(const std::string& text, std::size_t from = 0) const {
    return Eventually([&] { return system_.AgentOutput().find(text, from) != std::string::npos; });
  }

  // What another agent says that runs one command to its end.
  std::string Execute(const std::string& command, const std::string& format = "text") {
    ChildProcess agent(
        {"/usr/bin/env", "LC_ALL=C", CFM_AGENT_PROGRAM, "--bus", system_.bus().address(),
         "--config", system_.File("config.yaml"), "--output", format, "--execute", command},
        system_.File("command.out"), system_.File("command.err"));
    EXPECT_EQ(agent.Wait(), 0) << ReadFile(system_.File("command.err"));
    return ReadFile(system_.File("command.out"));
  }

  System system_;
};

TEST_F(ProtocolTest, TellsOfALinkThatIsCutAndMended) {
  Start(kConfig, ", changes: [{at: 5s, up: false}, {at: 7s, up: true}]");
  ASSERT_TRUE(AgentSays(kRemote + "02:00:5e:00:00:41, failed")) << system_.AgentOutput();
  ASSERT_TRUE(AgentSays("defects: missing CCMs (highest: missing CCMs)"));
  const std::size_t cut = system_.AgentOutput().size();
  ASSERT_TRUE(AgentSays(kRemoteOk, cut)) << system_.AgentOutput();
  EXPECT_TRUE(Eventually([&] {
    const auto statuses = Behind(kLocal, system_.AgentOutput());
    return !statuses.empty() && statuses.back().find("no defect") != std::string::npos;
  })) << system_.AgentOutput();
}

TEST_F(ProtocolTest, ALoopbackIsAnsweredInOrder) {
  Start(kConfig);
  const std::string said = Execute("loopback example line-1 1 2 param-a=3 param-b=500");
  EXPECT_THAT(Behind("to 2: ", said),
              ElementsAre("started towards 02:00:5e:00:00:41",
                          "complete, 3 of 3 expected replies in order, 0 out of order, "
                          "0 with a wrong payload"));
}

// The order in which replies come in is random, because responders wait for a random time.
TEST_F(ProtocolTest, ALinktraceTellsOfEveryHopInTheOrderOfThePath) {
  Start(kConfig);
  const std::string said = Execute("linktrace example line-1 1 2");
  EXPECT_EQ(
      said,
      "linktrace 1 from MEP example line-1 1 to 2: started towards 02:00:5e:00:00:41, value " +
          Behind("value ", said).at(0) +
          "\n"
          "  * MEP 1\n"
          "  o hop 1: 02:00:5e:00:00:21, relay action FDB, forwarded\n"
          "  |   ingress OK at 02:00:5e:00:00:21 port \"west\"\n"
          "  |   egress OK at 02:00:5e:00:00:22 port \"east\"\n"
          "  o hop 2: 02:00:5e:00:00:31, relay action FDB, forwarded\n"
          "  |   ingress OK at 02:00:5e:00:00:31 port \"west\"\n"
          "  |   egress OK at 02:00:5e:00:00:32 port \"east\"\n"
          "  * hop 3: 02:00:5e:00:00:41, relay action hit, terminal MEP\n"
          "      ingress OK at 02:00:5e:00:00:41 port \"west\"\n"
          "linktrace 1 from MEP example line-1 1 to 2: complete, 3 replies\n");
}

TEST_F(ProtocolTest, ADelayMeasurementTellsTheDelayOfTheWay) {
  Start(kConfig);
  const std::string said = Execute("delay example line-1 1 2 param-a=4 param-b=20", "json");
  EXPECT_THAT(Behind("{\"type\":\"delay_reply\",", said), SizeIs(4));
  const auto ends = Behind("{\"type\":\"delay\",", said);
  ASSERT_THAT(ends, SizeIs(1)) << said;
  const auto end = nlohmann::json::parse('{' + ends.front());
  EXPECT_EQ(end["sent"], 4);
  EXPECT_EQ(end["received"], 4);
  for (const char* name : {"delay_us", "variation_us"}) {
    const auto& spread = end[name];
    EXPECT_LE(spread["least"], spread["mean"]) << spread;
    EXPECT_LE(spread["mean"], spread["greatest"]) << spread;
  }
  EXPECT_GE(end["delay_us"]["least"], kRoundTrip);
}

TEST_F(ProtocolTest, ASessionOfAProbeEndsWithItsFindings) {
  Start(std::string(kConfig) + kProbe);
  ASSERT_TRUE(AgentSays(kSessionEnded)) << system_.AgentOutput();
  const std::string end = Behind(kSessionEnded, system_.AgentOutput()).front();
  EXPECT_THAT(end,
              testing::StartsWith("complete, 4 sent, 4 received, 0.0 % lost, 0 not counted, "));
  ASSERT_THAT(Behind("delay ", end), SizeIs(1)) << end;
  EXPECT_GE(std::stod(Behind("delay ", end).front()), kRoundTrip) << end;
}

}  // namespace
}  // namespace cfm_test
