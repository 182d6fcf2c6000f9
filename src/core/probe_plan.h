/* SPDX-License-Identifier: Apache-2.0 */
// What it takes to turn one set of probes into another.
#ifndef CFM_SRC_CORE_PROBE_PLAN_H
#define CFM_SRC_CORE_PROBE_PLAN_H

#include <cfm/probe.h>

#include <cstdint>
#include <functional>

namespace cfm::core {

/// One request of a plan. The pointers lead into the desired probes.
struct ProbeStep {
  enum class Kind { CreateProbe, CreateSession, DeleteProbe, DeleteSession };

  Kind kind;
  std::uint16_t probe_id;
  std::uint16_t session_id;    // of a session only
  const probe_cfg* probe;      // of a probe to create only
  const session_cfg* session;  // of a session to create only
};

/// Visits the requests in the order to send them: all creates, a probe before its sessions, then
/// all deletes. What did not change is not sent; the sessions of a changed probe stay unless they
/// changed too, and those of a deleted probe go with it.
void PlanProbes(const probe& applied, const probe& desired,
                const std::function<void(const ProbeStep&)>& visit);

}  // namespace cfm::core

#endif
