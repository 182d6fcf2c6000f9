// SPDX-License-Identifier: Apache-2.0
#include "core/yaml_tree.h"

#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/exceptions.h>
#include <yaml-cpp/parser.h>

#include <algorithm>
#include <array>
#include <sstream>
#include <unordered_map>
#include <unordered_set>

#include "core/text.h"

namespace cfm_agent {
namespace {

FileMark ToFileMark(const YAML::Mark& mark) {
  return mark.is_null() ? FileMark{} : FileMark{mark.line + 1, mark.column + 1};
}

// Ends the parse from inside the builder.
struct Rejection {
  Mistake mistake;
};

[[noreturn]] void Reject(FileMark mark, std::string text) {
  throw Rejection{{mark, "", std::move(text)}};
}

[[noreturn]] void Reject(const YAML::Mark& mark, std::string text) {
  Reject(ToFileMark(mark), std::move(text));
}

constexpr std::string_view kStandardTag = "tag:yaml.org,2002:";

// As it is written in a file.
std::string TagShown(std::string_view tag) {
  return tag.substr(0, kStandardTag.size()) == kStandardTag
             ? "!!" + Printable(tag.substr(kStandardTag.size()))
             : Printable(tag);
}

// What a node is, is told by how it is written. A tag may only say the same, or that it is text.
void CheckTag(const YAML::Mark& mark, std::string_view tag, std::string_view right) {
  constexpr std::array<std::string_view, 3> kUnspecific = {"", "?", "!"};
  const bool standard = tag.substr(0, kStandardTag.size()) == kStandardTag;
  if (std::find(kUnspecific.begin(), kUnspecific.end(), tag) == kUnspecific.end() &&
      !(standard && tag.substr(kStandardTag.size()) == right)) {
    Reject(mark, "the tag " + TagShown(tag) + " is not understood here; use !!" +
                     std::string(right) + " or none");
  }
}

class TreeBuilder : public YAML::EventHandler {
 public:
  TreeBuilder(YamlTree& tree, const YamlLimits& limits) : tree_(tree), limits_(limits) {}

  void OnDocumentStart(const YAML::Mark& mark) override {
    if (tree_.root != nullptr) {
      Reject(mark, "a second document begins here; write one document");
    }
  }
  void OnDocumentEnd() override {}

  void OnNull(const YAML::Mark& mark, YAML::anchor_t anchor) override {
    YamlNode& node = Add(YamlNode::Kind::Null, mark, anchor);
    const YamlNode* key = OpenKey();
    // A value left out is reported where the next thing stands, maybe lines further down.
    if (key != nullptr && key->mark.line != node.mark.line) {
      node.mark = key->mark;
    }
    Place(node);
  }

  void OnScalar(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                const std::string& value) override {
    CheckTag(mark, tag, "str");
    YamlNode& node = Add(YamlNode::Kind::Scalar, mark, anchor);
    node.quoted = tag != "?";
    node.text = value;
    Place(node);
  }

  void OnAlias(const YAML::Mark& mark, YAML::anchor_t anchor) override {
    const auto found = anchors_.find(anchor);
    if (found == anchors_.end()) {
      Reject(mark, "an alias stands inside what it refers to; write out what is meant");
    }
    Grow(mark, found->second->weight);
    Place(*found->second);
  }

  void OnSequenceStart(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                       YAML::EmitterStyle::value /*style*/) override {
    CheckTag(mark, tag, "seq");
    Open(YamlNode::Kind::Sequence, mark, anchor);
  }
  void OnSequenceEnd() override { Close(); }

  void OnMapStart(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                  YAML::EmitterStyle::value /*style*/) override {
    CheckTag(mark, tag, "map");
    Open(YamlNode::Kind::Map, mark, anchor);
  }
  void OnMapEnd() override {
    Merge(*open_.back().node);
    Close();
  }

 private:
  struct OpenNode {
    YamlNode* node;
    YAML::anchor_t anchor;
  };

  void Grow(const YAML::Mark& mark, std::uint32_t nodes) { Grow(ToFileMark(mark), nodes); }

  void Grow(FileMark mark, std::uint32_t nodes) {
    if (nodes > limits_.nodes - total_) {
      Reject(mark, "the file has more than " + std::to_string(limits_.nodes) +
                       " values; split the configuration");
    }
    total_ += nodes;
  }

  YamlNode& Add(YamlNode::Kind kind, const YAML::Mark& mark, YAML::anchor_t anchor) {
    Grow(mark, 1);
    YamlNode& node = tree_.nodes.emplace_back();
    node.kind = kind;
    node.mark = ToFileMark(mark);
    if (anchor != 0 && kind != YamlNode::Kind::Sequence && kind != YamlNode::Kind::Map) {
      anchors_[anchor] = &node;
    }
    return node;
  }

