// SPDX-License-Identifier: Apache-2.0
#include "core/style.h"

namespace cfm_agent {
namespace {

std::string_view CodeOf(Tone tone) {
  switch (tone) {
    case Tone::Plain:
      return "";
    case Tone::Heading:
      return "\x1b[1m";
    case Tone::Good:
      return "\x1b[32m";
    case Tone::Doubtful:
      return "\x1b[33m";
    case Tone::Bad:
      return "\x1b[31m";
  }
  return "";
}

}  // namespace

std::string Paint(std::string_view text, Tone tone, const Style& style) {
  const std::string_view code = style.colour && !text.empty() ? CodeOf(tone) : "";
  return std::string(code) + std::string(text) + (code.empty() ? "" : "\x1b[0m");
}

std::string Join(const std::vector<Span>& spans, const Style& style) {
  std::string text;
  for (const Span& span : spans) {
    text += (text.empty() ? "" : ", ") + Paint(span.text, span.tone, style);
  }
  return text;
}

}  // namespace cfm_agent
