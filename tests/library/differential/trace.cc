// SPDX-License-Identifier: Apache-2.0
#include "trace.h"

#include <algorithm>
#include <cstddef>
#include <sstream>

#include "recording_host.h"
#include "wire_text.h"

namespace cfm_test {
namespace {

// Lengths of the longest common subsequences of the traces' ends, by where the ends begin.
std::vector<std::vector<std::size_t>> CommonLengths(const Trace& a, const Trace& b) {
  std::vector<std::vector<std::size_t>> lengths(a.size() + 1,
                                                std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = a.size(); i-- > 0;) {
    for (std::size_t j = b.size(); j-- > 0;) {
      lengths[i][j] =
          a[i] == b[j] ? lengths[i + 1][j + 1] + 1 : std::max(lengths[i + 1][j], lengths[i][j + 1]);
    }
  }
  return lengths;
}

}  // namespace

std::string Printable(std::string_view octets) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const char c : octets) {
    const auto octet = static_cast<unsigned char>(c);
    if (octet >= 0x20 && octet < 0x7f) {
      text += c;
    } else {
      text += "\\x";
      text += digits[octet >> 4U];
      text += digits[octet & 0x0fU];
    }
  }
  return text;
}

std::string Text(const TraceEntry& entry) {
  if (entry.signal == nullptr) {
    std::istringstream lines(entry.content);
    std::string text = "log";
    const char* before = " ";
    for (std::string line; std::getline(lines, line); before = "\n        ") {
      text += before + Printable(line);
    }
    return text;
  }
  const std::string name = NameOf(entry.signal);
  std::string text = "send " + std::to_string(entry.destination) + " " + name;
  return entry.has_payload ? text + " " + Schema::Get().Text(MessageOf(name), entry.content)
                           : text + " no payload";
}

std::string Diff(const Trace& expected, const Trace& actual) {
  const auto lengths = CommonLengths(expected, actual);
  std::string out;
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < expected.size() || j < actual.size()) {
    if (i < expected.size() && j < actual.size() && expected[i] == actual[j]) {
      out += "  = " + Text(expected[i]) + "\n";
      ++i;
      ++j;
    } else if (j == actual.size() ||
               (i < expected.size() && lengths[i + 1][j] >= lengths[i][j + 1])) {
      out += "  - " + Text(expected[i++]) + "\n";
    } else {
      out += "  + " + Text(actual[j++]) + "\n";
    }
  }
  return out;
}

}  // namespace cfm_test
