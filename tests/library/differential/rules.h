/* SPDX-License-Identifier: Apache-2.0 */
// The rules that a model run can come to, counted, so that a test can tell whether its random
// configurations reached them all.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_RULES_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_RULES_H

#include <array>
#include <cstddef>
#include <string_view>

namespace cfm_test {

// What each stands for says the table in rules.cc.
enum class Rule {
  // Hierarchy: what became of what was applied
  MdRemoved,
  MdKept,
  MdLevelChanged,
  MaRemoved,
  MaKept,
  MaOfRecreatedMd,
  MaVidsChanged,
  MepRemoved,
  MepKept,
  MepOfRecreatedMa,
  MepPortChanged,
  MepDirectionChanged,
  MepPrimaryVidChanged,
  MepInnerVidChanged,
  // Hierarchy: where what is desired was found
  MdNew,
  MaOfNewMd,
  MaNew,
  MaStoodInFor,
  MepOfNewMa,
  MepFoundByItsMaName,
  MepMissedByItsMaName,
  MaAddedForMep,
  // Probes
  ProbeNew,
  ProbeKept,
  ProbeIdChanged,
  ProbeIntervalChanged,
  ProbeMaChanged,
  ProbeMdChanged,
  ProbeLmepChanged,
  ProbeRmepChanged,
  ProbeRemoved,
  SessionNew,
  SessionKept,
  SessionCountChanged,
  SessionIntervalChanged,
  SessionSizeChanged,
  SessionPcpChanged,
  SessionRemoved,
  // Cache reply
  ConfigurationDeferred,
  ProbesDeferred,
  ReplyWhileInStep,
  ReplyWhileAbsent,
  ReplyDoesNotParse,
  HierarchiesEmpty,
  HierarchyOfServerAdopted,
  HierarchySentAgain,
  HierarchyOfServerPreferred,
  ProbesEmpty,
  ProbesOfServerAdopted,
  ProbesOfServerPreferred,
  MdListedTwice,
  MaListedTwice,
  MaWithoutMd,
  MaWithoutAis,
  MepListedTwice,
  MepWithoutMa,
  ProbeListedTwice,
  SessionListedTwice,
  SessionWithoutProbe,
  NumberCut,
};

constexpr std::size_t kRuleCount = static_cast<std::size_t>(Rule::NumberCut) + 1;

class RuleCounts {
 public:
  void Add(Rule rule) { ++counts_.at(static_cast<std::size_t>(rule)); }
  std::size_t operator[](Rule rule) const { return counts_.at(static_cast<std::size_t>(rule)); }

 private:
  std::array<std::size_t, kRuleCount> counts_{};
};

std::string_view NameOf(Rule rule);

}  // namespace cfm_test

#endif
