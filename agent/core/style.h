/* SPDX-License-Identifier: Apache-2.0 */
// How text looks on the terminal or in the file that it goes to.
#ifndef CFM_AGENT_CORE_STYLE_H
#define CFM_AGENT_CORE_STYLE_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace cfm_agent {

struct Style {
  bool colour = false;
  bool utf8 = false;  // whether drawings may use more than ASCII
};

// What a piece of text is about. The words always say it too.
enum class Tone : std::uint8_t { Plain, Heading, Good, Doubtful, Bad };

struct Span {
  std::string text;
  Tone tone = Tone::Plain;
};

// The text in the colour of its tone, if there are colours.
std::string Paint(std::string_view text, Tone tone, const Style& style);

// The spans with ", " between them.
std::string Join(const std::vector<Span>& spans, const Style& style);

}  // namespace cfm_agent

#endif
