#include "core/config.h"

#include "core/hierarchy_reader.h"
#include "core/probe_reader.h"
#include "core/text.h"
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
  ReadFields(Value(*tree->root, result.mistakes), kFields, "a configuration", file);
  if (!result.mistakes.empty()) {
    SortByPlace(result.mistakes);
    return result;
  }
  result.config = Config{std::move(file.hierarchy.hierarchy), std::move(file.probes)};
  return result;
}

std::string Summary(const Config& config) {
  std::size_t associations = 0;
  std::size_t endpoints = 0;
  for (const auto& [md_name, md] : config.hierarchy.mds) {
    associations += md.mas.size();
    for (const auto& [ma_name, ma] : md.mas) {
      endpoints += ma.meps.size();
    }
  }
  std::size_t sessions = 0;
  for (const auto& [id, probe] : config.probes.probes) {
    sessions += probe.sessions.size();
  }
  return Count(config.hierarchy.mds.size(), "domain") + ", " + Count(associations, "association") +
         ", " + Count(endpoints, "endpoint") + ", " + Count(config.probes.probes.size(), "probe") +
         " with " + Count(sessions, "session");
}

}  // namespace cfm_agent
