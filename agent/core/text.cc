// SPDX-License-Identifier: Apache-2.0
#include "core/text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>

namespace cfm_agent {
namespace {

constexpr std::size_t kLongestQuote = 40;
constexpr std::size_t kLongestGuess = 40;

// Length of the well-formed UTF-8 sequence that `text` begins with, or 0.
std::size_t Utf8Length(std::string_view text) {
  const auto octet = [&text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t lead = octet(0);
  const std::size_t length = lead < 0x80                   ? 1
                             : lead >= 0xC2 && lead < 0xE0 ? 2
                             : lead >= 0xE0 && lead < 0xF0 ? 3
                             : lead >= 0xF0 && lead < 0xF5 ? 4
                                                           : 0;
  if (length == 0 || length > text.size()) {
    return 0;
  }
  for (std::size_t i = 1; i < length; ++i) {
    if ((octet(i) & 0xC0U) != 0x80) {
      return 0;
    }
  }
  const bool overlong = (lead == 0xE0 && octet(1) < 0xA0) || (lead == 0xF0 && octet(1) < 0x90);
  const bool surrogate = lead == 0xED && octet(1) >= 0xA0;
  const bool beyond = lead == 0xF4 && octet(1) >= 0x90;
  return overlong || surrogate || beyond ? 0 : length;
}

// The character of a well-formed sequence.
std::uint32_t CharacterOf(std::string_view sequence) {
  const auto lead = static_cast<std::uint8_t>(sequence.front());
  std::uint32_t character = sequence.size() == 1 ? lead : lead & (0xFFU >> (sequence.size() + 1));
  for (const char c : sequence.substr(1)) {
    character = (character << 6U) | (static_cast<std::uint8_t>(c) & 0x3FU);
  }
  return character;
}

// Control characters, marks that reorder or break a line, and what has neither shape nor width.
bool IsTrouble(std::uint32_t character) {
  struct Range {
    std::uint32_t first;
    std::uint32_t last;
  };
  constexpr std::array kTrouble = {
      Range{0x00, 0x1F},     Range{0x7F, 0x9F},     Range{0x061C, 0x061C}, Range{0x200B, 0x200B},
      Range{0x200E, 0x200F}, Range{0x2028, 0x202E}, Range{0x2060, 0x206F}, Range{0xFEFF, 0xFEFF}};
  return std::any_of(kTrouble.begin(), kTrouble.end(), [character](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

void AppendHex(std::string& out, char c) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const auto octet = static_cast<std::uint8_t>(c);
  out += "\\x";
  out += kDigits[octet >> 4U];
  out += kDigits[octet & 0x0FU];
}

std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t substituted = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({substituted, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = Utf8Length(text);
    if (length == 0) {
      return false;
    }
    text.remove_prefix(length);
  }
  return true;
}

std::string Printable(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = std::max<std::size_t>(Utf8Length(text), 1);
    const std::string_view sequence = text.substr(0, length);
    text.remove_prefix(length);
    if (Utf8Length(sequence) == 0 || IsTrouble(CharacterOf(sequence))) {
      for (const char c : sequence) {
        AppendHex(out, c);
      }
      continue;
    }
    if (sequence == "\\" || sequence == "\"") {
      out += '\\';
    }
    out += sequence;
  }
  return out;
}

std::string Quoted(std::string_view text) {
  if (text.size() <= kLongestQuote) {
    return '"' + Printable(text) + '"';
  }
  std::size_t end = kLongestQuote;
  while (end > kLongestQuote - 4 && (static_cast<std::uint8_t>(text[end]) & 0xC0U) == 0x80) {
    --end;
  }
  return '"' + Printable(text.substr(0, end)) + "...\"";
}

std::string Count(std::uint64_t number, std::string_view noun) {
  return Count(number, noun, std::string(noun) + 's');
}

std::string Count(std::uint64_t number, std::string_view one, std::string_view many) {
  return std::to_string(number) + ' ' + std::string(number == 1 ? one : many);
}

std::string JoinAlternatives(const std::vector<std::string_view>& words) {
  std::string out;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) {
      out += i + 1 == words.size() ? " or " : ", ";
    }
    out += words[i];
  }
  return out;
}

std::optional<std::string_view> ClosestWord(std::string_view word,
                                            const std::vector<std::string_view>& candidates) {
  if (word.size() > kLongestGuess) {
    return std::nullopt;
  }
  std::optional<std::string_view> best;
  std::size_t best_distance = std::max<std::size_t>(2, word.size() / 3 + 1);
  for (const std::string_view candidate : candidates) {
    if (candidate.size() > kLongestGuess) {
      continue;
    }
    const std::size_t distance = EditDistance(word, candidate);
    if (distance < best_distance && distance < candidate.size()) {
      best = candidate;
      best_distance = distance;
    }
  }
  return best;
}

}  // namespace cfm_agent
