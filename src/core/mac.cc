// SPDX-License-Identifier: Apache-2.0
#include "core/mac.h"

#include <algorithm>
#include <cstring>

namespace cfm {

std::string st_mac::to_string() const { return core::MacText(*this).data(); }

namespace core {
namespace {

constexpr std::array<char, 512> HexOfOctets() {
  constexpr std::string_view digits = "0123456789abcdef";
  std::array<char, 512> hex{};
  for (std::size_t octet = 0; octet < 256; ++octet) {
    hex[2 * octet] = digits[octet >> 4U];
    hex[2 * octet + 1] = digits[octet & 0x0fU];
  }
  return hex;
}

// Two digits for each octet: addresses are rendered for every report of a test.
constexpr std::array<char, 512> kHexOfOctet = HexOfOctets();

}  // namespace

st_mac MacFromBytes(std::string_view bytes) {
  st_mac mac;
  if (bytes.size() >= mac.octets.size()) {
    std::memcpy(mac.octets.data(), bytes.data(), mac.octets.size());
  } else {
    std::copy(bytes.begin(), bytes.end(), mac.octets.begin());
  }
  return mac;
}

std::array<char, 18> MacText(const st_mac& mac) {
  std::array<char, 18> text{};
  char* out = text.data();
  for (const std::uint8_t octet : mac.octets) {
    std::memcpy(out, &kHexOfOctet[std::size_t{2} * octet], 2);
    out[2] = ':';
    out += 3;
  }
  text.back() = '\0';
  return text;
}

}  // namespace core
}  // namespace cfm
