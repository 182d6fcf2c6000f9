// SPDX-License-Identifier: Apache-2.0
#include "core/config.h"

#include "core/hierarchy_reader.h"
#include "core/probe_reader.h"
#include "core/text.h"
#include "core/warnings.h"
#include "core/yaml_tree.h"

namespace cfm_agent {
namespace {

constexpr std::string_view kNoDomains =
    "no domains; write domains: and a list, or domains: [] for a configuration without any";

struct FileDraft {
  const PortOfName& port_of_name;
  HierarchyDraft hierarchy;
  cfm::probe probes;
};

using FileField = Field<FileDraft>;

constexpr std::array kFields = {
    FileField{"domains", Presence::Required,
              [](const Value& value, FileDraft& file) {
                file.hierarchy = ReadDomains(value, file.port_of_name);
              }},
    // After the domains, which probes refer to.
    FileField{"probes", Presence::Optional,
              [](const Value& value, FileDraft& file) {
                file.probes = ReadProbes(value, file.hierarchy);
              }},
};

}  // namespace

ReadResult ReadConfig(std::string_view text, const PortOfName& port_of_name) {
  ReadResult result;
  const auto tree = ParseYaml(text, result.mistakes);
  if (!tree) {
    return result;
  }
  if (tree->root == nullptr || tree->root->kind == YamlNode::Kind::Null) {
    result.mistakes.push_back({{1, 1}, "", std::string(kNoDomains)});
    return result;
  }
  FileDraft file{port_of_name, {}, {}};
  file.hierarchy.unclear = true;
  const Value root(*tree->root, result.mistakes);
  ReadFields(root, kFields, "a configuration", file);
  if (!result.mistakes.empty()) {
    SortByPlace(result.mistakes);
    return result;
  }
  result.config = Config{std::move(file.hierarchy.hierarchy), std::move(file.probes)};
  result.warnings = FindWarnings(root, *result.config);
  return result;
}

ConfigCounts CountsOf(const Config& config) {
  ConfigCounts counts;
  counts.domains = config.hierarchy.mds.size();
  for (const auto& [md_name, md] : config.hierarchy.mds) {
    counts.associations += md.mas.size();
    for (const auto& [ma_name, ma] : md.mas) {
      counts.endpoints += ma.meps.size();
    }
  }
  counts.probes = config.probes.probes.size();
  for (const auto& [id, probe] : config.probes.probes) {
    counts.sessions += probe.sessions.size();
  }
  return counts;
}

std::string Summary(const ConfigCounts& counts) {
  return Count(counts.domains, "domain") + ", " + Count(counts.associations, "association") + ", " +
         Count(counts.endpoints, "endpoint") + ", " + Count(counts.probes, "probe") + " with " +
         Count(counts.sessions, "session");
}

}  // namespace cfm_agent
