/* SPDX-License-Identifier: Apache-2.0 */
// The words for the numbers in the server's reports.
#ifndef CFM_AGENT_CORE_STATUS_WORDS_H
#define CFM_AGENT_CORE_STATUS_WORDS_H

#include <cfm/status.h>

#include <string_view>
#include <vector>

#include "core/show.h"
#include "core/test_tracker.h"
#include "core/words.h"

namespace cfm_agent {

extern const WordList kRemoteMepStates;
extern const WordList kDefectPriorities;
extern const WordList kPortStatuses;
extern const WordList kInterfaceStatuses;
extern const WordList kRelayActions;
extern const WordList kPortActions;
// How the run of a probe's session ended, and why a test was refused: the reference server's.
extern const WordList kSessionEnds;
extern const WordList kErrorCodes;

// The agent's own.
extern const WordList kServerStates;
extern const WordList kGaps;
extern const WordList kTestKinds;
extern const WordList kEndReasons;

template <typename Enum>
std::string WordFor(const WordList& list, Enum value) {
  return WordFor(list, static_cast<std::int64_t>(value));
}

// The defects there are, in the standard's order of priority, the highest first.
std::vector<std::string_view> DefectsOf(const cfm::local_mep_status& status);

}  // namespace cfm_agent

#endif
