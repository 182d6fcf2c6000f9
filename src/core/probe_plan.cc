// SPDX-License-Identifier: Apache-2.0
#include "core/probe_plan.h"

#include <vector>

#include "core/in_step.h"

namespace cfm::core {
namespace {

using Kind = ProbeStep::Kind;
using ProbeEntry = std::map<std::uint16_t, probe_cfg>::value_type;
using SessionEntry = std::map<std::uint16_t, session_cfg>::value_type;

bool SameSettings(const probe_cfg& a, const probe_cfg& b) {
  return a.id == b.id && a.interval == b.interval && a.ma == b.ma && a.md == b.md &&
         a.lmep == b.lmep && a.rmep == b.rmep;
}

class Planner {
 public:
  explicit Planner(const std::function<void(const ProbeStep&)>& visit) : visit_(visit) {}

  void Plan(const probe& applied, const probe& desired) {
    WalkInStep(applied.probes, desired.probes,
               [this](const ProbeEntry* old, const ProbeEntry* probe) { Compare(old, probe); });
    for (const ProbeStep& step : deletes_) {
      visit_(step);
    }
  }

 private:
  void Compare(const ProbeEntry* old, const ProbeEntry* probe) {
    if (probe == nullptr) {
      deletes_.push_back({Kind::DeleteProbe, old->first, 0, nullptr, nullptr});
      return;
    }
    if (old == nullptr || !SameSettings(old->second, probe->second)) {
      visit_({Kind::CreateProbe, probe->first, 0, &probe->second, nullptr});
    }
    static const std::map<std::uint16_t, session_cfg> kNoSessions;
    WalkInStep(old == nullptr ? kNoSessions : old->second.sessions, probe->second.sessions,
               [&](const SessionEntry* old_session, const SessionEntry* session) {
                 Compare(probe->first, old_session, session);
               });
  }

  void Compare(std::uint16_t probe_id, const SessionEntry* old, const SessionEntry* session) {
    if (session == nullptr) {
      deletes_.push_back({Kind::DeleteSession, probe_id, old->first, nullptr, nullptr});
    } else if (old == nullptr || old->second != session->second) {
      visit_({Kind::CreateSession, probe_id, session->first, nullptr, &session->second});
    }
  }

  const std::function<void(const ProbeStep&)>& visit_;
  std::vector<ProbeStep> deletes_;  // wait until all creates were visited
};

}  // namespace

void PlanProbes(const probe& applied, const probe& desired,
                const std::function<void(const ProbeStep&)>& visit) {
  Planner(visit).Plan(applied, desired);
}

}  // namespace cfm::core
