// SPDX-License-Identifier: Apache-2.0
#include "diagnostics.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace devhost {
namespace {

/** Kinds carry process numbers; beyond this many of them the counts start anew. */
constexpr std::size_t kMaxKinds = 1000;

bool IsPowerOfTen(std::uint64_t n) {
  while (n >= 10 && n % 10 == 0) {
    n /= 10;
  }
  return n == 1;
}

}  // namespace

void WriteToStderr(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written <= 0) {
      return;
    }
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

std::string Printable(std::string_view text) {
  constexpr std::string_view kHex = "0123456789abcdef";
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7f) {
      out += "\\x";
      out += kHex[byte >> 4U];
      out += kHex[byte & 0xfU];
    } else {
      out += c;
    }
  }
  return out;
}

std::string ErrorText(int error) { return std::generic_category().message(-error); }

void Diagnostics::Say(std::string_view text) const {
  WriteToStderr(prefix_ + Printable(text) + '\n');
}

bool Diagnostics::SayCounted(const std::string& kind, std::string_view text) {
  if (counts_.size() >= kMaxKinds && counts_.find(kind) == counts_.end()) {
    counts_.clear();
  }
  const std::uint64_t count = ++counts_[kind];
  if (!IsPowerOfTen(count)) {
    return false;
  }
  Say(count == 1 ? std::string(text)
                 : std::string(text) + " (" + std::to_string(count) + " such so far)");
  return true;
}

}  // namespace devhost
