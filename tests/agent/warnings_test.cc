// SPDX-License-Identifier: Apache-2.0
// What a configuration file may have and is hardly meant, to the letter.

#include <gmock/gmock.h>

#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A file of one domain of level 3 with this association.
std::string WithAssociation(const std::string& association) {
  return "domains:\n- name: d\n  level: 3\n  associations:\n  - " + association + "\n";
}

// The same with an association of four MEP identifiers and these endpoints, from line 9 on.
std::string WithEndpoints(const std::string& vids, const std::vector<std::string>& endpoints) {
  std::string text =
      WithAssociation("name: a\n    vids: " + vids + "\n    mep-ids: [1, 2, 3, 4]\n    endpoints:");
  for (const std::string& endpoint : endpoints) {
    text += "    - {" + endpoint + "}\n";
  }
  return text;
}

// Of an endpoint on line 10 that is where endpoint 1 on line 9 is.
const std::string kSamePlace =
    "f:10:7: warning: domains[0].associations[0].endpoints[1]: has the port, level, direction and "
    "VID of MEP d a 1 on line 9, so that each gets the other's frames; use another port, level, "
    "direction or primary-vid";

TEST(Warnings, DoNotKeepAFileFromBeingTaken) {
  const auto result = Read(WithEndpoints(
      "[]", {"mep-id: 1, direction: up, port: lo", "mep-id: 2, direction: up, port: lo"}));
  EXPECT_EQ(result.warnings.size(), 1U);
  EXPECT_THAT(result.mistakes, IsEmpty());
  EXPECT_EQ(CountsOf(result.config.value()).endpoints, 2U);
}

TEST(Warnings, TellEndpointsInOnePlace) {
  EXPECT_THAT(WarningsIn(WithEndpoints("[]", {"mep-id: 1, direction: up, port: lo",
                                              "mep-id: 2, direction: up, port: lo"})),
              ElementsAre(kSamePlace));
  EXPECT_THAT(
      WarningsIn(WithEndpoints("[7, 8]", {"mep-id: 1, direction: up, port: lo, primary-vid: 8",
                                          "mep-id: 2, direction: up, port: lo, primary-vid: 8"})),
      ElementsAre(kSamePlace));
}

TEST(Warnings, KnowThatAnEndpointWithoutPrimaryVidHasTheFirstOne) {
  EXPECT_THAT(
      WarningsIn(WithEndpoints("[7, 8]", {"mep-id: 1, direction: up, port: lo",
                                          "mep-id: 2, direction: up, port: lo, primary-vid: 7"})),
      ElementsAre(kSamePlace));
}

TEST(Warnings, TellNothingOfEndpointsThatDifferInPortDirectionOrVid) {
  EXPECT_THAT(
      WarningsIn(WithEndpoints(
          "[7, 8]", {"mep-id: 1, direction: up, port: lo", "mep-id: 2, direction: down, port: lo",
                     "mep-id: 3, direction: up, port: eth0",
                     "mep-id: 4, direction: up, port: lo, primary-vid: 8"})),
      IsEmpty());
  EXPECT_THAT(
      WarningsIn(WithEndpoints("[7]", {"mep-id: 1, direction: up, port: lo",
                                       "mep-id: 2, direction: up, port: lo, inner-vid: 7"})),
      IsEmpty());
}

TEST(Warnings, TellEndpointsInOnePlaceAcrossDomainsOfOneLevel) {
  const auto text = [](int level) {
    const std::string associations =
        "  associations: [{name: a, mep-ids: [1, 2], endpoints: [{mep-id: 1, direction: up, port: "
        "lo}]}]\n";
    return "domains:\n- name: low\n  level: 3\n" + associations +
           "- name: high\n  level: " + std::to_string(level) + '\n' + associations;
  };
  EXPECT_THAT(WarningsIn(text(3)),
              ElementsAre("f:7:57: warning: domains[1].associations[0].endpoints[0]: has the port, "
                          "level, direction and VID of MEP low a 1 on line 4, so that each gets "
                          "the other's frames; use another port, level, direction or primary-vid"));
  EXPECT_THAT(WarningsIn(text(4)), IsEmpty());
}

TEST(Warnings, NameTheFirstOfManyEndpointsInOnePlace) {
  const auto warnings = WarningsIn(WithEndpoints(
      "[7]", {"mep-id: 1, direction: up, port: lo", "mep-id: 2, direction: up, port: lo",
              "mep-id: 3, direction: up, port: lo"}));
  ASSERT_EQ(warnings.size(), 2U);
  EXPECT_EQ(warnings[0], kSamePlace);
  EXPECT_THAT(warnings[1], ::testing::HasSubstr("of MEP d a 1 on line 9, "));
}

TEST(Warnings, TellAnEndpointThatSendsAndWatchesNobody) {
  const auto text = [](const std::string& mep_ids, const std::string& states) {
    return WithAssociation("name: a\n    mep-ids: " + mep_ids +
                           "\n    endpoints: [{mep-id: 1, direction: up, port: lo" + states + "}]");
  };
  const std::string sends = ", admin-state: true, ccm-enabled: true";
  EXPECT_THAT(WarningsIn(text("[1]", sends)),
              ElementsAre("f:7:26: warning: domains[0].associations[0].endpoints[0].mep-id: 1 is "
                          "alone in the association's mep-ids and watches nobody; list the "
                          "endpoints at the other ends there, too"));
  EXPECT_THAT(WarningsIn(text("[1, 2]", sends)), IsEmpty());
  // These only answer tests, or do nothing yet.
  EXPECT_THAT(WarningsIn(text("[1]", ", admin-state: true")), IsEmpty());
  EXPECT_THAT(WarningsIn(text("[1]", ", ccm-enabled: true")), IsEmpty());
}

