/* SPDX-License-Identifier: Apache-2.0 */
// Small changes of a configuration, decided by a fuzzer's input. Few names and identifiers, so that
// changes meet.
#ifndef CFM_FUZZ_CONFIGURATION_EDITS_H
#define CFM_FUZZ_CONFIGURATION_EDITS_H

#include <cfm/hierarchy.h>
#include <cfm/probe.h>

#include "byte_reader.h"

namespace cfm_fuzz {

/// Adds, removes or changes an entity. What it adds holds the names that its keys say. The name
/// format goes with the name: a change of it alone is not sent.
void EditHierarchy(ByteReader& input, cfm::hierarchy& config);

/// Gives an entity a name or an identifier other than its keys say.
void Spoil(ByteReader& input, cfm::hierarchy& config);

/// Gives all entities the names and identifiers that their keys say.
void Repair(cfm::hierarchy& config);

/// Whether all entities hold the names and identifiers that their keys say.
bool IsConsistent(const cfm::hierarchy& config);

/// Adds, removes or changes a probe or a session. A probe's own identifier may be any.
void EditProbes(ByteReader& input, cfm::probe& config);

}  // namespace cfm_fuzz

#endif
