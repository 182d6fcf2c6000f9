/* SPDX-License-Identifier: Apache-2.0 */
// The words that stand for the numbers of the standard's enumerations, in configuration files and
// in what is printed.
#ifndef CFM_AGENT_CORE_WORDS_H
#define CFM_AGENT_CORE_WORDS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace cfm_agent {

struct Word {
  std::string_view text;
  std::int32_t number;
};

struct WordList {
  std::string_view what;  // "a CCM interval"
  std::vector<Word> words;
};

extern const WordList kMdNameFormats;
extern const WordList kMaNameFormats;
extern const WordList kMdSenderIds;
extern const WordList kMaSenderIds;
extern const WordList kMdMhfCreations;
extern const WordList kMaMhfCreations;
extern const WordList kCcmIntervals;
extern const WordList kDirections;
extern const WordList kLowestAlarmPriorities;
extern const WordList kFaultActions;

// The word for a number, or the number itself in decimal when there is none.
std::string WordFor(const WordList& list, std::int64_t number);

}  // namespace cfm_agent

#endif
