/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_SUPPORT_EXHAUSTIVE_H
#define CFM_TESTS_SUPPORT_EXHAUSTIVE_H

#include <cstdlib>

namespace cfm_test {

/** Whether the tests are to take their time: CFM_EXHAUSTIVE is set in the environment. */
inline bool IsExhaustive() {
  const char* const value = std::getenv("CFM_EXHAUSTIVE");  // NOLINT(concurrency-mt-unsafe)
  return value != nullptr && *value != '\0';
}

}  // namespace cfm_test

#endif
