// SPDX-License-Identifier: Apache-2.0
#include "net/simulated/description_values.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <string_view>

namespace cfm_mgr::net {
namespace {

using cfm_agent::Value;
using cfm_agent::YamlNode;

constexpr std::size_t kMaxNameSize = 15;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A decimal number of at most nine digits before the point and nine behind it, as thousand
// millionths.
std::optional<std::int64_t> ParseNano(std::string_view text) {
  constexpr std::size_t kDigits = 9;
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string whole(text.substr(0, point));
  std::string fraction(text.substr(std::min(point + 1, text.size())));
  const bool is_right = !whole.empty() && whole.size() <= kDigits && fraction.size() <= kDigits &&
                        (point == text.size()) == fraction.empty() &&
                        std::all_of(whole.begin(), whole.end(), IsDigit) &&
                        std::all_of(fraction.begin(), fraction.end(), IsDigit);
  if (!is_right) return std::nullopt;
  fraction.resize(kDigits, '0');
  return std::stoll(whole) * 1'000'000'000 + std::stoll(fraction);
}

std::string_view TextOf(const Value& value) {
  return value.Is(YamlNode::Kind::Scalar) ? std::string_view(value.node().text) : "";
}

bool TakeEnd(std::string_view& text, std::string_view end) {
  if (text.size() < end.size() || text.substr(text.size() - end.size()) != end) return false;
  text.remove_suffix(end.size());
  return true;
}

bool IsNameCharacter(char c) {
  return IsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' || c == '_';
}

bool IsName(std::string_view text) {
  return !text.empty() && text.size() <= kMaxNameSize &&
         std::all_of(text.begin(), text.end(), IsNameCharacter);
}

std::optional<engine::Mac> ParseMac(std::string_view text) {
  engine::Mac mac{};
  if (text.size() != mac.size() * 3 - 1) return std::nullopt;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool is_right = i % 3 == 2 ? c == ':' : std::isxdigit(static_cast<unsigned char>(c)) != 0;
    if (!is_right) return std::nullopt;
  }
  for (std::size_t i = 0; i < mac.size(); ++i) {
    mac[i] = static_cast<std::uint8_t>(std::stoul(std::string(text.substr(i * 3, 2)), nullptr, 16));
  }
  return mac;
}

}  // namespace

std::optional<engine::Time> ReadTime(const Value& value) {
  struct Unit {
    std::string_view name;
    std::int64_t nanoseconds;
  };
  constexpr std::array kUnits = {Unit{"us", 1'000}, Unit{"ms", 1'000'000},
                                 Unit{"s", 1'000'000'000}};
  constexpr std::int64_t kSecond = 1'000'000'000;
  constexpr engine::Time kLongest = std::chrono::hours(24);
  std::string_view text = TextOf(value);
  for (const Unit& unit : kUnits) {
    if (!TakeEnd(text, unit.name)) continue;
    const auto number = ParseNano(text);
    // Days in any unit stay far below what 64 bits hold.
    if (!number || *number / kSecond > kLongest.count() / unit.nanoseconds) break;
    const engine::Time time(static_cast<engine::Time::rep>(std::llround(
        static_cast<double>(*number) / kSecond * static_cast<double>(unit.nanoseconds))));
    if (time > kLongest) break;
    return time;
  }
  value.Wrong(value.Shown() + " is not a time of at most a day; use a number with us, ms or s, " +
              "such as 250us, 1.5ms or 30s");
  return std::nullopt;
}

std::optional<double> ReadShare(const Value& value) {
  constexpr std::int64_t kPercent = 1'000'000'000;
  std::string_view text = TextOf(value);
  if (TakeEnd(text, "%")) {
    const auto number = ParseNano(text);
    if (number && *number <= 100 * kPercent) return static_cast<double>(*number) / kPercent / 100;
  }
  value.Wrong(value.Shown() + " is not a share of frames; use a number from 0% to 100%, such as " +
              "0.5%");
  return std::nullopt;
}

std::optional<engine::Mac> ReadMac(const Value& value) {
  const auto mac = ParseMac(TextOf(value));
  if (mac && ((*mac)[0] & 1U) == 0 && *mac != engine::Mac{}) return mac;
  value.Wrong(value.Shown() +
              " is not the address of a port; use six octets, the first one even, " +
              "such as 02:00:5e:00:00:01");
  return std::nullopt;
}

std::optional<std::string> ReadName(const Value& value) {
  const std::string_view text = TextOf(value);
  if (IsName(text)) return std::string(text);
  value.Wrong(value.Shown() + " is not a name; use at most 15 letters, digits, - and _");
  return std::nullopt;
}

std::optional<PortName> ReadPortName(const Value& value) {
  const std::string_view text = TextOf(value);
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view port = text.substr(std::min(point + 1, text.size()));
  if (IsName(text.substr(0, point)) && IsName(port)) {
    return PortName{std::string(text.substr(0, point)), std::string(port)};
  }
  value.Wrong(value.Shown() + " does not name a port; use the names of its bridge and of itself, " +
              "such as metro.trunk");
  return std::nullopt;
}

}  // namespace cfm_mgr::net
