/* SPDX-License-Identifier: Apache-2.0 */
// Reads the probes of a configuration file.
#ifndef CFM_AGENT_CORE_PROBE_READER_H
#define CFM_AGENT_CORE_PROBE_READER_H

#include <cfm/probe.h>

#include "core/hierarchy_reader.h"
#include "core/value.h"

namespace cfm_agent {

// Each probe must refer to an endpoint of the hierarchy, and to a remote one in its MEP list.
cfm::probe ReadProbes(const Value& probes, const HierarchyDraft& hierarchy);

}  // namespace cfm_agent

#endif
