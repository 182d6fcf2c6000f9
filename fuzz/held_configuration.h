/* SPDX-License-Identifier: Apache-2.0 */
// What a server holds that has been told a configuration and nothing else, written down from the
// model alone.
#ifndef CFM_FUZZ_HELD_CONFIGURATION_H
#define CFM_FUZZ_HELD_CONFIGURATION_H

#include <cfm/hierarchy.h>
#include <cfm/probe.h>

#include "server_model.h"

namespace cfm_fuzz {

/// `config` is a consistent one.
bool Holds(const cfm_test::ServerModel& server, const cfm::hierarchy& config);
bool Holds(const cfm_test::ServerModel& server, const cfm::probe& config);

}  // namespace cfm_fuzz

#endif
