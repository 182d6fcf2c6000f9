#include "core/probe_dump.h"

#include "core/text.h"

namespace cfm::core {
namespace {

void AppendProbe(std::string& out, std::uint16_t probe_id, const probe_cfg& cfg) {
  AppendField(out, "+ Probe Id: ", probe_id);
  AppendField(out, ", Interval: ", cfg.interval);
  AppendField(out, ", MA: ", cfg.ma);
  AppendField(out, ", MD: ", cfg.md);
  AppendField(out, ", LMEP: ", cfg.lmep);
  AppendField(out, ", RMEP: ", cfg.rmep);
  out += ", Sessions: \n";
}

void AppendSession(std::string& out, std::uint16_t session_id, const session_cfg& cfg) {
  AppendField(out, "  + Session Id: ", session_id);
  AppendField(out, ", Count: ", cfg.count);
  AppendField(out, ", Interval: ", cfg.interval);
  AppendField(out, ", Size: ", cfg.size);
  AppendField(out, ", Pcp: ", cfg.pcp);
  out += '\n';
}

}  // namespace

std::string ProbeDump(const probe& config) {
  std::string out = "CFM Delay Measurement Probes\n";
  for (const auto& [probe_id, cfg] : config.probes) {
    AppendProbe(out, probe_id, cfg);
    for (const auto& [session_id, session] : cfg.sessions) {
      AppendSession(out, session_id, session);
    }
  }
  return out;
}

}  // namespace cfm::core
