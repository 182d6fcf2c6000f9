/* SPDX-License-Identifier: Apache-2.0 */
// One or more records of every kind.
#ifndef CFM_TESTS_AGENT_SAMPLE_RECORDS_H
#define CFM_TESTS_AGENT_SAMPLE_RECORDS_H

#include <string>
#include <vector>

#include "core/record.h"

namespace cfm_agent::testing {

// Ordinary numbers, and this name wherever the server or the configuration names something.
std::vector<Record> RecordsNaming(const std::string& name);

// Names that must neither break a line nor act on a terminal.
const std::vector<std::string>& HostileNames();

}  // namespace cfm_agent::testing

#endif
