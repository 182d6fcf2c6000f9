/* SPDX-License-Identifier: Apache-2.0 */
// Finds out whether two players of a script agree.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_MISMATCH_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_MISMATCH_H

#include <string>

#include "script.h"

namespace cfm_test {

/// Empty when the players do the same in every step. Otherwise the smallest script found for which
/// they do not, the first step in which they differ, and what differs in it.
std::string Mismatch(const Script& script, const Player& expected, const Player& actual);

}  // namespace cfm_test

#endif
