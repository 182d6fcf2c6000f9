// SPDX-License-Identifier: Apache-2.0
#include "engine/probe_runner.h"

#include <algorithm>
#include <tuple>

#include "engine/test_ends.h"

namespace cfm_mgr::engine {
namespace {

constexpr std::uint32_t kMaxSessionCount = 65535;
constexpr std::uint32_t kMaxPcp = 7;

bool IsSame(const ProbeSettings& a, const ProbeSettings& b) {
  const auto fields = [](const ProbeSettings& s) {
    return std::tie(s.md_name, s.ma_name, s.interval, s.lmep_id, s.rmep_id);
  };
  return fields(a) == fields(b);
}

bool IsSame(const Session& a, const Session& b) {
  const auto fields = [](const Session& s) { return std::tie(s.interval, s.count, s.size, s.pcp); };
  return fields(a) == fields(b);
}

std::uint32_t InRange(std::uint32_t value, std::uint32_t if_zero, std::uint32_t min,
                      std::uint32_t max) {
  return value == 0 ? if_zero : std::clamp(value, min, max);
}

DelayParameters ParametersOf(const Session& session) {
  return {InRange(session.count, kDefaultDelayCount, 1, kMaxSessionCount),
          InRange(session.interval, kDefaultDelayInterval, kMinDelayInterval, kMaxDelayInterval),
          InRange(session.size, kMinDelayFrame, kMinDelayFrame, kMaxDelayFrame),
          static_cast<std::uint8_t>(std::min(session.pcp, kMaxPcp))};
}

}  // namespace

void ProbeRunner::SetProbe(Time now, std::uint32_t probe_id, const Probe& probe) {
  ProbeState& state = probes_[probe_id];
  const bool same_probe = IsSame(state.probe.settings, probe.settings);
  const Probe before = std::exchange(state.probe, probe);
  for (auto it = state.sessions.begin(); it != state.sessions.end();) {
    const auto wanted = probe.sessions.find(it->first);
    const bool stays = same_probe && wanted != probe.sessions.end() &&
                       IsSame(before.sessions.at(it->first), wanted->second);
    if (!stays) EndSession(now, *it->second);
    it = stays ? std::next(it) : state.sessions.erase(it);
  }
  for (const auto& entry : probe.sessions) {
    if (state.sessions.count(entry.first) == 0) BeginSession(now, state, probe_id, entry.first);
  }
}

void ProbeRunner::RemoveProbe(Time now, std::uint32_t probe_id) {
  const auto found = probes_.find(probe_id);
  if (found == probes_.end()) return;
  for (auto& entry : found->second.sessions) EndSession(now, *entry.second);
  probes_.erase(found);
}

void ProbeRunner::BeginSession(Time now, ProbeState& state, std::uint32_t probe_id,
                               std::uint32_t session_id) {
  auto session = std::make_unique<SessionState>(
      context_.timers,
      [this, &state, session_id](Time when) { BeginRun(when, state, session_id); });
  session->report.probe_id = probe_id;
  session->report.session_id = session_id;
  session->timer.Arm(now);
  state.sessions[session_id] = std::move(session);
}

void ProbeRunner::EndSession(Time now, SessionState& session) {
  session.timer.Stop();
  if (!session.run) return;
  if (const auto result = runs_.Cancel(*session.run)) {
    Report(now, session, SessionEnd::Removed, *result);
  }
}

void ProbeRunner::BeginRun(Time now, const ProbeState& state, std::uint32_t session_id) {
  const ProbeSettings& settings = state.probe.settings;
  SessionState& session = *state.sessions.at(session_id);
  const TestEnds ends = FindTestEnds(
      table_, {{settings.md_name, settings.ma_name}, settings.lmep_id}, settings.rmep_id);
  if (ends.error) return session.timer.Arm(now + kRetry);
  ++session.report.run;
  session.report.start = now;
  DelayRuns::Observer observer;
  observer.on_reply = [](const Mac&) {};
  observer.on_end = [this, &settings, &session](Time when, RunEnd end, const DelayResult& result) {
    OnRunEnded(when, settings, session, end, result);
  };
  session.run = runs_.Begin(now, *ends.mep, ends.target,
                            ParametersOf(state.probe.sessions.at(session_id)), std::move(observer));
}

void ProbeRunner::OnRunEnded(Time now, const ProbeSettings& settings, SessionState& session,
                             RunEnd end, const DelayResult& result) {
  session.run.reset();
  if (end == RunEnd::Complete) {
    Report(now, session, SessionEnd::Complete, result);
    session.timer.Arm(
        std::max(now, session.report.start + std::chrono::seconds(settings.interval)));
  } else {
    Report(now, session, SessionEnd::MepRemoved, result);
    session.timer.Arm(now + kRetry);
  }
}

void ProbeRunner::Report(Time now, SessionState& session, SessionEnd end,
                         const DelayResult& result) {
  session.report.end = end;
  session.report.finish = now;
  session.report.delay = result;
  context_.notifications.OnSessionEnded(session.report);
}

}  // namespace cfm_mgr::engine
