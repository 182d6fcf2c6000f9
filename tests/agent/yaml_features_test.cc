// SPDX-License-Identifier: Apache-2.0
// What of YAML a configuration file may use beyond plain maps, lists and values: aliases, merge
// keys and tags, each taken for what it means or refused.

#include <gmock/gmock.h>

#include "core/yaml_tree.h"
#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

cfm::hierarchy ReadGood(const std::string& text) {
  const auto result = Read(text);
  EXPECT_THAT(MistakesIn(text), IsEmpty());
  return result.config ? result.config->hierarchy : cfm::hierarchy();
}

// One domain: a and b of its associations, which this text holds.
std::string WithAssociations(const std::string& associations) {
  return "domains:\n- name: d\n  level: 1\n  associations:\n" + associations;
}

TEST(MergeKeys, GiveAMapWhatAnotherOneHas) {
  const auto mas = ReadGood(WithAssociations("  - &base {name: a, vids: [7], ccm-interval: 10s}\n"
                                             "  - {<<: *base, name: b}\n"
                                             "  - <<: *base\n"
                                             "    name: c\n"))
                       .mds.at("d")
                       .mas;
  for (const char* name : {"a", "b", "c"}) {
    const auto& cfg = mas.at(name).cfg;
    EXPECT_THAT(cfg.vids, ElementsAre(7)) << name;
    EXPECT_EQ(cfg.ccm_interval, cfm::CcmInterval::Interval10s) << name;
  }
}

TEST(MergeKeys, StandBelowWhatTheMapHasItselfWhereverThatStands) {
  const auto mas = ReadGood(WithAssociations("  - &base {name: a, ccm-interval: 10s}\n"
                                             "  - {name: b, <<: *base, ccm-interval: 1min}\n"
                                             "  - {name: c, ccm-interval: 1min, <<: *base}\n"))
                       .mds.at("d")
                       .mas;
  EXPECT_EQ(mas.at("b").cfg.ccm_interval, cfm::CcmInterval::Interval1min);
  EXPECT_EQ(mas.at("c").cfg.ccm_interval, cfm::CcmInterval::Interval1min);
}

TEST(MergeKeys, TakeInSeveralMapsTheFirstOneStandingHighest) {
  const auto mas = ReadGood(WithAssociations("  - &one {name: a, ccm-interval: 10s}\n"
                                             "  - &two {name: b, ccm-interval: 1min, vids: [7]}\n"
                                             "  - {<<: [*one, *two], name: c}\n"))
                       .mds.at("d")
                       .mas;
  EXPECT_EQ(mas.at("c").cfg.ccm_interval, cfm::CcmInterval::Interval10s);
  EXPECT_THAT(mas.at("c").cfg.vids, ElementsAre(7));
}

TEST(MergeKeys, TakeInWhatAMapHasTakenIn) {
  const auto mas = ReadGood(WithAssociations("  - &one {name: a, vids: [7]}\n"
                                             "  - &two {<<: *one, name: b}\n"
                                             "  - {<<: *two, name: c}\n"))
                       .mds.at("d")
                       .mas;
  EXPECT_THAT(mas.at("c").cfg.vids, ElementsAre(7));
}

TEST(MergeKeys, AreKeysLikeOthersInQuotes) {
  EXPECT_THAT(MistakesIn("domains:\n- {name: d, level: 1, '<<': {sender-id: none}}\n"),
              ElementsAre(HasSubstr("f:2:23: domains[0]: \"<<\" is not a key of a domain; use ")));
}

TEST(MergeKeys, TakeInMapsOnly) {
  for (const char* wrong : {"5", "~", "[5]", "[[]]"}) {
    const auto mistakes =
        MistakesIn("domains:\n- {name: d, level: 1, <<: " + std::string(wrong) + "}\n");
    ASSERT_EQ(mistakes.size(), 1U) << wrong;
    EXPECT_THAT(mistakes[0],
                ::testing::MatchesRegex("f:2:2[78]: << takes in a map only, or a list of maps; "
                                        "use an alias of one"));
  }
}

TEST(MergeKeys, AreGivenOnce) {
  EXPECT_THAT(MistakesIn("domains:\n- &d {name: d, level: 1}\n- {name: e, <<: *d, <<: *d}\n"),
              ElementsAre("f:3:21: << is given twice; give it once, with a list of maps"));
}

