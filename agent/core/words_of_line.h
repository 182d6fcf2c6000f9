/* SPDX-License-Identifier: Apache-2.0 */
// Splits a command line into words.
#ifndef CFM_AGENT_CORE_WORDS_OF_LINE_H
#define CFM_AGENT_CORE_WORDS_OF_LINE_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace cfm_agent {

struct LineWord {
  std::string text;
  std::size_t begin = 0;                        // in the line
  std::size_t quoted_from = std::string::npos;  // where in the text the first quotes began
};

// Words stand between blanks. Double quotes keep blanks in a word; inside them \" and \\ stand for
// the character and \xNN for an octet, so that whatever the agent prints it also takes.
struct LineWords {
  std::vector<LineWord> words;
  // Whether a word goes on at the end of the line, rather than being followed by a blank.
  bool last_is_open = false;
  std::string mistake;
};

LineWords SplitLine(std::string_view line);

}  // namespace cfm_agent

#endif
