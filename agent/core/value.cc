// SPDX-License-Identifier: Apache-2.0
#include "core/value.h"

#include <algorithm>

#include "core/text.h"

namespace cfm_agent {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsDecimal(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

// Value of a string of digits; anything beyond `max` reads as max + 1.
std::uint64_t DecimalUpTo(std::string_view digits, std::uint64_t max) {
  std::uint64_t number = 0;
  for (const char c : digits) {
    number = number * 10 + static_cast<std::uint64_t>(c - '0');
    if (number > max) {
      return max + 1;
    }
  }
  return number;
}

bool LooksNumeric(std::string_view text) {
  if (!text.empty() && text.front() == '-') {
    text.remove_prefix(1);
  }
  return IsDecimal(text);
}

std::vector<std::string_view> Texts(const WordList& list) {
  std::vector<std::string_view> texts;
  texts.reserve(list.words.size());
  for (const Word& word : list.words) {
    texts.push_back(word.text);
  }
  return texts;
}

// The time in hundredths of a second, or nothing when the text is no time or too fine.
std::optional<std::uint64_t> ParseCentiseconds(std::string_view text) {
  constexpr std::uint64_t kFar = 1'000'000'000;
  const auto ends_with = [&text](std::string_view end) {
    return text.size() > end.size() && text.substr(text.size() - end.size()) == end;
  };
  if (ends_with("ms")) {
    const std::string_view digits = text.substr(0, text.size() - 2);
    const std::uint64_t number = IsDecimal(digits) ? DecimalUpTo(digits, kFar) : 1;
    return number % 10 == 0 || number > kFar ? std::optional(number / 10) : std::nullopt;
  }
  if (!ends_with("s")) {
    return std::nullopt;
  }
  text.remove_suffix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  std::string fraction(text.substr(std::min(point + 1, text.size())));
  if (!IsDecimal(text.substr(0, point)) || (point < text.size() && !IsDecimal(fraction)) ||
      fraction.size() > 2) {
    return std::nullopt;
  }
  fraction.resize(2, '0');
  return DecimalUpTo(text.substr(0, point), kFar) * 100 + DecimalUpTo(fraction, kFar);
}

std::string ShowCentiseconds(std::uint16_t time) {
  std::string out = std::to_string(time / 100);
  if (time % 100 != 0) {
    const std::string fraction = std::to_string(100 + time % 100).substr(1);
    out += '.' + (fraction.back() == '0' ? fraction.substr(0, 1) : fraction);
  }
  return out + 's';
}

void NoteUnknownKey(const Value& map, const YamlNode& key, const std::vector<KeyRule>& rules,
                    std::string_view owner) {
  std::vector<std::string_view> known;
  known.reserve(rules.size());
  for (const KeyRule& rule : rules) {
    known.push_back(rule.key);
  }
  if (key.kind != YamlNode::Kind::Scalar) {
    map.WrongAt(
        key.mark, map.Path(),
        "a key is not plain text; " + std::string(owner) + " has " + JoinAlternatives(known));
    return;
  }
  const auto guess = ClosestWord(key.text, known);
  std::string text = Quoted(key.text) + " is not a key of " + std::string(owner) + "; ";
  text += guess ? "did you mean " + std::string(*guess) + "?" : "use " + JoinAlternatives(known);
  map.WrongAt(key.mark, map.Path(), std::move(text));
}

}  // namespace

Value Value::Item(std::size_t index) const { return {*node_.children[index], *this, {}, index}; }

Value Value::Member(std::string_view key, const YamlNode& node) const {
  return {node, *this, key, 0};
}

std::optional<Value> Value::Member(std::string_view key) const {
  for (std::size_t i = 0; Is(YamlNode::Kind::Map) && i + 1 < node_.children.size(); i += 2) {
    if (node_.children[i]->text == key) {
      return Member(key, *node_.children[i + 1]);
    }
  }
  return std::nullopt;
}

std::string Value::Path() const {
  if (parent_ == nullptr) {
    return "";
  }
  std::string path = parent_->Path();
  if (key_.empty()) {
    return path + '[' + std::to_string(index_) + ']';
  }
  if (!path.empty()) {
    path += '.';
  }
  return path.append(key_);
}

std::string Value::Shown() const {
  switch (node_.kind) {
    case YamlNode::Kind::Null:
      return "nothing";
    case YamlNode::Kind::Scalar:
      return !node_.quoted && LooksNumeric(node_.text) && node_.text.size() <= 20
                 ? node_.text
                 : Quoted(node_.text);
    case YamlNode::Kind::Sequence:
      return "a list";
    case YamlNode::Kind::Map:
      return "a map";
  }
  return "";
}

void Value::Missing(std::string_view key, std::string_view owner) const {
  WrongAt(mark(), Member(key, node_).Path(), "is missing; " + std::string(owner) + " needs it");
}

void Value::WrongAt(FileMark mark, std::string path, std::string text) const {
  mistakes_.push_back({mark, std::move(path), std::move(text)});
}

std::optional<std::uint64_t> ReadNumber(const Value& value, std::uint64_t min, std::uint64_t max) {
  const std::string expected =
      "; use a whole number from " + std::to_string(min) + " to " + std::to_string(max);
  const YamlNode& node = value.node();
  if (!value.Is(YamlNode::Kind::Scalar) || !LooksNumeric(node.text)) {
    value.Wrong(value.Shown() + " is not a whole number" + expected);
    return std::nullopt;
  }
  if (node.quoted) {
    value.Wrong(value.Shown() + " is text; write the number without quotes");
    return std::nullopt;
  }
  const bool negative = node.text.front() == '-';
  const std::uint64_t number = negative ? max + 1 : DecimalUpTo(node.text, max);
  if (number < min || number > max) {
    value.Wrong(value.Shown() + " is out of range" + expected);
    return std::nullopt;
  }
  return number;
}

std::optional<bool> ReadBool(const Value& value) {
  const YamlNode& node = value.node();
  const bool plain = value.Is(YamlNode::Kind::Scalar) && !node.quoted;
  if (!plain || (node.text != "true" && node.text != "false")) {
    value.Wrong(value.Shown() + " is neither true nor false; use true or false, without quotes");
    return std::nullopt;
  }
  return node.text == "true";
}

std::optional<std::string> ReadText(const Value& value, std::string_view what) {
  if (!value.Is(YamlNode::Kind::Scalar) || value.node().text.empty()) {
    value.Wrong((value.Is(YamlNode::Kind::Scalar) ? "empty text" : value.Shown()) + " is not " +
                std::string(what) + "; use text");
    return std::nullopt;
  }
  return value.node().text;
}

std::optional<std::int32_t> ReadWord(const Value& value, const WordList& words) {
  if (value.Is(YamlNode::Kind::Scalar)) {
    for (const Word& word : words.words) {
      if (word.text == value.node().text) {
        return word.number;
      }
    }
  }
  value.Wrong(value.Shown() + " is not " + std::string(words.what) + "; use " +
              JoinAlternatives(Texts(words)));
  return std::nullopt;
}

std::optional<std::uint16_t> ReadCentiseconds(const Value& value, std::uint16_t min,
                                              std::uint16_t max) {
  const std::string expected =
      "use a time from " + ShowCentiseconds(min) + " to " + ShowCentiseconds(max);
  const auto time =
      value.Is(YamlNode::Kind::Scalar) ? ParseCentiseconds(value.node().text) : std::nullopt;
  if (!time) {
    value.Wrong(value.Shown() + " is not a time in hundredths of a second or coarser; " + expected +
                ", such as " + ShowCentiseconds(min));
    return std::nullopt;
  }
  if (*time < min || *time > max) {
    value.Wrong(value.Shown() + " is out of range; " + expected);
    return std::nullopt;
  }
  return static_cast<std::uint16_t>(*time);
}

bool CheckList(const Value& value, std::string_view what) {
  if (value.Is(YamlNode::Kind::Sequence)) {
    return true;
  }
  value.Wrong(value.Shown() + " is not a list; use a list of " + std::string(what) +
              ", [] for none");
  return false;
}

std::optional<std::vector<const YamlNode*>> FindMembers(const Value& map,
                                                        const std::vector<KeyRule>& rules,
                                                        std::string_view owner) {
  if (!map.Is(YamlNode::Kind::Map)) {
    map.Wrong(map.Shown() + " is not " + std::string(owner) + "; use a map with the key " +
              std::string(rules.front().key));
    return std::nullopt;
  }
  std::vector<const YamlNode*> keys(rules.size());
  std::vector<const YamlNode*> values(rules.size());
  const auto& children = map.node().children;
  for (std::size_t i = 0; i + 1 < children.size(); i += 2) {
    const YamlNode& key = *children[i];
    const auto rule = std::find_if(rules.begin(), rules.end(), [&key](const KeyRule& candidate) {
      return key.kind == YamlNode::Kind::Scalar && candidate.key == key.text;
    });
    if (rule == rules.end()) {
      NoteUnknownKey(map, key, rules, owner);
      continue;
    }
    const auto index = static_cast<std::size_t>(rule - rules.begin());
    if (keys[index] != nullptr) {
      map.WrongAt(key.mark, map.Member(rule->key, key).Path(),
                  "is given twice, first on line " + std::to_string(keys[index]->mark.line) +
                      "; give it once");
      continue;
    }
    keys[index] = &key;
    values[index] = children[i + 1];
  }
  for (std::size_t i = 0; i < rules.size(); ++i) {
    if (keys[i] == nullptr && rules[i].presence == Presence::Required) {
      map.Missing(rules[i].key, owner);
    }
  }
  return values;
}

}  // namespace cfm_agent
