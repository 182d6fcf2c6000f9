/* SPDX-License-Identifier: Apache-2.0 */
// The test cases: scripts made from a seed.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_RANDOM_SCRIPT_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_RANDOM_SCRIPT_H

#include <cstdint>

#include "script.h"

namespace cfm_test {

/// A client in step with an empty server is given one hierarchy, then another; now and then a
/// third.
Script HierarchyScript(std::uint64_t seed);

/// The same with probes.
Script ProbeScript(std::uint64_t seed);

/// A client with or without applied configurations, with or without others that wait, gets a cache
/// reply, and now and then more happens afterwards.
Script CacheScript(std::uint64_t seed);

}  // namespace cfm_test

#endif
