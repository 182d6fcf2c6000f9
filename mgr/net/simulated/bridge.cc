// SPDX-License-Identifier: Apache-2.0
#include "net/simulated/bridge.h"

#include <algorithm>

namespace cfm_mgr::net {
namespace {

// Interface status of the IEEE 802.1ag MIB.
constexpr std::uint8_t kUp = 1;
constexpr std::uint8_t kDown = 2;

bool IsGroupAddress(const engine::Mac& mac) { return (mac[0] & 1U) != 0; }

}  // namespace

Bridge::Bridge(const BridgeDescription& description, const engine::Time& clock,
               std::vector<Departure>& departures, engine::Notifications& notifications,
               std::uint64_t seed)
    : name_(description.name),
      clock_(clock),
      departures_(departures),
      engine_(*this, notifications, seed) {
  for (const PortDescription& port : description.ports) {
    Port& added = ports_[port.id];
    added.info.mac = port.mac;
    added.info.name = port.name;
    added.vids = port.vids;
    engine_.SetPort(clock_, port.id, added.info);
  }
  for (const auto& [md_name, domain] : description.domains) {
    for (const auto& [ma_name, association] : domain.associations) {
      engine_.SetAssociation(clock_, {md_name, ma_name}, domain.settings, association);
    }
  }
}

engine::PortId Bridge::FindPort(const std::string& name) const {
  const auto found = std::find_if(ports_.begin(), ports_.end(), [&name](const auto& entry) {
    return entry.second.info.name == name;
  });
  return found == ports_.end() ? 0 : found->first;
}

void Bridge::SetLinkUp(engine::PortId port, bool up) {
  Port& changed = ports_.at(port);
  if (changed.up == up) return;
  changed.up = up;
  changed.info.interface_status = up ? kUp : kDown;
  table_.Flush(port);
  engine_.SetPort(clock_, port, changed.info);
}

std::vector<DropCount> Bridge::Drops() const {
  std::vector<DropCount> counts;
  for (const auto& [index, port] : ports_) {
    AppendDrops(counts, port.info.name, engine_.DropsAt(index));
  }
  return counts;
}

void Bridge::Receive(engine::PortId port, const engine::Frame& frame, unsigned hops) {
  if (!IsLinkUp(port)) return;
  if (engine_.Receive(clock_, port, engine::Side::Wire, frame) == engine::Verdict::Pass) {
    Relay(port, frame, hops);
  }
}

void Bridge::Relay(engine::PortId ingress, const engine::Frame& frame, unsigned hops) {
  const auto port = ports_.find(ingress);
  if (port == ports_.end() || !IsMember(port->second, OuterVid(frame))) return;
  table_.Learn(clock_, OuterVid(frame), frame.source, ingress);
  for (const engine::PortId egress : EgressOf(ingress, frame)) {
    if (engine_.Receive(clock_, egress, engine::Side::Relay, frame) == engine::Verdict::Pass) {
      departures_.push_back({this, egress, engine::Side::Wire, frame, hops + 1});
    }
  }
}

void Bridge::Transmit(engine::PortId port, engine::Side side, const engine::Frame& frame) {
  departures_.push_back({this, port, side, frame, 0});
}

engine::EgressPorts Bridge::FindEgress(engine::PortId ingress, std::uint16_t vid,
                                       const engine::Mac& destination) {
  engine::EgressPorts egress;
  egress.learnt = table_.Find(clock_, vid, destination);
  for (const auto& [id, port] : ports_) {
    if (id != ingress && IsMember(port, vid)) egress.flooded.push_back(id);
  }
  return egress;
}

bool Bridge::IsMember(const Port& port, std::uint16_t vid) const {
  return port.vids.empty() || port.vids.count(vid) != 0;
}

std::vector<engine::PortId> Bridge::EgressOf(engine::PortId ingress,
                                             const engine::Frame& frame) const {
  const std::uint16_t vid = OuterVid(frame);
  std::optional<engine::PortId> learnt;
  if (!IsGroupAddress(frame.destination)) learnt = table_.Find(clock_, vid, frame.destination);
  std::vector<engine::PortId> egress;
  for (const auto& [id, port] : ports_) {
    const bool chosen = !learnt || *learnt == id;
    if (chosen && id != ingress && IsMember(port, vid)) egress.push_back(id);
  }
  return egress;
}

}  // namespace cfm_mgr::net