  void Open(YamlNode::Kind kind, const YAML::Mark& mark, YAML::anchor_t anchor) {
    if (open_.size() == limits_.depth) {
      Reject(mark, "lists and maps are nested more than " + std::to_string(limits_.depth) +
                       " deep; no configuration needs that");
    }
    open_.push_back({&Add(kind, mark, anchor), anchor});
  }

  // An anchor counts from the end of its node on: before that an alias would refer to itself.
  void Close() {
    const OpenNode closed = open_.back();
    open_.pop_back();
    if (closed.anchor != 0) {
      anchors_[closed.anchor] = closed.node;
    }
    Place(*closed.node);
  }

  // Puts what the maps behind a key << have in its place. What the map has itself stands above
  // them, and a map of a list above those behind it.
  void Merge(YamlNode& map) {
    const auto key = FindMergeKey(map, 0);
    if (key == map.children.size()) {
      return;
    }
    const auto again = FindMergeKey(map, key + 2);
    if (again < map.children.size()) {
      Reject(map.children[again]->mark, "<< is given twice; give it once, with a list of maps");
    }
    const YamlNode& merged = *map.children[key + 1];
    const auto place = map.children.begin() + static_cast<std::ptrdiff_t>(key);
    map.children.erase(place, place + 2);
    std::unordered_set<std::string_view> keys;
    for (std::size_t i = 0; i < map.children.size(); i += 2) {
      keys.insert(map.children[i]->text);
    }
    if (merged.kind != YamlNode::Kind::Sequence) {
      return MergeMap(map, merged, keys);
    }
    for (const YamlNode* item : merged.children) {
      MergeMap(map, *item, keys);
    }
  }

  // The index of the first such key from this one on.
  static std::size_t FindMergeKey(const YamlNode& map, std::size_t from) {
    std::size_t i = from;
    while (i < map.children.size() && (map.children[i]->kind != YamlNode::Kind::Scalar ||
                                       map.children[i]->quoted || map.children[i]->text != "<<")) {
      i += 2;
    }
    return i;
  }

  void MergeMap(YamlNode& map, const YamlNode& other, std::unordered_set<std::string_view>& keys) {
    if (other.kind != YamlNode::Kind::Map) {
      Reject(other.mark, "<< takes in a map only, or a list of maps; use an alias of one");
    }
    for (std::size_t i = 0; i < other.children.size(); i += 2) {
      if (keys.insert(other.children[i]->text).second) {
        for (const YamlNode* child : {other.children[i], other.children[i + 1]}) {
          Grow(other.mark, child->weight);
          map.weight += child->weight;
          map.children.push_back(child);
        }
      }
    }
  }

  // The key whose value comes next, or null.
  const YamlNode* OpenKey() const {
    if (open_.empty() || open_.back().node->kind != YamlNode::Kind::Map) {
      return nullptr;
    }
    const auto& children = open_.back().node->children;
    return children.size() % 2 == 1 ? children.back() : nullptr;
  }

  void Place(const YamlNode& node) {
    if (open_.empty()) {
      tree_.root = &node;
      return;
    }
    open_.back().node->children.push_back(&node);
    open_.back().node->weight += node.weight;
  }

  YamlTree& tree_;
  const YamlLimits& limits_;
  std::uint32_t total_ = 0;
  std::vector<OpenNode> open_;
  std::unordered_map<YAML::anchor_t, const YamlNode*> anchors_;
};

void Parse(std::string_view text, const YamlLimits& limits, YamlTree& tree) {
  std::istringstream stream{std::string(text)};
  YAML::Parser parser(stream);
  TreeBuilder builder(tree, limits);
  while (parser.HandleNextDocument(builder)) {
  }
}

}  // namespace

std::unique_ptr<YamlTree> ParseYaml(std::string_view text, Mistakes& mistakes,
                                    const YamlLimits& limits) {
  if (text.size() > limits.text_size) {
    mistakes.push_back({{},
                        "",
                        "the file is larger than " + std::to_string(limits.text_size) +
                            " octets; split the configuration"});
    return nullptr;
  }
  auto tree = std::make_unique<YamlTree>();
  try {
    Parse(text, limits, *tree);
    return tree;
  } catch (const Rejection& rejection) {
    mistakes.push_back(rejection.mistake);
  } catch (const YAML::Exception& error) {
    mistakes.push_back(
        {ToFileMark(error.mark), "", "not readable as YAML: " + Printable(error.msg)});
  }
  return nullptr;
}

}  // namespace cfm_agent
