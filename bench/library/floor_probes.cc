// SPDX-License-Identifier: Apache-2.0
#include "floor.h"
#include "floor_text.h"

namespace cfm_bench {
namespace {

void LogAll(const cfm::probe& config) {
  std::size_t sessions = 0;
  for (const auto& [id, probe] : config.probes) {
    sessions += probe.sessions.size();
  }
  std::string out;
  out.reserve(config.probes.size() * 150 + sessions * 75);
  out += "CFM Delay Measurement Probes\n";
  for (const auto& [id, probe] : config.probes) {
    Add(out, "+ Probe Id: ", id);
    Add(out, ", Interval: ", probe.interval);
    Add(out, ", MA: ", probe.ma);
    Add(out, ", MD: ", probe.md);
    Add(out, ", LMEP: ", probe.lmep);
    Add(out, ", RMEP: ", probe.rmep);
    out += ", Sessions: \n";
    for (const auto& [session_id, session] : probe.sessions) {
      Add(out, "  + Session Id: ", session_id);
      Add(out, ", Count: ", session.count);
      Add(out, ", Interval: ", session.interval);
      Add(out, ", Size: ", session.size);
      Add(out, ", Pcp: ", session.pcp);
      out += '\n';
    }
  }
  LogText(out);
}

void CreateProbe(std::uint16_t id, const cfm::probe_cfg& probe) {
  client_server::OpCreateDelayMeasurementProbe message;
  message.set_ma_name(probe.ma);
  message.set_md_name(probe.md);
  message.set_probe_id(id);
  message.set_interval(probe.interval);
  message.set_lmep_id(probe.lmep);
  message.set_rmep_id(probe.rmep);
  Send(CFM_MGR_C2S_SIG_DM_PROBE_CREATE, message);
}

void CreateSession(std::uint16_t probe_id, std::uint16_t id, const cfm::session_cfg& session) {
  client_server::OpCreateDelayMeasurementSession message;
  message.set_probe_id(probe_id);
  message.set_session_id(id);
  message.set_interval(session.interval);
  message.set_count(session.count);
  message.set_size(session.size);
  message.set_pcp(session.pcp);
  Send(CFM_MGR_C2S_SIG_DM_SESSION_CREATE, message);
}

}  // namespace

void FloorCreateProbes(ProbeCopies& copies, const cfm::probe& config) {
  copies.desired.probes = config.probes;
  LogAll(copies.desired);
  for (const auto& [id, probe] : copies.desired.probes) {
    CreateProbe(id, probe);
    for (const auto& [session_id, session] : probe.sessions) {
      CreateSession(id, session_id, session);
    }
  }
  copies.applied = copies.desired;
}

void FloorKeepProbes(ProbeCopies& copies, const cfm::probe& config) {
  copies.desired.probes = config.probes;
  LogAll(copies.desired);
  copies.applied = copies.desired;
}

void FloorChangeFirstSession(ProbeCopies& copies, const cfm::probe& config) {
  copies.desired.probes = config.probes;
  LogAll(copies.desired);
  const auto& [id, probe] = *copies.desired.probes.begin();
  CreateSession(id, probe.sessions.begin()->first, probe.sessions.begin()->second);
  copies.applied = copies.desired;
}

}  // namespace cfm_bench
