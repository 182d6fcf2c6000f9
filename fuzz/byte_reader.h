/* SPDX-License-Identifier: Apache-2.0 */
// Decisions out of a fuzzer's input.
#ifndef CFM_FUZZ_BYTE_READER_H
#define CFM_FUZZ_BYTE_READER_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cfm_fuzz {

class ByteReader {
 public:
  ByteReader(const std::uint8_t* data, std::size_t size)
      : bytes_(reinterpret_cast<const char*>(data), size) {}

  bool AtEnd() const { return bytes_.empty(); }

  /// 0 when there is no more.
  std::uint8_t Next() {
    const std::string_view byte = Take(1);
    return byte.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(byte.front());
  }

  std::uint16_t NextTwo() {
    const unsigned low = Next();
    return static_cast<std::uint16_t>(low | unsigned{Next()} << 8U);
  }

  /// Up to `count` bytes.
  std::string_view Take(std::size_t count) {
    const std::string_view taken = bytes_.substr(0, count);
    bytes_.remove_prefix(taken.size());
    return taken;
  }

 private:
  std::string_view bytes_;
};

}  // namespace cfm_fuzz

#endif
