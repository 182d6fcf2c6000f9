#include "core/mac.h"

#include <algorithm>

namespace cfm {

std::string st_mac::to_string() const {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t octet : octets) {
    if (!text.empty()) {
      text += ':';
    }
    text += digits[octet >> 4U];
    text += digits[octet & 0x0fU];
  }
  return text;
}

namespace core {

st_mac MacFromBytes(std::string_view bytes) {
  st_mac mac;
  std::copy_n(bytes.begin(), std::min(bytes.size(), mac.octets.size()), mac.octets.begin());
  return mac;
}

}  // namespace core
}  // namespace cfm
