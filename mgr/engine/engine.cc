// SPDX-License-Identifier: Apache-2.0
#include "engine/engine.h"

#include "engine/impl.h"

namespace cfm_mgr::engine {

Engine::Engine(Surroundings& surroundings, Notifications& notifications, std::uint64_t seed)
    : impl_(std::make_unique<Impl>(surroundings, notifications, seed)) {}

Engine::~Engine() = default;

void Engine::SetPort(Time now, PortId port, const PortInfo& info) {
  impl_->table().SetPort(now, port, info);
  impl_->tests().OnConfigurationChanged(now);
}

void Engine::RemovePort(Time now, PortId port) {
  impl_->table().RemovePort(now, port);
  impl_->context().drops.Forget(port);
  impl_->tests().OnConfigurationChanged(now);
}

void Engine::SetAssociation(Time now, const MaKey& key, const DomainSettings& domain,
                            const Association& association) {
  impl_->table().SetAssociation(now, key, domain, association);
  impl_->tests().OnConfigurationChanged(now);
}

void Engine::RemoveAssociation(Time now, const MaKey& key) {
  impl_->table().RemoveAssociation(now, key);
  impl_->tests().OnConfigurationChanged(now);
}

void Engine::SetProbe(Time now, std::uint32_t probe_id, const Probe& probe) {
  impl_->tests().SetProbe(now, probe_id, probe);
}

void Engine::RemoveProbe(Time now, std::uint32_t probe_id) {
  impl_->tests().RemoveProbe(now, probe_id);
}

Verdict Engine::Receive(Time now, PortId port, Side from, const Frame& frame) {
  return impl_->Receive(now, port, from, frame);
}

void Engine::Advance(Time now) { impl_->context().timers.RunDue(now); }

std::optional<Time> Engine::NextDeadline() const { return impl_->context().timers.Next(); }

StartedTest Engine::StartLoopback(Time now, const LoopbackRequest& request) {
  return impl_->tests().StartLoopback(now, request);
}

StartedTest Engine::StartLinktrace(Time now, const LinktraceRequest& request) {
  return impl_->tests().StartLinktrace(now, request);
}

StartedTest Engine::StartDelayMeasurement(Time now, const DelayRequest& request) {
  return impl_->tests().StartDelayMeasurement(now, request);
}

std::optional<LocalMepStatus> Engine::LocalStatus(const MepKey& mep) const {
  const LocalMep* const found = impl_->table().FindMep(mep);
  if (found == nullptr) return std::nullopt;
  return found->status();
}

std::optional<RemoteMepStatus> Engine::RemoteStatus(const MepKey& mep, std::uint32_t remote) const {
  const LocalMep* const local = impl_->table().FindMep(mep);
  const RemoteMep* const found = local == nullptr ? nullptr : local->FindRemote(remote);
  if (found == nullptr) return std::nullopt;
  return found->status();
}

std::optional<LocalMepCounters> Engine::Counters(const MepKey& mep) const {
  const LocalMep* const found = impl_->table().FindMep(mep);
  if (found == nullptr) return std::nullopt;
  return found->counters();
}

std::optional<std::uint32_t> Engine::LastSequenceNumber(const MepKey& mep,
                                                        std::uint32_t remote) const {
  const LocalMep* const local = impl_->table().FindMep(mep);
  const RemoteMep* const found = local == nullptr ? nullptr : local->FindRemote(remote);
  if (found == nullptr) return std::nullopt;
  return found->last_sequence();
}

void Engine::ClearCounters(const MepKey& mep) {
  LocalMep* const found = impl_->table().FindMep(mep);
  if (found != nullptr) found->ClearCounters();
}

DropCounters Engine::DropsAt(PortId port) const { return impl_->context().drops.Of(port); }

}  // namespace cfm_mgr::engine
