/* SPDX-License-Identifier: Apache-2.0 */
// The configuration that the examples provision: endpoint 1 of a line of two.
#ifndef CFM_EXAMPLES_COMMON_ONE_ENDPOINT_H
#define CFM_EXAMPLES_COMMON_ONE_ENDPOINT_H

#include <cfm/hierarchy.h>

#include <cstdint>
#include <string>

namespace examples {

inline constexpr char kDomain[] = "example";
inline constexpr char kAssociation[] = "line-1";
inline constexpr std::uint16_t kHere = 1;
inline constexpr std::uint16_t kThere = 2;

// Throws std::invalid_argument if this cannot be the name of a network interface. Whether there is
// such an interface does not matter here: an endpoint without one is provisioned all the same.
cfm::hierarchy OneEndpoint(const std::string& interface);

}  // namespace examples

#endif
