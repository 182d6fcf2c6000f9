/* SPDX-License-Identifier: Apache-2.0 */
// YAML text as a tree that keeps the place of every node, within bounds that hold whatever the
// text.
#ifndef CFM_AGENT_CORE_YAML_TREE_H
#define CFM_AGENT_CORE_YAML_TREE_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/mistake.h"

namespace cfm_agent {

struct YamlNode {
  enum class Kind : std::uint8_t { Null, Scalar, Sequence, Map };

  Kind kind = Kind::Null;
  bool quoted = false;  // a scalar that says it is text
  FileMark mark;
  std::uint32_t weight = 1;  // nodes below and including this one, each alias spelt out
  std::string text;          // of a scalar
  // The items of a sequence; the keys and values of a map in turn.
  std::vector<const YamlNode*> children;
};

// Owns the nodes. An alias is a second pointer to the node it stands for. A map that takes in
// others with a key << has what they have.
struct YamlTree {
  std::deque<YamlNode> nodes;
  const YamlNode* root = nullptr;  // null for a file without a document
};

// A hundred thousand endpoints that set half of their fields fit.
struct YamlLimits {
  std::size_t text_size = std::size_t{16} << 20U;
  std::uint32_t nodes = 2'000'000;  // with each alias spelt out
  std::size_t depth = 32;
};

// Reads one document. A text that is no YAML, or out of bounds, gives no tree and one mistake.
std::unique_ptr<YamlTree> ParseYaml(std::string_view text, Mistakes& mistakes,
                                    const YamlLimits& limits = {});

}  // namespace cfm_agent

#endif
