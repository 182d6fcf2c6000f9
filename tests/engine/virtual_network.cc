// SPDX-License-Identifier: Apache-2.0
#include "virtual_network.h"

#include <algorithm>

#include "engine/addresses.h"

namespace cfm_mgr::engine {
namespace {

Side Opposite(Side side) { return side == Side::Wire ? Side::Relay : Side::Wire; }

}  // namespace

Bridge::Bridge(VirtualNetwork& network, std::uint64_t seed)
    : network_(network),
      number_(static_cast<std::uint8_t>(network.bridges() + 1)),
      engine_(*this, *this, seed) {}

Mac Bridge::MacOf(PortId port) const {
  return {0x02, 0x00, 0x00, 0x00, number_, static_cast<std::uint8_t>(port)};
}

void Bridge::SetPort(PortId port, std::uint8_t interface_status, std::uint8_t port_status) {
  ports_.insert(port);
  engine_.SetPort(network_.now(), port,
                  {MacOf(port), interface_status, port_status, "port" + std::to_string(port)});
}

Verdict Bridge::Receive(PortId port, Side from, const Frame& frame) {
  const Verdict verdict = engine_.Receive(network_.now(), port, from, frame);
  if (verdict == Verdict::Pass) Leave(port, Opposite(from), frame);
  return verdict;
}

void Bridge::Transmit(PortId port, Side side, const Frame& frame) {
  sent.push_back({network_.now(), port, side, frame});
  Leave(port, side, frame);
}

void Bridge::Leave(PortId port, Side side, const Frame& frame) {
  if (side == Side::Wire) return network_.SendOverLink(*this, port, frame);
  Relay(port, frame);
}

void Bridge::Relay(PortId from, const Frame& frame) {
  const std::uint16_t vid = ServiceOf(frame).vid;
  relay.Learn(vid, frame.source, from);
  const EgressPorts egress = FindEgress(from, vid, frame.destination);
  const std::vector<PortId> to =
      egress.learnt ? std::vector<PortId>{*egress.learnt} : egress.flooded;
  for (const PortId port : to) {
    if (port == from) continue;
    network_.Schedule(network_.now(), [this, port, frame] { Receive(port, Side::Relay, frame); });
  }
}

EgressPorts Bridge::FindEgress(PortId ingress, std::uint16_t vid, const Mac& destination) {
  EgressPorts ports;
  ports.learnt = relay.Find(vid, destination);
  for (const PortId port : ports_) {
    if (port != ingress && relay.IsMember(port)) ports.flooded.push_back(port);
  }
  return ports;
}

void Bridge::OnLocalMepChanged(const MepKey& mep) { local_changes.push_back(mep); }

void Bridge::OnRemoteMepChanged(const MepKey& mep, std::uint32_t remote_mep_id) {
  remote_changes.emplace_back(mep, remote_mep_id);
}

void Bridge::OnFaultAlarm(const MepKey& mep, std::uint32_t defect_priority) {
  alarms.push_back({network_.now(), mep, defect_priority});
}

void Bridge::OnLoopbackReply(std::uint32_t request_id, const Mac& source,
                             std::uint32_t transaction_id) {
  tests.loopback_replies.push_back({network_.now(), request_id, source, transaction_id});
}

void Bridge::OnLoopbackEnded(std::uint32_t request_id, const LoopbackResult& result) {
  tests.loopback_ends.push_back({network_.now(), request_id, result});
}

void Bridge::OnLinktraceReply(const MepKey& mep, const LinktraceReply& reply) {
  tests.trace_replies.push_back({network_.now(), mep, reply});
}

void Bridge::OnLinktraceEnded(const MepKey& mep, std::uint32_t transaction_id) {
  tests.trace_ends.push_back({network_.now(), mep, transaction_id});
}

void Bridge::OnDelayReply(std::uint32_t request_id, const Mac& source) {
  tests.delay_replies.push_back({network_.now(), request_id, source});
}

void Bridge::OnDelayEnded(std::uint32_t request_id, const DelayResult& result) {
  tests.delay_ends.push_back({network_.now(), request_id, result});
}

void Bridge::OnSessionEnded(const SessionResult& result) { tests.sessions.push_back(result); }

Bridge& VirtualNetwork::AddBridge(std::uint64_t seed) {
  bridges_.push_back(std::make_unique<Bridge>(*this, seed));
  return *bridges_.back();
}

void VirtualNetwork::Connect(Bridge& a, PortId port_a, Bridge& b, PortId port_b) {
  links_[{&a, port_a}] = {&b, port_b};
  links_[{&b, port_b}] = {&a, port_a};
}

void VirtualNetwork::Schedule(Time at, std::function<void()> event) {
  events_.emplace(std::max(at, now_), std::move(event));
}

void VirtualNetwork::SendOverLink(Bridge& from, PortId port, const Frame& frame) {
  const auto link = links_.find({&from, port});
  if (link == links_.end()) return;
  const std::optional<Time> delay = rule_(frame);
  if (!delay) return;
  const End to = link->second;
  Schedule(now_ + *delay, [to, frame] { to.bridge->Receive(to.port, Side::Wire, frame); });
}

std::optional<Time> VirtualNetwork::NextMoment() const {
  std::optional<Time> next;
  if (!events_.empty()) next = events_.begin()->first;
  for (const auto& bridge : bridges_) {
    const std::optional<Time> deadline = bridge->engine().NextDeadline();
    if (deadline && (!next || *deadline < *next)) next = deadline;
  }
  return next;
}

void VirtualNetwork::Run(Time duration) {
  const Time end = now_ + duration;
  for (auto next = NextMoment(); next && *next <= end; next = NextMoment()) {
    now_ = std::max(now_, *next);
    // Frames that have come are looked at before deadlines of the same moment.
    while (!events_.empty() && events_.begin()->first <= now_) {
      const std::function<void()> event = std::move(events_.begin()->second);
      events_.erase(events_.begin());
      event();
    }
    for (const auto& bridge : bridges_) bridge->engine().Advance(now_);
  }
  now_ = end;
}

}  // namespace cfm_mgr::engine
