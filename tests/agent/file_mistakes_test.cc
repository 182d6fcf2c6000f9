// SPDX-License-Identifier: Apache-2.0
// What can be wrong with a configuration file as a whole, to the letter.

#include <gmock/gmock.h>

#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;

TEST(FileMistakes, AnEmptyFileIsNotADeliberatelyEmptyConfiguration) {
  constexpr auto kNoDomains =
      "f:1:1: no domains; write domains: and a list, or domains: [] for a configuration without "
      "any";
  EXPECT_THAT(MistakesIn(""), ElementsAre(kNoDomains));
  EXPECT_THAT(MistakesIn("# nothing but a comment\n\n"), ElementsAre(kNoDomains));
  EXPECT_THAT(MistakesIn("---\n"), ElementsAre(kNoDomains));
  EXPECT_THAT(MistakesIn("domains:\n"),
              ElementsAre("f:1:1: domains: nothing is not a list; use a list of domains, [] for "
                          "none"));
  EXPECT_THAT(MistakesIn("probes: []\n"),
              ElementsAre("f:1:1: domains: is missing; a configuration needs it"));
}

TEST(FileMistakes, AFileThatIsNoMap) {
  EXPECT_THAT(MistakesIn("- a\n"),
              ElementsAre("f:1:1: a list is not a configuration; use a map with the key domains"));
}

TEST(FileMistakes, TwoDocuments) {
  EXPECT_THAT(MistakesIn("domains: []\n---\ndomains: []\n"),
              ElementsAre("f:2:1: a second document begins here; write one document"));
}

TEST(FileMistakes, DomainsOfOneName) {
  EXPECT_THAT(MistakesIn("domains:\n- {name: d, level: 1}\n- {name: d, level: 2}\n"),
              ElementsAre("f:3:10: domains[1].name: \"d\" is used twice, first on line 2; use each "
                          "one once"));
}

TEST(FileMistakes, AssociationsOfOneNameInADomain) {
  EXPECT_THAT(MistakesIn("domains:\n"
                         "- {name: d, level: 1, associations: [{name: a}]}\n"
                         "- name: e\n"
                         "  level: 1\n"
                         "  associations:\n"
                         "  - {name: a}\n"
                         "  - {name: a}\n"),
              ElementsAre("f:7:12: domains[1].associations[1].name: \"a\" is used twice, first on "
                          "line 6; use each one once"));
}

TEST(FileMistakes, AHostWithoutPorts) {
  const auto result = ReadConfig(
      "domains: [{name: d, level: 1, associations: [{name: a, mep-ids: [1], endpoints: [{mep-id: 1,"
      "\n direction: up, port: lo}]}]}]",
      [](const std::string&) { return sepan_port_t{0}; });
  ASSERT_EQ(result.mistakes.size(), 1U);
  EXPECT_EQ(Describe("f", result.mistakes[0]),
            "f:2:23: domains[0].associations[0].endpoints[0].port: \"lo\" gets no port from the "
            "host; use fewer interfaces");
}

TEST(FileMistakes, AreAllNotedInTheOrderOfTheFile) {
  EXPECT_THAT(
      MistakesIn("probes:\n"
                 "- {id: 1, interval: x, domain: d, association: b, mep-id: 1, remote-mep-id: 2}\n"
                 "extra: 1\n"
                 "domains:\n"
                 "- level: 9\n"
                 "  name: d\n"
                 "  associations:\n"
                 "  - name: a\n"
                 "    ccm-interval: 5s\n"
                 "    endpoints:\n"
                 "    - {mep-id: 1, direction: left, port: lo}\n"),
      ElementsAre("f:2:21: probes[0].interval: \"x\" is not a whole number; use a whole number "
                  "from 0 to 65535",
                  "f:2:48: probes[0].association: \"b\" is not the name of an association of that "
                  "domain; use \"a\"",
                  "f:3:1: \"extra\" is not a key of a configuration; use domains or probes",
                  "f:5:10: domains[0].level: 9 is out of range; use a whole number from 0 to 7",
                  "f:9:19: domains[0].associations[0].ccm-interval: \"5s\" is not a CCM interval; "
                  "use 3.33ms, 10ms, 100ms, 1s, 10s, 1min or 10min",
                  "f:11:16: domains[0].associations[0].endpoints[0].mep-id: 1 is not in the "
                  "association's mep-ids; add it there",
                  "f:11:30: domains[0].associations[0].endpoints[0].direction: \"left\" is not a "
                  "direction; use down or up"));
}

TEST(FileMistakes, OneInADomainIsNotNotedAgainInItsProbes) {
  constexpr auto kProbe =
      "probes: [{id: 1, interval: 1, domain: d, association: a, mep-id: 1, remote-mep-id: 2}]\n";
  const auto mistakes_beside_probe = [&](std::string_view domains) {
    return MistakesIn(std::string(domains) + kProbe).size();
  };
  EXPECT_EQ(mistakes_beside_probe("domain: [{name: d, level: 1}]\n"), 2U);  // unknown, missing
  EXPECT_EQ(mistakes_beside_probe("domains: 5\n"), 1U);
  EXPECT_EQ(mistakes_beside_probe("domains: [{level: 1}]\n"), 1U);
  EXPECT_EQ(mistakes_beside_probe("domains: [{name: d, level: 1, associations: 5}]\n"), 1U);
  EXPECT_EQ(mistakes_beside_probe("domains: [{name: d, level: 1, associations: [{}]}]\n"), 1U);
  EXPECT_EQ(mistakes_beside_probe(
                "domains: [{name: d, level: 1, associations: [{name: a, mep-ids: [0]}]}]\n"),
            1U);
}

TEST(FileMistakes, ShowOddOctetsInHexadecimal) {
  EXPECT_THAT(MistakesIn("domains: [{name: d, level: \"\\x1b[2J\"}]"),
              ElementsAre("f:1:28: domains[0].level: \"\\x1b[2J\" is not a whole number; use a "
                          "whole number from 0 to 7"));
}

TEST(FileMistakes, WithoutAPlaceNameTheFileOnly) {
  EXPECT_EQ(Describe("f", {{}, "", "cannot be opened"}), "f: cannot be opened");
}

}  // namespace
}  // namespace cfm_agent::testing
