// SPDX-License-Identifier: Apache-2.0
#include "fields.h"

#include <algorithm>
#include <iterator>

namespace cfm_mgr {
namespace {

constexpr Choice kMdNameFormatList[] = {
    {kMdNameFormatNone, "none"}, {2, "DNS-like"}, {3, "MAC and number"}, {4, "character string"}};
constexpr Choice kMaNameFormatList[] = {{1, "primary VID"}, {2, "character string"},
                                        {3, "number"},      {4, "VPN id"},
                                        {32, "ICC"},        {33, "ICC and country code"}};
constexpr Choice kCcmIntervalList[] = {{0, "invalid"}, {1, "3.33 ms"}, {2, "10 ms"}, {3, "100 ms"},
                                       {4, "1 s"},     {5, "10 s"},    {6, "1 min"}, {7, "10 min"}};
// An MA may also defer to its MD, which itself has nothing to defer to.
constexpr Choice kSenderIdList[] = {
    {1, "none"}, {2, "chassis"}, {3, "manage"}, {4, "chassis and manage"}, {5, "defer"}};
constexpr Choice kMhfCreationList[] = {{1, "none"}, {2, "default"}, {3, "explicit"}, {4, "defer"}};
constexpr Choice kDirectionList[] = {{1, "down"}, {2, "up"}};
constexpr Choice kAlarmPriorityList[] = {{1, "all"},
                                         {2, "MAC, remote, error, xcon"},
                                         {3, "remote, error, xcon"},
                                         {4, "error, xcon"},
                                         {5, "xcon"},
                                         {6, "none"}};
constexpr Choice kFaultActionList[] = {{0, "none"}, {1, "block"}, {2, "shutdown"}};

const Choice* Find(const Choices& choices, std::int32_t value) {
  const Choice* found = std::find_if(choices.begin(), choices.end(),
                                     [value](const Choice& c) { return c.value == value; });
  return found == choices.end() ? nullptr : found;
}

std::string Named(const Choice& choice) {
  return std::to_string(choice.value) + " (" + choice.name + ")";
}

std::string Wrong(const Field& field, const std::string& value, const std::string& expected) {
  return std::string(field.name) + " " + value + ": expected " + expected;
}

std::string Join(const std::vector<std::uint32_t>& values) {
  std::string text;
  for (const std::uint32_t value : values) {
    if (!text.empty()) text += ' ';
    text += std::to_string(value);
  }
  return text.empty() ? "none" : text;
}

}  // namespace

const Choices kMdNameFormats(kMdNameFormatList);
const Choices kMaNameFormats(kMaNameFormatList);
const Choices kCcmIntervals(kCcmIntervalList);
const Choices kMdSenderIds(kSenderIdList, std::size(kSenderIdList) - 1);
const Choices kMaSenderIds(kSenderIdList);
const Choices kMdMhfCreations(kMhfCreationList, std::size(kMhfCreationList) - 1);
const Choices kMaMhfCreations(kMhfCreationList);
const Choices kDirections(kDirectionList);
const Choices kAlarmPriorities(kAlarmPriorityList);
const Choices kFaultActions(kFaultActionList);

std::string Show(const Field&, bool value) { return value ? "yes" : "no"; }

std::string Show(const Field&, std::uint32_t value) { return std::to_string(value); }

std::string Show(const Field& field, std::int32_t value) {
  const Choice* choice = field.choices == nullptr ? nullptr : Find(*field.choices, value);
  return choice == nullptr ? std::to_string(value) : Named(*choice);
}

std::string Show(const Field&, const std::string& value) { return Quote(value); }

std::string Show(const Field&, const std::vector<std::uint32_t>& values) { return Join(values); }

std::string Show(const Field&, const Ais& ais) {
  const std::string flag_d = std::string(", flag D ") + (ais.flag_d ? "yes" : "no");
  if (!ais.enabled) return "off" + flag_d;
  return "on, octet A " + std::to_string(ais.octet_a) + ", word B " + std::to_string(ais.word_b) +
         ", octet C " + std::to_string(ais.octet_c) + ", ids " + Join(ais.id_set) + flag_d;
}

std::string Quote(const std::string& name) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string text = "\"";
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      text += '\\';
      text += c;
    } else if (byte >= 0x20 && byte < 0x7f) {
      text += c;
    } else {
      text += "\\x";
      text += kHex[byte >> 4U];
      text += kHex[byte & 0xfU];
    }
  }
  return text += '"';
}

std::string Plural(std::size_t count, const char* noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string FaultOf(const Field& field, std::uint32_t value) {
  if (value >= field.min && value <= field.max) return {};
  return Wrong(field, std::to_string(value),
               std::to_string(field.min) + " to " + std::to_string(field.max));
}

std::string FaultOf(const Field& field, std::int32_t value) {
  if (field.choices == nullptr || Find(*field.choices, value) != nullptr) return {};
  std::string expected;
  for (const Choice& choice : *field.choices) {
    if (!expected.empty()) expected += ", ";
    expected += Named(choice);
  }
  return Wrong(field, std::to_string(value), expected);
}

std::string FaultOf(const Field& field, const std::vector<std::uint32_t>& values) {
  for (const std::uint32_t value : values) {
    std::string fault = FaultOf(field, value);
    if (!fault.empty()) return fault;
  }
  return {};
}

}  // namespace cfm_mgr
