// SPDX-License-Identifier: Apache-2.0
#include "core/probe_dump.h"

#include "core/text_buffer.h"

namespace cfm::core {
namespace {

std::size_t CountLines(const probe& config) {
  std::size_t lines = config.probes.size();
  for (const auto& [probe_id, cfg] : config.probes) {
    lines += cfg.sessions.size();
  }
  return lines;
}

void AddProbe(TextBuffer& out, std::uint16_t probe_id, const probe_cfg& cfg) {
  out.AddField("+ Probe Id: ", probe_id);
  out.AddField(", Interval: ", cfg.interval);
  out.AddField(", MA: ", cfg.ma);
  out.AddField(", MD: ", cfg.md);
  out.AddField(", LMEP: ", cfg.lmep);
  out.AddField(", RMEP: ", cfg.rmep);
  out.Add(", Sessions: ");
}

void AddSession(TextBuffer& out, std::uint16_t session_id, const session_cfg& cfg) {
  out.AddField("  + Session Id: ", session_id);
  out.AddField(", Count: ", cfg.count);
  out.AddField(", Interval: ", cfg.interval);
  out.AddField(", Size: ", cfg.size);
  out.AddField(", Pcp: ", cfg.pcp);
}

}  // namespace

std::string ProbeDump(const probe& config) {
  TextBuffer out;
  std::size_t lines_to_come = CountLines(config);
  out.Add("CFM Delay Measurement Probes\n");
  for (const auto& [probe_id, cfg] : config.probes) {
    AddProbe(out, probe_id, cfg);
    out.EndLine(--lines_to_come);
    for (const auto& [session_id, session] : cfg.sessions) {
      AddSession(out, session_id, session);
      out.EndLine(--lines_to_come);
    }
  }
  return std::move(out).Take();
}

}  // namespace cfm::core
