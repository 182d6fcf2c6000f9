/* SPDX-License-Identifier: Apache-2.0 */
// Small helpers for text that people read.
#ifndef CFM_AGENT_CORE_TEXT_H
#define CFM_AGENT_CORE_TEXT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cfm_agent {

// Whether text is well-formed UTF-8.
bool IsUtf8(std::string_view text);

// Makes text from elsewhere safe to print on one line: control characters, those that change the
// direction of writing or cannot be seen, and invalid UTF-8 become \xNN, and a backslash or quote
// is escaped, so that different texts stay different.
std::string Printable(std::string_view text);

// Printable text in double quotes, cut after some forty octets.
std::string Quoted(std::string_view text);

// "1 domain", "3 domains".
std::string Count(std::uint64_t number, std::string_view noun);
// "1 reply", "3 replies".
std::string Count(std::uint64_t number, std::string_view one, std::string_view many);

// "a", "a or b", "a, b or c".
std::string JoinAlternatives(const std::vector<std::string_view>& words);

// The candidate that `word` is most likely a misspelling of, if one is close enough.
std::optional<std::string_view> ClosestWord(std::string_view word,
                                            const std::vector<std::string_view>& candidates);

}  // namespace cfm_agent

#endif
