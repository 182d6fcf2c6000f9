/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * MAC addresses.
 */
#ifndef CFM_MAC_H
#define CFM_MAC_H

#include <cfm/export.h>

#include <array>
#include <cstdint>
#include <string>

namespace cfm {

/** A MAC address. */
struct CFM_API st_mac {
  /** The six octets in transmission order. */
  std::array<std::uint8_t, 6> octets{};

  /** The address as 17 characters of text: lower-case hexadecimal octets joined by colons. */
  std::string to_string() const;
};

}  // namespace cfm

#endif
