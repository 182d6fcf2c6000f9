// SPDX-License-Identifier: Apache-2.0
#include "net/simulated/description_reader.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

#include "core/config.h"
#include "net/simulated/domains.h"
#include "net/simulated/simulated_network.h"
#include "pdu/maid.h"
#include "recording_notifications.h"

namespace cfm_mgr::net {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr engine::PortId kLoopback = 1;
constexpr engine::PortId kEth0 = 7;
constexpr std::uint32_t kOk = 4;

DescriptionResult Read(const std::string& text) {
  return ReadDescription(text, [](const std::string& name) -> engine::PortId {
    return name == "lo" ? kLoopback : name == "eth0" ? kEth0 : 0;
  });
}

// All mistakes, as an operator sees them.
std::vector<std::string> MistakesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (const auto& mistake : Read(text).mistakes) {
    lines.push_back(cfm_agent::Describe("n.yaml", mistake));
  }
  return lines;
}

std::string FileText(const std::string& path) {
  std::ifstream file(path);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

// Two bridges that are right, and what follows.
std::string WithBridges(const std::string& more) {
  return "local: a\n"
         "bridges:\n"
         "  - {name: a, ports: [{name: p1, interface: lo}, {name: p2}]}\n"
         "  - {name: b, ports: [{name: p1}, {name: p2}]}\n" +
         more;
}

TEST(DescriptionReader, ReadsBridgesPortsLinksAndCrossConnections) {
  const auto result = Read(
      "local: a\n"
      "bridges:\n"
      "  - name: a\n"
      "    ports:\n"
      "      - {name: p1, interface: eth0, mac: 02:00:5e:00:00:0A, vids: [0, 100]}\n"
      "      - {name: p2, ifindex: 12}\n"
      "      - {name: p3}\n"
      "  - {name: b, ports: [{name: p1}]}\n"
      "links:\n"
      "  - ends: [a.p1, b.p1]\n"
      "    delay: 1.5ms\n"
      "    jitter: 250us\n"
      "    loss: 0.5%\n"
      "    reorder: 100%\n"
      "    reorder-by: 2s\n"
      "    up: false\n"
      "    changes: [{at: 1s, up: true}, {at: 2.25s, up: false}]\n"
      "cross-connections:\n"
      "  - {from: a.p2, to: b.p1, vid: 0, to-vid: 7}\n"
      "  - {from: a.p3, to: b.p1}\n");
  EXPECT_THAT(result.mistakes, IsEmpty());
  ASSERT_TRUE(result.description);
  const auto& [local, bridges, links, crosses] = *result.description;
  EXPECT_EQ(local, "a");
  ASSERT_EQ(bridges.size(), 2U);
  ASSERT_EQ(bridges[0].ports.size(), 3U);
  EXPECT_EQ(bridges[0].ports[0].id, kEth0);
  EXPECT_EQ(bridges[0].ports[0].mac, (engine::Mac{0x02, 0, 0x5e, 0, 0, 0x0a}));
  EXPECT_THAT(bridges[0].ports[0].vids, ElementsAre(0, 100));
  EXPECT_EQ(bridges[0].ports[1].id, 12U);
  EXPECT_NE(bridges[0].ports[2].id, 0U);
  EXPECT_EQ(bridges[0].ports[2].mac, (engine::Mac{0x02, 0, 0, 1, 0, 3}));
  EXPECT_EQ(bridges[1].ports[0].mac, (engine::Mac{0x02, 0, 0, 2, 0, 1}));
  ASSERT_EQ(links.size(), 1U);
  EXPECT_EQ(links[0].ends[1].bridge, "b");
  EXPECT_EQ(links[0].quality.delay, microseconds(1500));
  EXPECT_EQ(links[0].quality.jitter, microseconds(250));
  EXPECT_DOUBLE_EQ(links[0].quality.loss, 0.005);
  EXPECT_DOUBLE_EQ(links[0].quality.reorder, 1);
  EXPECT_EQ(links[0].quality.reorder_by, seconds(2));
  EXPECT_FALSE(links[0].up);
  ASSERT_EQ(links[0].changes.size(), 2U);
  EXPECT_EQ(links[0].changes[1].at, milliseconds(2250));
  EXPECT_FALSE(links[0].changes[1].up);
  ASSERT_EQ(crosses.size(), 2U);
  EXPECT_EQ(crosses[0].from.port, "p2");
  EXPECT_EQ(crosses[0].vid, 0);
  EXPECT_EQ(crosses[0].to_vid, 7);
  EXPECT_EQ(crosses[1].vid, std::nullopt);
}

TEST(DescriptionReader, ReadsTheDomainsOfABridge) {
  const auto result = Read(WithBridges("") +
                           "    # Of bridge c, which follows.\n"
                           "  - name: c\n"
                           "    ports: [{name: p1}, {name: p2}]\n"
                           "    domains:\n"
                           "      - name: d\n"
                           "        level: 5\n"
                           "        mhf-creation: explicit\n"
                           "        associations:\n"
                           "          - name: m\n"
                           "            vids: [30, 20]\n"
                           "            ccm-interval: 10ms\n"
                           "            mep-ids: [9, 3]\n"
                           "            ais: {enabled: true, octet-a: 6, id-set: [20]}\n"
                           "            endpoints:\n"
                           "              - mep-id: 3\n"
                           "                direction: up\n"
                           "                port: p2\n"
                           "                inner-vid: 11\n"
                           "                ccm-priority: 5\n");
  ASSERT_TRUE(result.description) << cfm_agent::Describe("n.yaml", result.mistakes.front());
  const auto& bridge = result.description->bridges[2];
  const Domain& domain = bridge.domains.at("d");
  EXPECT_EQ(domain.settings.level, 5U);
  EXPECT_EQ(domain.settings.mhf_creation, 3);
  const Association& association = domain.associations.at("m");
  EXPECT_THAT(association.settings.vids, ElementsAre(30U, 20U));
  EXPECT_EQ(association.settings.ccm_interval, 2);
  EXPECT_THAT(association.settings.mep_ids, ElementsAre(3U, 9U));
  EXPECT_TRUE(association.settings.ais.enabled);
  EXPECT_EQ(association.settings.ais.octet_a, 6U);
  EXPECT_THAT(association.settings.ais.id_set, ElementsAre(20U));
  const Mep& mep = association.meps.at(3);
  EXPECT_EQ(mep.direction, 2);
  EXPECT_EQ(mep.ifindex, bridge.ports[1].id);
  EXPECT_EQ(mep.inner_vid, 11U);
  EXPECT_EQ(mep.ccm_priority, 5U);
  EXPECT_EQ(mep.fng_alarm_time, 250U);
}

// The names of every format, as the configuration files of the agent write them: those that stand
// on the wire are made of them.
TEST(DescriptionReader, TakesNamesThatMakeAMaidInEveryFormat) {
  const std::vector<std::string> domains = {
      "name: d, name-format: none", "name: d.example, name-format: dns-like",
      "name: '02:00:5e:00:00:01/65535', name-format: mac-and-uint",
      "name: d, name-format: char-string"};
  const std::vector<std::string> associations = {
      "name: '4094', name-format: primary-vid",
      "name: m, name-format: char-string",
      "name: '65535', name-format: uint16",
      "name: '00163e:0000002a', name-format: rfc2685-vpn-id",
      "name: ACMECOLINK, name-format: icc-based",
      "name: NOACMECOLINK1, name-format: icc-and-country-code"};
  for (const std::string& domain : domains) {
    for (const std::string& association : associations) {
      const auto result = Read(WithBridges("  - name: c\n    ports: [{name: p1}]\n    domains:\n") +
                               "      - {" + domain + ", level: 4, associations: [{" + association +
                               ", vids: [7], mep-ids: [1, 2]}]}\n");
      ASSERT_TRUE(result.description) << cfm_agent::Describe("n.yaml", result.mistakes.front());
      const auto& [md_name, md] = *result.description->bridges[2].domains.begin();
      const auto& [ma_name, ma] = *md.associations.begin();
      EXPECT_TRUE(pdu::EncodeMaid(md.settings.format, md_name, ma.settings.format, ma_name))
          << domain << ", " << association;
    }
  }
}

struct WrongDescription {
  std::string text;
  std::string mistake;
};

TEST(DescriptionReader, TellsWhereAMistakeIsAndWhatWouldBeRight) {
  const std::vector<WrongDescription> cases = {
      {"", "n.yaml:1:1: describes no network; write local: and bridges:"},
      {"local: a\n", "n.yaml:1:1: bridges: is missing; a network needs it"},
      {"local: c\nbridges:\n  - {name: a, ports: []}\n",
       "n.yaml:1:8: local: \"c\" is no bridge; use a"},
      {"local: a\nbridges:\n  - {name: a b, ports: []}\n",
       "n.yaml:3:12: bridges[0].name: \"a b\" is not a name; use at most 15 letters, digits, - "
       "and _"},
      {WithBridges("links: [{ends: [a.p1]}]\n"),
       "n.yaml:5:16: links[0].ends: has 1 port; use a list of two, such as [metro.trunk, "
       "far.west]"},
      {WithBridges("links: [{ends: [a.p1, bp1]}]\n"),
       "n.yaml:5:23: links[0].ends[1]: \"bp1\" does not name a port; use the names of its bridge "
       "and of itself, such as metro.trunk"},
      {WithBridges("links: [{ends: [a.p1, c.p1]}]\n"),
       "n.yaml:5:23: links[0].ends[1]: there is no bridge \"c\"; use a or b"},
      {WithBridges("links: [{ends: [a.p1, b.p3]}]\n"),
       "n.yaml:5:23: links[0].ends[1]: bridge \"b\" has no port \"p3\"; use p1 or p2"},
      {WithBridges("links: [{ends: [a.p1, b.p1]}, {ends: [a.p2, b.p2]}]\n"),
       "n.yaml:5:31: links[1]: closes a loop, in which frames would go round for ever; leave it "
       "out"},
      {WithBridges("links: [{ends: [a.p1, b.p1], delay: 5}]\n"),
       "n.yaml:5:37: links[0].delay: 5 is not a time of at most a day; use a number with us, ms "
       "or s, such as 250us, 1.5ms or 30s"},
      {WithBridges("links: [{ends: [a.p1, b.p1], jitter: 25h}]\n"),
       "n.yaml:5:38: links[0].jitter: \"25h\" is not a time of at most a day; use a number with "
       "us, ms or s, such as 250us, 1.5ms or 30s"},
      {WithBridges("links: [{ends: [a.p1, b.p1], delay: 999999999s}]\n"),
       "n.yaml:5:37: links[0].delay: \"999999999s\" is not a time of at most a day; use a number "
       "with us, ms or s, such as 250us, 1.5ms or 30s"},
      {WithBridges("links: [{ends: [a.p1, b.p1], loss: 100.1%}]\n"),
       "n.yaml:5:36: links[0].loss: \"100.1%\" is not a share of frames; use a number from 0% to "
       "100%, such as 0.5%"},
      {WithBridges("links: [{ends: [a.p1, b.p1], losses: 1%}]\n"),
       "n.yaml:5:30: links[0]: \"losses\" is not a key of a link; did you mean loss?"},
      {WithBridges("links: [{ends: [a.p1, b.p1], changes: [{at: 2s, up: true}, {at: 2s, up: "
                   "false}]}]\n"),
       "n.yaml:5:60: links[0].changes[1]: is not later than the change before it; write them in "
       "the order of time"},
      {WithBridges("cross-connections: [{from: a.p1, to: b.p1, vid: 4095}]\n"),
       "n.yaml:5:49: cross-connections[0].vid: 4095 is out of range; use a whole number from 0 to "
       "4094"},
      {"local: a\nbridges: [{name: a, ports: [{name: p, interface: eth9}]}]\n",
       "n.yaml:2:50: bridges[0].ports[0].interface: \"eth9\" is no interface of this machine; use "
       "one, such as lo, or leave it out for a port that clients cannot use"},
      {"local: a\nbridges: [{name: a, ports: []}, {name: b, ports: [{name: p, interface: lo}]}]\n",
       "n.yaml:2:72: bridges[1].ports[0].interface: only ports of the local bridge stand for "
       "interfaces; leave it out"},
      {"local: a\nbridges: [{name: a, ports: [{name: p, ifindex: 1}, {name: q, interface: lo}]}]\n",
       "n.yaml:2:52: bridges[0].ports[1]: has the interface of port \"p\"; use each interface "
       "once"},
      {"local: a\nbridges: [{name: a, ports: [{name: p, mac: 01:00:5e:00:00:01}]}]\n",
       "n.yaml:2:44: bridges[0].ports[0].mac: \"01:00:5e:00:00:01\" is not the address of a port; "
       "use six octets, the first one even, such as 02:00:5e:00:00:01"},
      {"local: a\nbridges: [{name: a, ports: [{name: p}, {name: p}]}]\n",
       "n.yaml:2:47: bridges[0].ports[1].name: \"p\" is used twice, first on line 2; use each one "
       "once"},
      {"local: a\nbridges: [{name: a, ports: [], domains: []}]\n",
       "n.yaml:2:41: bridges[0].domains: the clients of cfm-mgr configure the local bridge; leave "
       "it out"},
      {WithBridges("  - name: c\n    ports: [{name: p1}]\n    domains:\n      - name: d\n"
                   "        level: 1\n        associations:\n          - name: m\n"
                   "            mep-ids: [1]\n            endpoints:\n"
                   "              - {mep-id: 1, direction: up, port: p2}\n"),
       "n.yaml:14:50: bridges[2].domains[0].associations[0].endpoints[0].port: \"p2\" is no port "
       "of bridge \"c\"; use p1"},
  };
  for (const auto& [text, mistake] : cases) {
    EXPECT_THAT(MistakesOf(text), ElementsAre(mistake)) << text;
  }
}

TEST(DescriptionReader, TellsThatAPortHasTwoLinks) {
  EXPECT_THAT(
      MistakesOf("local: a\nbridges:\n  - {name: a, ports: [{name: p}]}\n"
                 "  - {name: b, ports: [{name: p}]}\n  - {name: c, ports: [{name: p}]}\n"
                 "links:\n  - {ends: [a.p, b.p]}\n  - {ends: [a.p, c.p]}\n"),
      ElementsAre("n.yaml:8:5: links[1]: port \"a.p\" has a link already, on line 7; use another "
                  "port"));
}

TEST(DescriptionReader, GivesEveryMistakeInTheOrderOfTheFile) {
  const auto mistakes = MistakesOf(
      "local: x\nbridges:\n  - {name: a, ports: [{name: p, mac: 1}]}\nlinks: [{ends: [a.p]}]\n");
  EXPECT_THAT(mistakes, ElementsAre(StartsWith("n.yaml:1:8: local:"),
                                    StartsWith("n.yaml:3:38: bridges[0].ports[0].mac:"),
                                    StartsWith("n.yaml:4:16: links[0].ends:")));
}

TEST(DescriptionReader, NamesTheFileThatCannotBeRead) {
  try {
    LoadDescription("/nowhere/network.yaml");
    FAIL() << "it was read";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), HasSubstr("/nowhere/network.yaml: cannot be read: No such file"));
  }
  EXPECT_THROW(LoadDescription("/"), std::runtime_error);
}

