// SPDX-License-Identifier: Apache-2.0
// Delay-measurement probes: from a configuration to requests.
#include <cfm/identifiers.h>

#include "client_impl.h"
#include "core/probe_dump.h"
#include "core/probe_plan.h"
#include "core/probe_requests.h"
#include "log_points.h"

namespace cfm {

void ClientImpl::UpdateConfigProbe(const probe& config) {
  desired_probes = std::make_shared<const probe>(config);
  if (!InStep()) {
    Log<log_point::kProbesDeferred>(log_category, server_pid, static_cast<int>(server_synced));
    return;
  }
  ApplyDelayMeasurementProbe();
}

void ClientImpl::LogDesiredProbes() const {
  const std::string dump = core::ProbeDump(*desired_probes);
  Log<log_point::kApplyingProbes>(log_category);
  Log<log_point::kProbesDump>(log_category, dump.c_str());
}

void ClientImpl::ApplyDelayMeasurementProbe() {
  LogDesiredProbes();
  const auto applied = applied_probes;
  const auto desired = desired_probes;
  core::PlanProbes(*applied, *desired, [this](const core::ProbeStep& step) {
    switch (step.kind) {
      case core::ProbeStep::Kind::CreateProbe:
        CreateDelayMeasurementProbe(step.probe_id, *step.probe);
        break;
      case core::ProbeStep::Kind::CreateSession:
        CreateDelayMeasurementSession(step.probe_id, step.session_id, *step.session);
        break;
      case core::ProbeStep::Kind::DeleteProbe:
        DeleteDelayMeasurementProbe(step.probe_id);
        break;
      case core::ProbeStep::Kind::DeleteSession:
        DeleteDelayMeasurementSession(step.probe_id, step.session_id);
        break;
    }
  });
  applied_probes = desired;
}

void ClientImpl::CreateDelayMeasurementProbe(std::uint16_t probe_id, const probe_cfg& cfg) const {
  Send(CFM_MGR_C2S_SIG_DM_PROBE_CREATE, core::CreateProbe(probe_id, cfg));
}

void ClientImpl::DeleteDelayMeasurementProbe(std::uint16_t probe_id) const {
  Send(CFM_MGR_C2S_SIG_DM_PROBE_DELETE, core::DeleteProbe(probe_id));
}

void ClientImpl::CreateDelayMeasurementSession(std::uint16_t probe_id, std::uint16_t session_id,
                                               const session_cfg& cfg) const {
  Send(CFM_MGR_C2S_SIG_DM_SESSION_CREATE, core::CreateSession(probe_id, session_id, cfg));
}

void ClientImpl::DeleteDelayMeasurementSession(std::uint16_t probe_id,
                                               std::uint16_t session_id) const {
  Send(CFM_MGR_C2S_SIG_DM_SESSION_DELETE, core::DeleteSession(probe_id, session_id));
}

}  // namespace cfm
