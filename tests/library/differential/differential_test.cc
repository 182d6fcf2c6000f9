// SPDX-License-Identifier: Apache-2.0
// The library against a model of the rules, on random configurations.
//
// CFM_DIFFERENTIAL_PAIRS  how many scripts of each family to play
// CFM_DIFFERENTIAL_SEED   the seed of the first one; the next ones follow it
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <ostream>
#include <string>
#include <tuple>

#include "mismatch.h"
#include "random_script.h"

namespace cfm_test {
namespace {

struct Family {
  const char* name;
  Script (*make)(std::uint64_t seed);
  Rule first_rule;  // of those that its scripts have to come to
  Rule last_rule;
};

constexpr Family kHierarchies = {"Hierarchies", HierarchyScript, Rule::MdRemoved,
                                 Rule::MaAddedForMep};
constexpr Family kProbes = {"Probes", ProbeScript, Rule::ProbeNew, Rule::SessionRemoved};
constexpr Family kCacheReplies = {"CacheReplies", CacheScript, Rule::MdRemoved, Rule::NumberCut};

void PrintTo(const Family& family, std::ostream* out) { *out << family.name; }

std::uint64_t FromEnvironment(const char* name, std::uint64_t otherwise) {
  const char* const text = std::getenv(name);
  return text == nullptr ? otherwise : std::stoull(text);
}

constexpr std::uint64_t kShards = 4;                // so that several processors can work
constexpr std::uint64_t kEnoughForAllRules = 2000;  // pairs of a shard

class Differential : public testing::TestWithParam<std::tuple<Family, std::uint64_t>> {};

TEST_P(Differential, LibraryAndModelDoTheSame) {
  const auto& [family, shard] = GetParam();
  const std::uint64_t pairs =
      FromEnvironment("CFM_DIFFERENTIAL_PAIRS", CFM_DIFFERENTIAL_DEFAULT_PAIRS);
  const std::uint64_t first = FromEnvironment("CFM_DIFFERENTIAL_SEED", 1);
  RuleCounts rules;
  const auto model = [&](const Script& script) { return PlayToModel(script, rules); };
  std::uint64_t played = 0;
  for (std::uint64_t pair = shard; pair < pairs; pair += kShards, ++played) {
    const std::string mismatch = Mismatch(family.make(first + pair), model, PlayToLibrary);
    ASSERT_TRUE(mismatch.empty()) << "seed " << first + pair
                                  << "; alone: CFM_DIFFERENTIAL_SEED=" << first + pair
                                  << " CFM_DIFFERENTIAL_PAIRS=1\n"
                                  << mismatch;
  }
  std::cout << played << " pairs\n";
  for (auto rule = static_cast<int>(family.first_rule); rule <= static_cast<int>(family.last_rule);
       ++rule) {
    std::cout << rules[static_cast<Rule>(rule)] << " times " << NameOf(static_cast<Rule>(rule))
              << "\n";
    if (played >= kEnoughForAllRules) {
      EXPECT_GT(rules[static_cast<Rule>(rule)], 0U) << "never " << NameOf(static_cast<Rule>(rule));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Random, Differential,
                         testing::Combine(testing::Values(kHierarchies, kProbes, kCacheReplies),
                                          testing::Range<std::uint64_t>(0, kShards)),
                         [](const auto& test) {
                           return std::string(std::get<0>(test.param).name) +
                                  std::to_string(std::get<1>(test.param));
                         });

// The checker itself: library against library, with one of them spoiled.

using Spoil = void (*)(Traces&);

struct Spoiled {
  const char* name;
  Spoil spoil;
};

// The first request of the last step that sends two at least.
TraceEntry* FirstOfTwo(Traces& traces) {
  for (auto trace = traces.rbegin(); trace != traces.rend(); ++trace) {
    for (std::size_t i = 0; i + 1 < trace->size(); ++i) {
      if ((*trace)[i].has_payload && (*trace)[i + 1].has_payload) {
        return &(*trace)[i];
      }
    }
  }
  return nullptr;
}

template <typename Change>
void ChangeFirstOfTwo(Traces& traces, Change change) {
  if (TraceEntry* const entry = FirstOfTwo(traces); entry != nullptr) {
    change(entry);
  }
}

const Spoiled kSpoiled[] = {
    {"Swapped",
     [](Traces& t) { ChangeFirstOfTwo(t, [](TraceEntry* e) { std::swap(e[0], e[1]); }); }},
    {"Doubled", [](Traces& t) { ChangeFirstOfTwo(t, [](TraceEntry* e) { e[1] = e[0]; }); }},
    {"ChangedByOneBit",
     [](Traces& t) { ChangeFirstOfTwo(t, [](TraceEntry* e) { e->content.back() ^= 1; }); }},
    {"ElsewhereBound",
     [](Traces& t) { ChangeFirstOfTwo(t, [](TraceEntry* e) { ++e->destination; }); }},
    {"OfAnotherSignal",
     [](Traces& t) { ChangeFirstOfTwo(t, [](TraceEntry* e) { e->signal = e[1].signal; }); }},
    {"Missing", [](Traces& t) { t.back().pop_back(); }},
    {"Added", [](Traces& t) { t.back().push_back(t.front().front()); }},
};

class DifferentialCheck : public testing::TestWithParam<Spoiled> {};

TEST_P(DifferentialCheck, NoticesARequestThatIs) {
  const auto spoiled = [](const Script& script) {
    Traces traces = PlayToLibrary(script);
    if (!traces.empty()) {
      GetParam().spoil(traces);
    }
    return traces;
  };
  std::size_t noticed = 0;
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    noticed += Mismatch(HierarchyScript(seed), PlayToLibrary, spoiled).empty() ? 0 : 1;
  }
  EXPECT_GT(noticed, 5U);
}

INSTANTIATE_TEST_SUITE_P(All, DifferentialCheck, testing::ValuesIn(kSpoiled),
                         [](const auto& test) { return test.param.name; });

// Leaves out the deletion of domains.
Traces PlayWithoutMdDelete(const Script& script) {
  Traces traces = PlayToLibrary(script);
  for (Trace& trace : traces) {
    Trace kept;
    for (TraceEntry& entry : trace) {
      if (Text(entry).rfind("send 77 MD_DELETE", 0) != 0) {
        kept.push_back(entry);
      }
    }
    trace = kept;
  }
  return traces;
}

TEST(DifferentialCheck, ShowsAFailureAsASmallScript) {
  cfm::hierarchy applied;
  cfm::hierarchy desired;
  applied.mds["kept"].cfg.level = 3;
  applied.mds["gone"].cfg.level = 4;
  applied.mds["gone"].mas["A"].cfg.vids = {1, 2};
  desired.mds["kept"].mas["A"].meps[7].cfg.port = 2;
  desired.mds["kept"].cfg.level = 3;

  EXPECT_EQ(
      Mismatch({ServerFound(), CacheReply(), applied, desired}, PlayToLibrary, PlayWithoutMdDelete),
      "smallest script:\n"
      "  step 0: server found, pid 77\n"
      "  step 1: cache reply\n"
      "    \n"
      "  step 2: UpdateConfig\n"
      "    MD \"gone\"\n"
      "  step 3: UpdateConfig\n"
      "differs in step 3 (- expected, + actual):\n"
      "  = log Applying CFM config...\n"
      "  = log CFM Hierarchy\n"
      "  - send 77 MD_DELETE md_name:\"gone\"\n");
}

TEST(DifferentialCheck, MakesTheSameScriptOfTheSameSeed) {
  for (const auto make : {HierarchyScript, ProbeScript, CacheScript}) {
    EXPECT_EQ(Describe(make(5)), Describe(make(5)));
    EXPECT_NE(Describe(make(5)), Describe(make(6)));
  }
}

}  // namespace
}  // namespace cfm_test