// A network from the examples, with a configuration of an agent whose ports are all on lo.
class ExampleNetwork : public testing::Test {
 protected:
  void Run(const std::string& network, const std::string& configuration, engine::Time time) {
    network_.emplace(LoadDescription(std::string(CFM_SOURCE_DIR) + "/mgr/examples/" + network),
                     notifications_, 1);
    const auto config = cfm_agent::ReadConfig(
        FileText(std::string(CFM_SOURCE_DIR) + "/agent/examples/" + configuration),
        [](const std::string& /*name*/) { return kLoopback; });
    ASSERT_TRUE(config.config);
    for (const auto& [md_name, domain] : ToDomains(config.config->hierarchy)) {
      for (const auto& [ma_name, association] : domain.associations) {
        network_->engine().SetAssociation({}, {md_name, ma_name}, domain.settings, association);
      }
    }
    network_->Advance(time);
  }

  std::uint32_t RemoteState(const MepKey& mep, std::uint32_t remote) {
    const auto status = network_->engine().RemoteStatus(mep, remote);
    return status ? status->state : 0;
  }

  RecordingNotifications notifications_;
  std::optional<SimulatedNetwork> network_;
};

TEST_F(ExampleNetwork, TheLineAnswersTheSmallestConfiguration) {
  ASSERT_NO_FATAL_FAILURE(Run("line.yaml", "minimal.yaml", seconds(5)));
  const MepKey mep{{"example", "line-1"}, 1};
  EXPECT_EQ(RemoteState(mep, 2), kOk);
  EXPECT_EQ(network_->engine().LocalStatus(mep)->highest_defect_priority, 0U);
}

TEST_F(ExampleNetwork, TheNetworkHasTheRemoteEndpointsOfTheDemo) {
  ASSERT_NO_FATAL_FAILURE(Run("network.yaml", "demo.yaml", seconds(30)));
  for (const char* ring : {"ring-north", "ring-south", "ring-east", "ring-west"}) {
    for (const std::uint32_t remote : {11U, 12U, 13U, 14U}) {
      EXPECT_EQ(RemoteState({{"operator-access", ring}, 1}, remote), kOk) << ring << " " << remote;
    }
  }
  for (const char* service : {"eline-1001", "eline-1002", "elan-1100", "etree-1200"}) {
    for (const std::uint32_t remote : {201U, 202U}) {
      EXPECT_EQ(RemoteState({{"provider.example.net", service}, 101}, remote), kOk)
          << service << " " << remote;
    }
  }
  for (const char* customer :
       {"bakery-hq-branch", "hospital-campus", "library-city", "school-backbone"}) {
    EXPECT_EQ(RemoteState({{"customers", customer}, 1}, 4), kOk) << customer;
    EXPECT_EQ(RemoteState({{"customers", customer}, 3}, 5), kOk) << customer;
  }
}

}  // namespace
}  // namespace cfm_mgr::net
