// SPDX-License-Identifier: Apache-2.0
#include "core/path_text.h"

#include "core/status_words.h"
#include "core/text.h"

namespace cfm_agent {
namespace {

struct Signs {
  const char* end;  // a MEP at an end of the path
  const char* hop;
  const char* gap;  // hops without replies
  const char* way;  // between hops
};

constexpr Signs kAscii = {"*", "o", ":", "|"};
constexpr Signs kUnicode = {"\u25CF", "\u25CB", "\u250A", "\u2502"};

const Signs& SignsOf(const Style& style) { return style.utf8 ? kUnicode : kAscii; }

std::string Numbers(const PathStep& step) {
  return step.first == step.last
             ? "hop " + std::to_string(step.first)
             : "hops " + std::to_string(step.first) + " to " + std::to_string(step.last);
}

std::string HopLine(const Hop& hop, const Style& style) {
  std::vector<Span> spans = {{hop.from.to_string()},
                             {"relay action " + WordFor(kRelayActions, hop.relay_action)}};
  if (hop.forwarded) {
    spans.push_back({"forwarded"});
  }
  if (hop.terminal_mep) {
    spans.push_back({"terminal MEP", Tone::Good});
  }
  return Join(spans, style);
}

std::string PortLine(const char* name, const cfm::LtrReplyPort& port, const Style& style) {
  constexpr std::uint8_t kOk = 1;
  const Tone tone = port.action == kOk ? Tone::Good : Tone::Bad;
  std::string line = std::string(name) + Paint(WordFor(kPortActions, port.action), tone, style) +
                     " at " + port.mac.to_string();
  if (port.port_id_present) {
    line += " port " + Quoted(port.port_id);
  }
  return line;
}

void DrawHop(const Hop& hop, const std::string& number, bool last, const Style& style,
             std::vector<std::string>& lines) {
  const Signs& signs = SignsOf(style);
  const std::string sign = IsTarget(hop) ? signs.end : signs.hop;
  const std::string way = "  " + std::string(last ? " " : signs.way) + "   ";
  lines.push_back("  " + sign + ' ' + number + ": " + HopLine(hop, style));
  if (hop.ingress) {
    lines.push_back(way + PortLine("ingress ", *hop.ingress, style));
  }
  if (hop.egress) {
    lines.push_back(way + PortLine("egress ", *hop.egress, style));
  }
}

}  // namespace

std::vector<std::string> DrawPath(const Test& test, const std::vector<PathStep>& path,
                                  const Style& style) {
  const Signs& signs = SignsOf(style);
  std::vector<std::string> lines;
  if (path.empty()) {
    return lines;
  }
  lines.push_back("  " + std::string(signs.end) + " MEP " + std::to_string(test.mep.id));
  const bool reached = IsReached(path);
  for (const PathStep& step : path) {
    const bool last = reached && &step == &path.back();
    if (step.hop) {
      DrawHop(*step.hop, Numbers(step), last, style, lines);
    } else {
      lines.push_back("  " + std::string(signs.gap) + ' ' + Numbers(step) + ": " +
                      Paint("no reply", Tone::Doubtful, style));
    }
  }
  if (!reached) {
    lines.push_back("  " + std::string(signs.gap) + ' ' +
                    Paint("no reply from MEP " + std::to_string(test.remote), Tone::Bad, style));
  }
  return lines;
}

}  // namespace cfm_agent
