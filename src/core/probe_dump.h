/* SPDX-License-Identifier: Apache-2.0 */
// The log's rendering of a set of probes.
#ifndef CFM_SRC_CORE_PROBE_DUMP_H
#define CFM_SRC_CORE_PROBE_DUMP_H

#include <cfm/probe.h>

#include <string>

namespace cfm::core {

/// One line per probe and session, in the order of the maps.
std::string ProbeDump(const probe& config);

}  // namespace cfm::core

#endif
