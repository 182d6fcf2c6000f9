/* SPDX-License-Identifier: Apache-2.0 */
// Reads typed values out of a YAML tree, and notes what is wrong with them.
#ifndef CFM_AGENT_CORE_VALUE_H
#define CFM_AGENT_CORE_VALUE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/mistake.h"
#include "core/words.h"
#include "core/yaml_tree.h"

namespace cfm_agent {

// A node together with the way to it. A child borrows its parent: it must not outlive it.
class Value {
 public:
  Value(const YamlNode& node, Mistakes& mistakes) : node_(node), mistakes_(mistakes) {}

  Value Item(std::size_t index) const;
  // The value of a key, of a map that has it.
  std::optional<Value> Member(std::string_view key) const;
  Value Member(std::string_view key, const YamlNode& node) const;

  const YamlNode& node() const { return node_; }
  FileMark mark() const { return node_.mark; }
  bool Is(YamlNode::Kind kind) const { return node_.kind == kind; }
  // The items of a list, or none.
  std::size_t Size() const { return Is(YamlNode::Kind::Sequence) ? node_.children.size() : 0; }

  std::string Path() const;
  // The value as a sentence begins with it: "5s" in quotes, a plain number bare, "a list".
  std::string Shown() const;

  void Wrong(std::string text) const { WrongAt(mark(), Path(), std::move(text)); }
  // A member of this map that is not there.
  void Missing(std::string_view key, std::string_view owner) const;
  void WrongAt(FileMark mark, std::string path, std::string text) const;

 private:
  Value(const YamlNode& node, const Value& parent, std::string_view key, std::size_t index)
      : node_(node), mistakes_(parent.mistakes_), parent_(&parent), key_(key), index_(index) {}

  const YamlNode& node_;
  Mistakes& mistakes_;
  const Value* parent_ = nullptr;
  std::string_view key_;  // empty for an item of a list
  std::size_t index_ = 0;
};

// Each notes a mistake and returns nothing when the value is not what it should be.
std::optional<std::uint64_t> ReadNumber(const Value& value, std::uint64_t min, std::uint64_t max);
std::optional<bool> ReadBool(const Value& value);
std::optional<std::string> ReadText(const Value& value, std::string_view what);
std::optional<std::int32_t> ReadWord(const Value& value, const WordList& words);
// A time such as 2.5s or 300ms, in hundredths of a second.
std::optional<std::uint16_t> ReadCentiseconds(const Value& value, std::uint16_t min,
                                              std::uint16_t max);
// Whether the value is a list; `what` are its items, in the plural.
bool CheckList(const Value& value, std::string_view what);

// Notes a key of a list of records that was there before.
template <typename Key>
class Unique {
 public:
  bool Add(const Key& key, const Value& value) {
    const auto [place, added] = first_.emplace(key, value.mark());
    if (!added) {
      value.Wrong(value.Shown() + " is used twice, first on line " +
                  std::to_string(place->second.line) + "; use each one once");
    }
    return added;
  }

 private:
  std::map<Key, FileMark> first_;
};

enum class Presence : std::uint8_t { Optional, Required };

// One key of a map: where its value goes in a Record.
template <typename Record>
struct Field {
  std::string_view key;
  Presence presence = Presence::Optional;
  void (*read)(const Value&, Record&) = nullptr;
};

struct KeyRule {
  std::string_view key;
  Presence presence = Presence::Optional;
};

// The value of each rule's key, null where there is none; notes unknown, repeated and missing
// keys. Nothing when `map` is not a map at all. `owner` is what the map describes, with article.
std::optional<std::vector<const YamlNode*>> FindMembers(const Value& map,
                                                        const std::vector<KeyRule>& rules,
                                                        std::string_view owner);

// Reads the members of a map into a record, in the order of the fields.
template <typename Record, std::size_t N>
void ReadFields(const Value& map, const std::array<Field<Record>, N>& fields,
                std::string_view owner, Record& record) {
  std::vector<KeyRule> rules;
  rules.reserve(N);
  for (const Field<Record>& field : fields) {
    rules.push_back({field.key, field.presence});
  }
  const auto members = FindMembers(map, rules, owner);
  for (std::size_t i = 0; members && i < N; ++i) {
    if ((*members)[i] != nullptr) {
      fields[i].read(map.Member(fields[i].key, *(*members)[i]), record);
    }
  }
}

}  // namespace cfm_agent

#endif
