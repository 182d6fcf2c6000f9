// SPDX-License-Identifier: Apache-2.0
// The manual page of the configuration file against its reader: every key, what it takes, its
// default, and the examples.
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "core/config.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAreArray;
using ::testing::UnorderedElementsAreArray;

struct PageKey {
  std::string name;
  std::string takes;     // such as "a whole number from 0 to 7"
  std::string fallback;  // the default; empty for a required key
};

struct PageSection {
  std::string title;
  std::vector<PageKey> keys;
};

std::string PageText() {
  std::ifstream file(CONFIGURATION_PAGE);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

// The sections that describe keys.
std::vector<PageSection> Sections() {
  const std::regex heading("# (.*)");
  const std::regex key(R"(\*\*([a-z0-9-]+)\*\* - (.*); (required|default (.*)))");
  std::vector<PageSection> sections;
  std::istringstream lines(PageText());
  std::smatch match;
  for (std::string line; std::getline(lines, line);) {
    if (std::regex_match(line, match, heading)) {
      sections.push_back({match[1], {}});
    } else if (std::regex_match(line, match, key)) {
      sections.back().keys.push_back({match[1], match[2], match[4]});
    }
  }
  sections.erase(std::remove_if(sections.begin(), sections.end(),
                                [](const PageSection& section) { return section.keys.empty(); }),
                 sections.end());
  return sections;
}

// Where the map that a section describes stands in a file, and what it needs there to be right.
struct MapPlace {
  std::string_view before;
  std::string_view needed;
  std::string_view after;
};

constexpr std::string_view kDomain = "domains: [{name: d, level: 0, associations: [{name: 1, ";
constexpr std::string_view kEndpoint = "mep-id: 1, direction: up, port: lo";

MapPlace PlaceOf(const std::string& section) {
  static const std::string association = '{' + std::string(kDomain);
  static const std::string endpoint =
      association + "vids: [4094], mep-ids: [1, 8191], endpoints: [{";
  static const std::string probe = endpoint + std::string(kEndpoint) + "}]}]}], probes: [{";
  static const std::string probe_needs =
      "id: 1, interval: 1, domain: d, association: 1, mep-id: 1, remote-mep-id: 8191";
  static const std::string session = probe + probe_needs + ", sessions: [{";
  static const std::string ais = association + "ais: {";
  static const std::map<std::string, MapPlace> places = {
      {"THE FILE", {"{", "domains: []", "}"}},
      {"DOMAINS", {"{domains: [{", "name: d, level: 0", "}]}"}},
      {"ASSOCIATIONS", {"{domains: [{name: d, level: 0, associations: [{", "name: 1", "}]}]}"}},
      {"AIS", {ais, "enabled: true", "}}]}]}"}},
      {"ENDPOINTS", {endpoint, kEndpoint, "}]}]}]}"}},
      {"PROBES", {probe, probe_needs, "}]}"}},
      {"SESSIONS", {session, "id: 1, count: 1", "}]}]}"}},
  };
  return places.at(section);
}

ReadResult ReadMap(const std::string& section, const std::string& members) {
  const MapPlace place = PlaceOf(section);
  return ReadConfig(std::string(place.before) + members + std::string(place.after),
                    [](const std::string&) { return sepan_port_t{1}; });
}

std::string Needed(const std::string& section) { return std::string(PlaceOf(section).needed); }

// With one of the needed members left to the test.
std::string NeededWithout(const std::string& section, const std::string& key) {
  const std::string needed = ", " + Needed(section);
  return std::regex_replace(needed, std::regex(", " + key + ": [^,]*"), "");
}

std::vector<std::string> Names(const PageSection& section, bool required_only) {
  std::vector<std::string> names;
  for (const PageKey& key : section.keys) {
    if (!required_only || key.fallback.empty()) {
      names.push_back(key.name);
    }
  }
  return names;
}

// The words of "a, b or c".
std::vector<std::string> Alternatives(const std::string& text) {
  const std::regex separator(", | or ");
  return {std::sregex_token_iterator(text.begin(), text.end(), separator, -1), {}};
}

auto Fields(const cfm::st_maintenance_domain_cfg& md) {
  return std::tie(md.format, md.level, md.sender_id, md.mhf_creation);
}

auto Fields(const cfm::st_maintenance_association_cfg& ma) {
  return std::tie(ma.format, ma.vids, ma.ccm_interval, ma.mep_ids, ma.sender_id, ma.mhf_creation,
                  ma.ais.enabled, ma.ais.octet_a, ma.ais.word_b, ma.ais.id_set, ma.ais.octet_c,
                  ma.ais.flag_d);
}

auto Fields(const cfm::st_maintenance_endpoint_cfg& mep) {
  return std::tie(mep.mep_id, mep.direction, mep.port, mep.primary_vid, mep.inner_vid,
                  mep.admin_state, mep.ccm_enabled, mep.ccm_priority, mep.lowest_prio_defect,
                  mep.fng_alarm_time, mep.fng_reset_time, mep.fault_action, mep.aux_flag);
}

template <typename Map, typename Same>
bool SameMaps(const Map& a, const Map& b, Same same) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](const auto& x, const auto& y) {
    return x.first == y.first && same(x.second, y.second);
  });
}

bool SameMa(const cfm::hierarchy_ma& a, const cfm::hierarchy_ma& b) {
  return Fields(a.cfg) == Fields(b.cfg) &&
         SameMaps(a.meps, b.meps, [](auto& x, auto& y) { return Fields(x.cfg) == Fields(y.cfg); });
}

