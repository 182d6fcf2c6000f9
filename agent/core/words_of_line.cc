// SPDX-License-Identifier: Apache-2.0
#include "core/words_of_line.h"

#include <algorithm>
#include <optional>

namespace cfm_agent {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::optional<unsigned> HexDigit(char c) {
  if (c >= '0' && c <= '9') {
    return static_cast<unsigned>(c - '0');
  }
  if (c >= 'a' && c <= 'f') {
    return static_cast<unsigned>(c - 'a') + 10;
  }
  if (c >= 'A' && c <= 'F') {
    return static_cast<unsigned>(c - 'A') + 10;
  }
  return std::nullopt;
}

// Reads what follows a backslash at `at`, and moves `at` behind it.
std::optional<char> ReadEscape(std::string_view line, std::size_t& at) {
  const char kind = at + 1 < line.size() ? line[at + 1] : '\0';
  if (kind == '"' || kind == '\\') {
    at += 2;
    return kind;
  }
  const auto high = at + 3 < line.size() ? HexDigit(line[at + 2]) : std::nullopt;
  const auto low = at + 3 < line.size() ? HexDigit(line[at + 3]) : std::nullopt;
  if (kind != 'x' || !high || !low) {
    return std::nullopt;
  }
  at += 4;
  return static_cast<char>(*high * 16 + *low);
}

// Reads the rest of a quoted part of a word, from behind its first quote.
std::string ReadQuoted(std::string_view line, std::size_t& at, std::string& text) {
  while (at < line.size() && line[at] != '"') {
    if (line[at] != '\\') {
      text += line[at++];
      continue;
    }
    const auto octet = ReadEscape(line, at);
    if (!octet) {
      return "a backslash in quotes is followed by \", \\ or xNN";
    }
    text += *octet;
  }
  if (at == line.size()) {
    return "a quote is not closed";
  }
  ++at;
  return "";
}

}  // namespace

LineWords SplitLine(std::string_view line) {
  LineWords result;
  std::size_t at = 0;
  while (true) {
    while (at < line.size() && IsBlank(line[at])) {
      ++at;
    }
    if (at == line.size() || line[at] == '#') {
      result.last_is_open = false;
      return result;
    }
    LineWord& word = result.words.emplace_back();
    word.begin = at;
    while (at < line.size() && !IsBlank(line[at])) {
      if (line[at] != '"') {
        word.text += line[at++];
        continue;
      }
      word.quoted_from = std::min(word.quoted_from, word.text.size());
      result.mistake = ReadQuoted(line, ++at, word.text);
      if (!result.mistake.empty()) {
        result.last_is_open = true;
        return result;
      }
    }
    if (at == line.size()) {
      result.last_is_open = true;
      return result;
    }
  }
}

}  // namespace cfm_agent
