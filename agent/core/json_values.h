/* SPDX-License-Identifier: Apache-2.0 */
// The parts that JSON objects are made of.
#ifndef CFM_AGENT_CORE_JSON_VALUES_H
#define CFM_AGENT_CORE_JSON_VALUES_H

#include <cfm/mac.h>
#include <cfm/status.h>

#include <chrono>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string_view>

#include "core/findings.h"
#include "core/hop.h"
#include "core/mep.h"
#include "core/words.h"

namespace cfm_agent {

// Members in the order in which they are added.
using Json = nlohmann::ordered_json;

// Text as a string or, if it is not valid UTF-8, as {"octets": "c3ff"}.
Json TextValue(std::string_view text);

// The word for a number, in lower case with _ between its parts, or the number itself when there
// is none.
Json WordValue(const WordList& list, std::int64_t number);
Json WordValue(std::string_view word);
template <typename Enum>
Json WordValue(const WordList& list, Enum value) {
  return WordValue(list, static_cast<std::int64_t>(value));
}

// "2026-11-21T11:01:15.123Z"
Json TimeValue(std::chrono::system_clock::time_point time);
// Whole milliseconds.
Json MillisecondsValue(Duration duration);

void AddMep(Json& object, const MepKey& mep);

Json StatusValue(const cfm::local_mep_status& status);
Json StatusValue(const cfm::remote_mep_status& status);

Json HopValue(const Hop& hop);
Json PathValue(const std::vector<PathStep>& path);
// Least, mean and greatest, or null if there is none.
Json SpreadValue(const DelayResult::Spread& spread, bool known);

}  // namespace cfm_agent

#endif