bool Same(const Config& a, const Config& b) {
  return a.probes.probes == b.probes.probes &&
         SameMaps(a.hierarchy.mds, b.hierarchy.mds, [](auto& x, auto& y) {
           return Fields(x.cfg) == Fields(y.cfg) && SameMaps(x.mas, y.mas, SameMa);
         });
}

std::optional<Config> With(const std::string& section, const std::string& member) {
  return ReadMap(section, Needed(section) + ", " + member).config;
}

// The default as the file would give it.
std::string Written(const PageKey& key) {
  if (key.takes.rfind("a list", 0) == 0) return "[]";
  return key.takes == "an AIS configuration" ? "{enabled: false}" : key.fallback;
}

// Another value than the default, or nothing where that takes a whole record.
std::string Another(const PageKey& key) {
  std::smatch range;
  if (std::regex_match(key.takes, range, std::regex("a (?:whole number|time) from (.*) to (.*)"))) {
    return range[range[2] == key.fallback ? 1 : 2];
  }
  if (key.takes.rfind("a list", 0) == 0) return "";
  if (key.takes == "an AIS configuration") return "{enabled: true}";
  const auto words = Alternatives(key.takes);
  return words[0] == key.fallback ? words[1] : words[0];
}

TEST(ConfigurationPage, DescribesEveryMapOfTheFile) {
  std::vector<std::string> titles;
  for (const PageSection& section : Sections()) titles.push_back(section.title);
  EXPECT_THAT(titles, ElementsAreArray({"THE FILE", "DOMAINS", "ASSOCIATIONS", "AIS", "ENDPOINTS",
                                        "PROBES", "SESSIONS"}));
}

TEST(ConfigurationPage, NamesExactlyTheKeysThatTheReaderTakes) {
  // Too long to be taken for a slip of the pen.
  const std::string stranger(50, 'x');
  for (const PageSection& section : Sections()) {
    const auto mistakes =
        ReadMap(section.title, Needed(section.title) + ", " + stranger + ": 1").mistakes;
    ASSERT_EQ(mistakes.size(), 1U) << section.title;
    std::smatch match;
    ASSERT_TRUE(std::regex_search(mistakes[0].text, match, std::regex("; use (.*)")));
    EXPECT_THAT(Names(section, false), UnorderedElementsAreArray(Alternatives(match[1])))
        << section.title;
  }
}

TEST(ConfigurationPage, TellsWhichKeysAreRequired) {
  for (const PageSection& section : Sections()) {
    std::vector<std::string> missing;
    for (const Mistake& mistake : ReadMap(section.title, "").mistakes) {
      if (mistake.text.rfind("is missing", 0) == 0) {
        missing.push_back(mistake.field.substr(mistake.field.rfind('.') + 1));
      }
    }
    EXPECT_THAT(Names(section, true), UnorderedElementsAreArray(missing)) << section.title;
  }
}

TEST(ConfigurationPage, TellsWhatEachKeyTakes) {
  for (const PageSection& section : Sections()) {
    for (const PageKey& key : section.keys) {
      // Neither a map nor this word is right anywhere, except for text and for the one map.
      std::string said;
      for (const char* wrong : {"{x: 1}", "1x"}) {
        const std::string member = key.name + ": " + wrong;
        for (const Mistake& mistake :
             ReadMap(section.title, member + NeededWithout(section.title, key.name)).mistakes) {
          said += mistake.text + '\n';
        }
      }
      const bool told = said.find("; use " + key.takes + '\n') != std::string::npos ||
                        said.find("; use " + key.takes + ',') != std::string::npos ||
                        said.find(" is not " + key.takes + ';') != std::string::npos;
      EXPECT_TRUE(told) << section.title << ": " << key.name << ": the reader says\n" << said;
    }
  }
}

TEST(ConfigurationPage, TellsTheDefaults) {
  for (const PageSection& section : Sections()) {
    const auto plain = ReadMap(section.title, Needed(section.title)).config;
    ASSERT_TRUE(plain) << section.title;
    for (const PageKey& key : section.keys) {
      if (key.fallback.empty()) continue;
      const auto written = With(section.title, key.name + ": " + Written(key));
      ASSERT_TRUE(written) << section.title << ": " << key.name;
      EXPECT_TRUE(Same(*plain, *written)) << section.title << ": " << key.name;
      if (Another(key).empty()) continue;
      const auto other = With(section.title, key.name + ": " + Another(key));
      ASSERT_TRUE(other) << section.title << ": " << key.name << ": " << Another(key);
      EXPECT_FALSE(Same(*plain, *other)) << section.title << ": " << key.name;
    }
  }
}

TEST(ConfigurationPage, ShowsExamplesWithoutMistakes) {
  const std::string text = PageText();
  const std::regex example("```yaml\n([^`]*)```");
  int examples = 0;
  for (std::sregex_iterator match(text.begin(), text.end(), example), end; match != end; ++match) {
    ++examples;
    const ReadResult result =
        ReadConfig((*match)[1].str(), [](const std::string&) { return sepan_port_t{1}; });
    for (const Mistake& mistake : result.mistakes) {
      ADD_FAILURE() << Describe("example " + std::to_string(examples), mistake);
    }
  }
  EXPECT_EQ(examples, 3);
}

}  // namespace
}  // namespace cfm_agent::testing
