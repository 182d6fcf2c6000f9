// SPDX-License-Identifier: Apache-2.0
// Texts that are no configuration at all, and texts made to hurt.

#include <gmock/gmock.h>

#include <random>
#include <sstream>

#include "core/yaml_tree.h"
#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using ::testing::StartsWith;

std::string Repeat(std::string_view text, std::size_t times) {
  std::string out;
  out.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i) {
    out += text;
  }
  return out;
}

std::vector<std::string> ParseMistakes(std::string_view text, const YamlLimits& limits) {
  Mistakes mistakes;
  const auto tree = ParseYaml(text, mistakes, limits);
  EXPECT_EQ(tree == nullptr, !mistakes.empty());
  std::vector<std::string> lines;
  for (const Mistake& mistake : mistakes) {
    lines.push_back(Describe("f", mistake));
  }
  return lines;
}

TEST(BrokenYaml, IsToldWithItsPlace) {
  EXPECT_THAT(MistakesIn("domains:\n  - name: [unclosed\n"),
              ElementsAre(StartsWith("f:3:1: not readable as YAML: ")));
  EXPECT_THAT(MistakesIn("domains: [\"open\n"),
              ElementsAre(StartsWith("f:2:1: not readable as YAML: ")));
  EXPECT_THAT(MistakesIn("domains:\n\t- a\n"), ElementsAre(HasSubstr("not readable as YAML: ")));
  EXPECT_THAT(MistakesIn("domains: *nowhere\n"), ElementsAre(HasSubstr("not readable as YAML: ")));
}

// The parser's own words may repeat what it stumbled over.
TEST(BrokenYaml, IsToldOnOneLine) {
  EXPECT_THAT(MistakesIn("domains: \"\\\x01\"\n"),
              ElementsAre(AllOf(HasSubstr("not readable as YAML: "), HasSubstr("\\x01"))));
}

TEST(HostileYaml, NestedDeeply) {
  EXPECT_THAT(MistakesIn(Repeat("[", 100'000)),
              ElementsAre(AllOf(StartsWith("f:1:"), HasSubstr("nested more than 32 deep"))));
  EXPECT_THAT(MistakesIn(Repeat("{a: ", 100'000)), ElementsAre(HasSubstr("nested more than 32")));
  EXPECT_THAT(MistakesIn(Repeat("- ", 100'000)), ElementsAre(HasSubstr("nested more than 32")));
}

TEST(HostileYaml, AnAliasBomb) {
  std::string text = "a0: &a0 [x, x, x, x, x, x, x, x, x, x]\n";
  for (int i = 1; i < 12; ++i) {
    const std::string last = "*a" + std::to_string(i - 1);
    std::ostringstream line;
    line << 'a' << i << ": &a" << i << " [" << Repeat(last + ", ", 9) << last << "]\n";
    text += line.str();
  }
  EXPECT_THAT(MistakesIn(text), ElementsAre(HasSubstr("the file has more than 2000000 values")));
}

TEST(HostileYaml, AnAliasInsideWhatItRefersTo) {
  EXPECT_THAT(MistakesIn("domains: &d\n  - *d\n"),
              ElementsAre("f:2:5: an alias stands inside what it refers to; write out what is "
                          "meant"));
}

TEST(HostileYaml, TooLarge) {
  YamlLimits limits;
  limits.text_size = 10;
  EXPECT_THAT(ParseMistakes("domains: []", limits),
              ElementsAre("f: the file is larger than 10 octets; split the configuration"));
  limits.text_size = 11;
  EXPECT_THAT(ParseMistakes("domains: []", limits), SizeIs(0));
}

TEST(HostileYaml, TooManyValues) {
  YamlLimits limits;
  limits.nodes = 5;
  EXPECT_THAT(ParseMistakes("[1, 2, 3, 4]", limits), SizeIs(0));
  EXPECT_THAT(ParseMistakes("[1, 2, 3, 4, 5]", limits),
              ElementsAre("f:1:14: the file has more than 5 values; split the configuration"));
}

TEST(HostileYaml, ThousandsOfMistakesAreAllNoted) {
  EXPECT_THAT(MistakesIn("domains: [" + Repeat("x,", 20'000) + "]"), SizeIs(20'000));
  EXPECT_THAT(MistakesIn("domains: []\n" + Repeat("level: 1\n", 20'000)), SizeIs(20'000));
}

TEST(HostileYaml, ThousandsOfDuplicates) {
  const std::string domain = "- {name: d, level: 1}\n";
  EXPECT_THAT(MistakesIn("domains:\n" + Repeat(domain, 20'000)), SizeIs(19'999));
}

// Whatever the text: an answer, and never both a configuration and a mistake, nor neither.
TEST(HostileYaml, AnyOctetsGetAnAnswer) {
  std::mt19937 random(20'240'601);  // NOLINT(cert-msc32-c,cert-msc51-cpp): repeatable
  const std::string good =
      "domains: [{name: d, level: 1, associations: [{name: a, mep-ids: [1, 2], endpoints:\n"
      "  [{mep-id: 1, direction: up, port: lo, fng-alarm-time: 2.5s}]}]}]\n"
      "probes: [{id: 1, interval: 1, domain: d, association: a, mep-id: 1, remote-mep-id: 2}]\n";
  ASSERT_THAT(MistakesIn(good), SizeIs(0));
  constexpr std::string_view kOdd =
      "[]{}:,-?&*!|>'\"%@`#\n\t \\\x00\xFF\x7F"
      "0a.~<";
  for (int round = 0; round < 5'000; ++round) {
    std::string text = good;
    for (unsigned change = random() % 4 + 1; change > 0; --change) {
      const char odd = kOdd[random() % kOdd.size()];
      const std::size_t at = random() % text.size();
      switch (random() % 3) {
        case 0:
          text[at] = odd;
          break;
        case 1:
          text.insert(at, 1, odd);
          break;
        default:
          text.erase(at, random() % 20);
          break;
      }
    }
    const ReadResult result = Read(text);
    ASSERT_NE(result.config.has_value(), !result.mistakes.empty()) << text;
  }
}

TEST(HostileYaml, EveryBeginningOfAFileGetsAnAnswer) {
  const std::string good =
      "domains:\n- name: d\n  level: 1\n  associations:\n  - name: a\n    mep-ids: [1]\n"
      "    endpoints:\n    - {mep-id: 1, direction: up, port: lo}\n";
  for (std::size_t size = 0; size < good.size(); ++size) {
    const ReadResult result = Read(good.substr(0, size));
    ASSERT_NE(result.config.has_value(), !result.mistakes.empty()) << size;
  }
}

}  // namespace
}  // namespace cfm_agent::testing
