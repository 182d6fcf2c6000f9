/* SPDX-License-Identifier: Apache-2.0 */
// What holds of the mistakes that are found in any text.
#ifndef CFM_FUZZ_MISTAKE_RULES_H
#define CFM_FUZZ_MISTAKE_RULES_H

#include <string_view>

#include "core/mistake.h"

namespace cfm_fuzz {

/// Requires mistakes to name lines of the text, to be in their order, and to be fit for printing.
void RequireRightMistakes(const cfm_agent::Mistakes& mistakes, std::string_view text);

}  // namespace cfm_fuzz

#endif
