/* SPDX-License-Identifier: Apache-2.0 */
// Enumerations and narrow integers to and from the 32-bit fields of the wire.
#ifndef CFM_SRC_CORE_NUMBERS_H
#define CFM_SRC_CORE_NUMBERS_H

#include <cstdint>

namespace cfm::core {

/// An enumeration's value as a wire field carries it, known or not.
template <typename Enum>
constexpr std::int32_t Number(Enum value) {
  return static_cast<std::int32_t>(value);
}

constexpr std::uint16_t Low16(std::uint32_t value) { return static_cast<std::uint16_t>(value); }

constexpr std::uint8_t Low8(std::uint32_t value) { return static_cast<std::uint8_t>(value); }

}  // namespace cfm::core

#endif
