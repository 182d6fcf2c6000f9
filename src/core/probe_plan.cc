#include "core/probe_plan.h"

namespace cfm::core {
namespace {

using Kind = ProbeStep::Kind;

template <typename Map>
auto Find(const Map& map, std::uint16_t id) -> const typename Map::mapped_type* {
  const auto found = map.find(id);
  return found == map.end() ? nullptr : &found->second;
}

bool SameSettings(const probe_cfg& a, const probe_cfg& b) {
  return a.id == b.id && a.interval == b.interval && a.ma == b.ma && a.md == b.md &&
         a.lmep == b.lmep && a.rmep == b.rmep;
}

void AddCreates(std::vector<ProbeStep>& plan, std::uint16_t probe_id, const probe_cfg* old,
                const probe_cfg& probe) {
  if (old == nullptr || !SameSettings(*old, probe)) {
    plan.push_back({Kind::CreateProbe, probe_id, 0, &probe, nullptr});
  }
  for (const auto& [session_id, session] : probe.sessions) {
    const session_cfg* const old_session =
        old == nullptr ? nullptr : Find(old->sessions, session_id);
    if (old_session == nullptr || *old_session != session) {
      plan.push_back({Kind::CreateSession, probe_id, session_id, nullptr, &session});
    }
  }
}

void AddDeletes(std::vector<ProbeStep>& plan, std::uint16_t probe_id, const probe_cfg& old,
                const probe_cfg* probe) {
  if (probe == nullptr) {
    plan.push_back({Kind::DeleteProbe, probe_id, 0, nullptr, nullptr});
    return;
  }
  for (const auto& [session_id, session] : old.sessions) {
    if (probe->sessions.count(session_id) == 0) {
      plan.push_back({Kind::DeleteSession, probe_id, session_id, nullptr, nullptr});
    }
  }
}

}  // namespace

std::vector<ProbeStep> PlanProbes(const probe& applied, const probe& desired) {
  std::vector<ProbeStep> plan;
  for (const auto& [probe_id, cfg] : desired.probes) {
    AddCreates(plan, probe_id, Find(applied.probes, probe_id), cfg);
  }
  for (const auto& [probe_id, cfg] : applied.probes) {
    AddDeletes(plan, probe_id, cfg, Find(desired.probes, probe_id));
  }
  return plan;
}

}  // namespace cfm::core
