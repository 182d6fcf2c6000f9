/* SPDX-License-Identifier: Apache-2.0 */
// What a configuration file may have and is hardly meant: it is taken, and whoever wrote it is
// told.
#ifndef CFM_AGENT_CORE_WARNINGS_H
#define CFM_AGENT_CORE_WARNINGS_H

#include <string>
#include <vector>

#include "core/config.h"
#include "core/mistake.h"
#include "core/value.h"

namespace cfm_agent {

// The warnings of a file without mistakes, whose text `file` is and whose meaning is `config`, in
// the order of the file.
Warnings FindWarnings(const Value& file, const Config& config);

}  // namespace cfm_agent

#endif
