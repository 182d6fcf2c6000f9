// SPDX-License-Identifier: Apache-2.0
#include "names.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace devhost {
namespace {

constexpr std::string_view kUniquePrefix = ":1.";
constexpr std::size_t kMaxProcessName = 200;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '-' || c == '_';
}

}  // namespace

std::string UniqueNameOf(vorx_pid_t pid) {
  return std::string(kUniquePrefix) + std::to_string(pid - 1);
}

vorx_pid_t PidOf(std::string_view unique_name) {
  if (unique_name.substr(0, kUniquePrefix.size()) != kUniquePrefix) {
    return 0;
  }
  const std::string_view digits = unique_name.substr(kUniquePrefix.size());
  vorx_pid_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool usable = error == std::errc() && end == digits.data() + digits.size() && number >= 0 &&
                      number < std::numeric_limits<vorx_pid_t>::max();
  return usable ? number + 1 : 0;
}

bool IsProcessName(std::string_view name) {
  return !name.empty() && name.size() <= kMaxProcessName && !IsDigit(name.front()) &&
         std::all_of(name.begin(), name.end(), IsNameCharacter);
}

std::string BusNameOf(std::string_view process_name) {
  return std::string(kBusNamespace) + '.' + std::string(process_name);
}

std::string_view ProcessNameOf(std::string_view bus_name) {
  const std::size_t prefix = kBusNamespace.size();
  if (bus_name.size() <= prefix + 1 || bus_name.substr(0, prefix) != kBusNamespace ||
      bus_name[prefix] != '.') {
    return {};
  }
  return bus_name.substr(prefix + 1);
}

std::string QuoteForMatch(std::string_view value) {
  std::string quoted = "'";
  for (const char c : value) {
    // Nothing can be escaped between quotes, so an apostrophe has to stand outside of them.
    quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  }
  return quoted + '\'';
}

}  // namespace devhost
