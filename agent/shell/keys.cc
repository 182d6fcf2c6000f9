// SPDX-License-Identifier: Apache-2.0
#include "shell/keys.h"

#include <cwchar>

namespace cfm_agent {
namespace {

constexpr char kEscape = '\x1b';
constexpr char kPrefix = '\x18';  // Ctrl-X

// Longer than any sequence that terminals send.
constexpr std::size_t kLongestSequence = 32;

bool IsWholeCharacter(std::string_view bytes) {
  std::mbstate_t state = {};
  return !bytes.empty() &&
         std::mbrlen(bytes.data(), bytes.size(), &state) != static_cast<std::size_t>(-2);
}

// What follows "Esc [": parameters and a last character.
bool IsWholeSequence(std::string_view bytes) {
  const bool parameter = !bytes.empty() && bytes.back() >= ' ' && bytes.back() <= '?';
  return !bytes.empty() && (!parameter || bytes.size() >= kLongestSequence);
}

}  // namespace

bool IsWholeKey(std::string_view bytes) {
  if (bytes.empty() || (bytes.front() != kEscape && bytes.front() != kPrefix)) {
    return IsWholeCharacter(bytes);
  }
  const std::string_view rest = bytes.substr(1);
  if (bytes.front() == kEscape && !rest.empty() && rest.front() == '[') {
    return IsWholeSequence(rest.substr(1));
  }
  if (bytes.front() == kEscape && !rest.empty() && rest.front() == 'O') {
    return rest.size() > 1;
  }
  return IsWholeCharacter(rest);
}

}  // namespace cfm_agent
