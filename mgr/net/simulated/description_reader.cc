// SPDX-License-Identifier: Apache-2.0
#include "net/simulated/description_reader.h"

#include <net/if.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "core/text.h"
#include "core/value.h"
#include "core/yaml_tree.h"
#include "net/simulated/bridge_reader.h"
#include "net/simulated/description_values.h"
#include "net/simulated/link_reader.h"
#include "net/simulated/named.h"

namespace cfm_mgr::net {
namespace {

using cfm_agent::Field;
using cfm_agent::Presence;
using cfm_agent::Value;

struct FileDraft {
  const IndexOfInterface& index_of_interface;
  NetworkDescription network;
};

void ReadLocal(const Value& value, FileDraft& file) {
  file.network.local = ReadName(value).value_or("");
}

void ReadAllBridges(const Value& list, FileDraft& file) {
  file.network.bridges = ReadBridges(list, {file.index_of_interface, file.network.local});
}

using FileField = Field<FileDraft>;

// The local bridge's name first and the links last: each refers to what comes before.
constexpr std::array kFields = {
    FileField{"local", Presence::Required, ReadLocal},
    FileField{"bridges", Presence::Required, ReadAllBridges},
    FileField{"links", Presence::Optional,
              [](const Value& list, FileDraft& file) {
                file.network.links = ReadLinks(list, file.network.bridges);
              }},
    FileField{"cross-connections", Presence::Optional,
              [](const Value& list, FileDraft& file) {
                file.network.cross_connections = ReadCrossConnections(list, file.network.bridges);
              }},
};

// Looks at the name when all bridges could be read.
void CheckLocal(const Value& file, const NetworkDescription& network) {
  const auto value = file.Member("local");
  const auto bridges = file.Member("bridges");
  const bool are_known = bridges && bridges->Size() == network.bridges.size();
  if (value && are_known && !network.local.empty() &&
      FindNamed(network.bridges, network.local) == nullptr) {
    value->Wrong(value->Shown() + " is no bridge; use " + NamesOf(network.bridges));
  }
}

}  // namespace

DescriptionResult ReadDescription(std::string_view text,
                                  const IndexOfInterface& index_of_interface) {
  DescriptionResult result;
  const auto tree = cfm_agent::ParseYaml(text, result.mistakes);
  if (!tree) return result;
  if (tree->root == nullptr || tree->root->kind == cfm_agent::YamlNode::Kind::Null) {
    result.mistakes.push_back({{1, 1}, "", "describes no network; write local: and bridges:"});
    return result;
  }
  const Value root(*tree->root, result.mistakes);
  FileDraft file{index_of_interface, {}};
  cfm_agent::ReadFields(root, kFields, "a network", file);
  CheckLocal(root, file.network);
  cfm_agent::SortByPlace(result.mistakes);
  if (result.mistakes.empty()) result.description = std::move(file.network);
  return result;
}

NetworkDescription LoadDescription(const std::string& path) {
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  if (!file.is_open() || errno != 0) {
    throw std::runtime_error(path + ": cannot be read: " + std::generic_category().message(errno));
  }
  auto result = ReadDescription(
      text.str(), [](const std::string& name) { return if_nametoindex(name.c_str()); });
  if (result.description) return std::move(*result.description);
  std::string all;
  for (const auto& mistake : result.mistakes) {
    all += (all.empty() ? "" : "\n") + cfm_agent::Describe(path, mistake);
  }
  throw std::runtime_error(all);
}

}  // namespace cfm_mgr::net
