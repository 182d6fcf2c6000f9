// SPDX-License-Identifier: Apache-2.0
// The reconciliation of the probes.
#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>

#include "client_model.h"
#include "dump_model.h"
#include "request_messages.h"

namespace cfm_test {
void ClientModel::ApplyProbes() {
  Log("Applying CFM Delay Measurement Probes config...");
  Log(DumpOf(desired_probes_));
  CreateProbes();
  DeleteProbes();
  applied_probes_ = desired_probes_;
}

void ClientModel::CreateProbes() {
  for (const auto& [key, probe] : desired_probes_.probes) {
    if (applied_probes_.probes.count(key) != 0) {
      CreateChanged(key, probe, applied_probes_.probes.at(key));
      continue;
    }
    rules_.Add(Rule::ProbeNew);
    Send(CFM_MGR_C2S_SIG_DM_PROBE_CREATE, CreateProbeMessage(key, probe));
    for (const auto& [session_key, session] : probe.sessions) {
      Send(CFM_MGR_C2S_SIG_DM_SESSION_CREATE, CreateSessionMessage(key, session_key, session));
    }
  }
}

void ClientModel::CreateChanged(std::uint16_t key, const cfm::probe_cfg& probe,
                                const cfm::probe_cfg& old) {
  if (AnyDiffers({{old.id != probe.id, Rule::ProbeIdChanged},
                  {old.interval != probe.interval, Rule::ProbeIntervalChanged},
                  {old.ma != probe.ma, Rule::ProbeMaChanged},
                  {old.md != probe.md, Rule::ProbeMdChanged},
                  {old.lmep != probe.lmep, Rule::ProbeLmepChanged},
                  {old.rmep != probe.rmep, Rule::ProbeRmepChanged}})) {
    Send(CFM_MGR_C2S_SIG_DM_PROBE_CREATE, CreateProbeMessage(key, probe));
  } else {
    rules_.Add(Rule::ProbeKept);
  }
  for (const auto& [session_key, session] : probe.sessions) {
    if (old.sessions.count(session_key) == 0) {
      rules_.Add(Rule::SessionNew);
      Send(CFM_MGR_C2S_SIG_DM_SESSION_CREATE, CreateSessionMessage(key, session_key, session));
    } else if (SessionChanged(old.sessions.at(session_key), session)) {
      Send(CFM_MGR_C2S_SIG_DM_SESSION_CREATE, CreateSessionMessage(key, session_key, session));
    } else {
      rules_.Add(Rule::SessionKept);
    }
  }
}

bool ClientModel::SessionChanged(const cfm::session_cfg& old, const cfm::session_cfg& session) {
  return AnyDiffers({{old.count != session.count, Rule::SessionCountChanged},
                     {old.interval != session.interval, Rule::SessionIntervalChanged},
                     {old.size != session.size, Rule::SessionSizeChanged},
                     {old.pcp != session.pcp, Rule::SessionPcpChanged}});
}

void ClientModel::DeleteProbes() {
  for (const auto& [key, old] : applied_probes_.probes) {
    if (desired_probes_.probes.count(key) == 0) {
      rules_.Add(Rule::ProbeRemoved);
      Send(CFM_MGR_C2S_SIG_DM_PROBE_DELETE, DeleteProbeMessage(key));
      continue;
    }
    for (const auto& [session_key, session] : old.sessions) {
      if (desired_probes_.probes.at(key).sessions.count(session_key) == 0) {
        rules_.Add(Rule::SessionRemoved);
        Send(CFM_MGR_C2S_SIG_DM_SESSION_DELETE, DeleteSessionMessage(key, session_key));
      }
    }
  }
}

}  // namespace cfm_test