TEST(MergeKeys, ShowMistakesWhereTheyAreWritten) {
  EXPECT_THAT(MistakesIn("domains:\n"
                         "- &d {name: d, level: 8}\n"
                         "- {<<: *d, name: e}\n"),
              ElementsAre("f:2:23: domains[0].level: 8 is out of range; use a whole number from 0 "
                          "to 7",
                          "f:2:23: domains[1].level: 8 is out of range; use a whole number from 0 "
                          "to 7"));
}

TEST(MergeKeys, CountWithWhatTheyTakeIn) {
  const auto mistakes = [](std::uint32_t nodes) {
    YamlLimits limits;
    limits.nodes = nodes;
    Mistakes found;
    ParseYaml("[&m {a: 1}, {<<: *m}]", found, limits);
    return found.size();
  };
  // The list, two maps, a and 1, << and the alias of three, and once more a and 1.
  EXPECT_EQ(mistakes(11), 0U);
  EXPECT_EQ(mistakes(10), 1U);
}

TEST(Tags, MaySayWhatIsSoAnyhow) {
  const auto hierarchy = ReadGood(
      "!!map\ndomains: !!seq\n- !!map {name: !!str d, level: 1}\n"
      "- ! {name: ! 5, level: 2}\n"
      "- {name: !<tag:yaml.org,2002:str> null, level: 3}\n");
  EXPECT_THAT(hierarchy.mds,
              ElementsAre(::testing::Key("5"), ::testing::Key("d"), ::testing::Key("null")));
}

TEST(Tags, MakeTextOfNumbersAndOfTruth) {
  EXPECT_THAT(MistakesIn("domains: [{name: d, level: !!str 1}]"),
              ElementsAre("f:1:28: domains[0].level: \"1\" is text; write the number without "
                          "quotes"));
  EXPECT_THAT(MistakesIn("domains: [{name: d, level: 1, associations: [{name: a, ais: {enabled: "
                         "! true}}]}]"),
              ElementsAre(HasSubstr("\"true\" is neither true nor false")));
}

TEST(Tags, ThatAreNotUnderstoodAreRefused) {
  EXPECT_THAT(MistakesIn("domains: [{name: d, level: !!int '1'}]"),
              ElementsAre("f:1:28: the tag !!int is not understood here; use !!str or none"));
  EXPECT_THAT(MistakesIn("domains: [{name: !!binary aGVsbG8=, level: 1}]"),
              ElementsAre("f:1:18: the tag !!binary is not understood here; use !!str or none"));
  EXPECT_THAT(MistakesIn("domains: [{name: !!null x, level: 1}]"),
              ElementsAre(HasSubstr("the tag !!null is not understood here; use !!str or none")));
  EXPECT_THAT(MistakesIn("domains: [!domain {name: d, level: 1}]"),
              ElementsAre("f:1:11: the tag !domain is not understood here; use !!map or none"));
  EXPECT_THAT(MistakesIn("domains: !!set {d}"),
              ElementsAre("f:1:10: the tag !!set is not understood here; use !!map or none"));
  EXPECT_THAT(MistakesIn("domains: !!omap [d: e]"),
              ElementsAre("f:1:10: the tag !!omap is not understood here; use !!seq or none"));
  EXPECT_THAT(MistakesIn("domains: [{!!int name: d, level: 1}]"),
              ElementsAre("f:1:12: the tag !!int is not understood here; use !!str or none"));
}

TEST(Tags, OfNothingAreRefusedToo) {
  EXPECT_THAT(MistakesIn("domains: [{level: 1, name: !!null }]"),
              ElementsAre(HasSubstr("the tag !!null is not understood here")));
  EXPECT_THAT(MistakesIn("domains: [{level: 1, name: !!str }]"),
              ElementsAre(HasSubstr("empty text is not a domain's name; use text")));
}

TEST(Tags, AreKnownByWhatTheirHandlesStandFor) {
  EXPECT_THAT(MistakesIn("%TAG !y! tag:yaml.org,2002:\n---\ndomains: !y!seq []\n"), IsEmpty());
  EXPECT_THAT(MistakesIn("%TAG !y! tag:yaml.org,2002:\n---\ndomains: !y!set {}\n"),
              ElementsAre(HasSubstr("the tag !!set is not understood here")));
  EXPECT_THAT(MistakesIn("%TAG !! tag:example.net,2026:\n---\ndomains: !!seq []\n"),
              ElementsAre(HasSubstr("the tag tag:example.net,2026:seq is not understood here")));
}

}  // namespace
}  // namespace cfm_agent::testing
