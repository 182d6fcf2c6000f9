/* SPDX-License-Identifier: Apache-2.0 */
// Makes a failing script small.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_SHRINK_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_SHRINK_H

#include <functional>

#include "script.h"

namespace cfm_test {

/// Takes steps, entities, list elements and values out of the script, one at a time and again and
/// again, as long as it still fails.
Script Shrink(Script script, const std::function<bool(const Script&)>& fails);

}  // namespace cfm_test

#endif
