/* SPDX-License-Identifier: Apache-2.0 */
// What a fuzz target promises. A promise that does not hold ends the process, which the fuzzer
// takes for a finding.
#ifndef CFM_FUZZ_REQUIRE_H
#define CFM_FUZZ_REQUIRE_H

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace cfm_fuzz {

[[noreturn]] inline void Fail(std::string_view promise) {
  std::fprintf(stderr, "broken promise: %.*s\n", static_cast<int>(promise.size()), promise.data());
  std::abort();
}

inline void Require(bool holds, std::string_view promise) {
  if (!holds) {
    Fail(promise);
  }
}

}  // namespace cfm_fuzz

#endif
