/* SPDX-License-Identifier: Apache-2.0 */
// What holds of every configuration that the agent accepts, checked on the result alone.
#ifndef CFM_FUZZ_CONFIG_RULES_H
#define CFM_FUZZ_CONFIG_RULES_H

#include "core/config.h"

namespace cfm_fuzz {

/// Requires every name, number and reference to be one that the standards and the documentation of
/// the configuration file allow.
void RequireRightConfig(const cfm_agent::Config& config);

}  // namespace cfm_fuzz

#endif
