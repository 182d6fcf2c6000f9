/* SPDX-License-Identifier: Apache-2.0 */
// The members of the longer JSON objects.
#ifndef CFM_AGENT_CORE_JSON_ANSWERS_H
#define CFM_AGENT_CORE_JSON_ANSWERS_H

#include "core/findings.h"
#include "core/json_values.h"
#include "core/show.h"
#include "core/test_tracker.h"

namespace cfm_agent {

// What a test of this kind has found. Each kind has the same members always, null where nothing
// is known.
void AddFindings(Json& object, TestKind kind, const Findings& findings);

void AddAnswer(Json& object, const ShowAnswer& answer);

}  // namespace cfm_agent

#endif