TEST(Warnings, TellANameThatIsAnotherVidThanThePrimaryOne) {
  EXPECT_THAT(WarningsIn(WithAssociation("{name-format: primary-vid, name: 5, vids: [6, 5]}")),
              ElementsAre("f:5:38: warning: domains[0].associations[0].name: 5 is not the first of "
                          "the vids, as the name format primary-vid has it; use 6 as name, or 5 as "
                          "first VID"));
  EXPECT_THAT(WarningsIn(WithAssociation("{name-format: primary-vid, name: 6, vids: [6, 5]}")),
              IsEmpty());
  EXPECT_THAT(WarningsIn(WithAssociation("{name-format: primary-vid, name: 6}")), IsEmpty());
  EXPECT_THAT(WarningsIn(WithAssociation("{name-format: uint16, name: 5, vids: [6, 5]}")),
              IsEmpty());
}

TEST(Warnings, TellAFaultActionThatNeverHappens) {
  const auto text = [](const std::string& action) {
    return WithEndpoints(
        "[]", {"mep-id: 1, direction: up, port: lo, lowest-alarm-priority: none" + action});
  };
  EXPECT_THAT(WarningsIn(text(", fault-action: block")),
              ElementsAre("f:9:87: warning: domains[0].associations[0].endpoints[0].fault-action: "
                          "\"block\" never happens, because lowest-alarm-priority none raises no "
                          "alarm; use another one, or no fault-action"));
  EXPECT_THAT(WarningsIn(text(", fault-action: none")), IsEmpty());
  EXPECT_THAT(WarningsIn(text("")), IsEmpty());
}

TEST(Warnings, TellAnInnerVidBehindNoVid) {
  const std::string endpoint = "mep-id: 1, direction: up, port: lo, inner-vid: 5";
  EXPECT_THAT(WarningsIn(WithEndpoints("[]", {endpoint})),
              ElementsAre("f:9:55: warning: domains[0].associations[0].endpoints[0].inner-vid: 5 "
                          "has no VID before it; give the association vids, or leave it out"));
  EXPECT_THAT(WarningsIn(WithEndpoints("[4]", {endpoint})), IsEmpty());
}

TEST(Warnings, TellProbesThatMeasureNothing) {
  const auto text = [](const std::string& state, const std::string& sessions) {
    return WithEndpoints("[]", {"mep-id: 1, direction: up, port: lo, admin-state: " + state}) +
           "probes:\n- {id: 5, interval: 1, domain: d, association: a, mep-id: 1, "
           "remote-mep-id: 2, sessions: " +
           sessions + "}\n";
  };
  const std::string session = "[{id: 1, count: 1}]";
  EXPECT_THAT(WarningsIn(text("true", session)), IsEmpty());
  EXPECT_THAT(WarningsIn(text("true", "[]")),
              ElementsAre("f:11:3: warning: probes[0]: has no sessions and measures nothing; give "
                          "it one, such as {id: 1, count: 10}"));
  EXPECT_THAT(WarningsIn(text("false", session)),
              ElementsAre("f:11:59: warning: probes[0].mep-id: 1 is an endpoint that is not "
                          "active, and measures nothing; use one with admin-state: true"));
}

TEST(Warnings, ComeInTheOrderOfTheFile) {
  const auto warnings = WarningsIn(
      "probes:\n"
      "- {id: 1, interval: 1, domain: d, association: a, mep-id: 1, remote-mep-id: 2}\n"
      "domains:\n"
      "- name: d\n"
      "  level: 1\n"
      "  associations:\n"
      "  - {name: a, mep-ids: [1, 2], endpoints: [{mep-id: 1, direction: up, port: lo, inner-vid: "
      "5}]}\n");
  EXPECT_THAT(warnings,
              ElementsAre(::testing::StartsWith("f:2:3: "), ::testing::StartsWith("f:2:59: "),
                          ::testing::StartsWith("f:7:")));
}

TEST(Warnings, AreNotLookedForInAFileWithMistakes) {
  const auto result =
      Read(WithEndpoints("[]", {"mep-id: 1, direction: up, port: lo",
                                "mep-id: 2, direction: up, port: lo, aux-flag: maybe"}));
  EXPECT_EQ(result.mistakes.size(), 1U);
  EXPECT_THAT(result.warnings, IsEmpty());
}

TEST(Warnings, AreAboutTheSameWhereverItStands) {
  const std::string text = WithEndpoints(
      "[]", {"mep-id: 1, direction: up, port: lo", "mep-id: 2, direction: up, port: lo"});
  const auto before = Read(text).warnings;
  const auto after = Read("# moved\n" + text).warnings;
  ASSERT_EQ(before.size(), 1U);
  ASSERT_EQ(after.size(), 1U);
  EXPECT_EQ(after[0].about, before[0].about);
  EXPECT_NE(after[0].found.mark.line, before[0].found.mark.line);
}

}  // namespace
}  // namespace cfm_agent::testing
