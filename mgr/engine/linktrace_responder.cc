// SPDX-License-Identifier: Apache-2.0
#include "engine/linktrace_responder.h"

#include <algorithm>

namespace cfm_mgr::engine {
namespace {

constexpr std::uint8_t kInterfaceUp = 1;
constexpr std::uint8_t kInterfaceUnknown = 4;
constexpr std::uint8_t kPortBlocked = 1;
constexpr std::uint8_t kPortIdInterfaceName = 5;
constexpr std::size_t kMaxPortIdSize = 255;

struct Route {
  PortId port = 0;
  pdu::RelayAction action = pdu::RelayAction::Fdb;
};

/** One LTM at one MP. */
class Responder {
 public:
  Responder(LinktraceBridge& bridge, const LtmArrival& arrival, const pdu::Ltm& ltm,
            const PortInfo& port)
      : bridge_(bridge), arrival_(arrival), ltm_(ltm), port_(port) {}

  std::optional<LinktraceAnswer> AtIngress();
  std::optional<LinktraceAnswer> AtEgress();

 private:
  LinktraceAnswer Begin() const;
  std::optional<Route> FindRoute(PortId ingress);
  pdu::PortAction ActionOf(PortId id, const PortInfo& port);
  void Leave(LinktraceAnswer& answer, const Route& route, bool ingress_ok);
  void Forward(LinktraceAnswer& answer, PortId port, const PortInfo& info) const;

  LinktraceBridge& bridge_;
  const LtmArrival& arrival_;
  const pdu::Ltm& ltm_;
  const PortInfo& port_;
};

pdu::ReplyPortTlv Describe(const PortInfo& port, pdu::PortAction action) {
  pdu::ReplyPortTlv tlv;
  tlv.action = static_cast<std::uint8_t>(action);
  tlv.mac = port.mac;
  if (!port.name.empty()) {
    tlv.port_id_subtype = kPortIdInterfaceName;
    tlv.port_id = pdu::OctetsOf(port.name).First(kMaxPortIdSize);
  }
  return tlv;
}

void SetRelayAction(LinktraceAnswer& answer, pdu::RelayAction action) {
  answer.ltr.relay_action = static_cast<std::uint8_t>(action);
}

LinktraceAnswer Responder::Begin() const {
  LinktraceAnswer answer;
  answer.ltr.level = ltm_.level;
  answer.ltr.use_fdb_only = ltm_.use_fdb_only;
  answer.ltr.terminal_mep = arrival_.mep;
  answer.ltr.transaction_id = ltm_.transaction_id;
  answer.ltr.ttl = static_cast<std::uint8_t>(ltm_.ttl - 1);
  answer.ltr.last_egress = ltm_.egress_id;
  answer.ltr.sender_id = arrival_.sender_id;
  return answer;
}

std::optional<Route> Responder::FindRoute(PortId ingress) {
  if (const auto own = bridge_.FindOwnPort(arrival_.vid, ltm_.level, ltm_.target)) {
    return Route{*own, pdu::RelayAction::Hit};
  }
  const EgressPorts ports = bridge_.FindEgress(ingress, arrival_.vid, ltm_.target);
  if (ports.learnt) return Route{*ports.learnt, pdu::RelayAction::Fdb};
  if (ports.flooded.size() == 1) return Route{ports.flooded.front(), pdu::RelayAction::Fdb};
  if (ltm_.use_fdb_only) return std::nullopt;
  const auto seen = bridge_.FindInMipDatabase(arrival_.vid, ltm_.target);
  if (!seen) return std::nullopt;
  return Route{*seen, pdu::RelayAction::Mpdb};
}

pdu::PortAction Responder::ActionOf(PortId id, const PortInfo& port) {
  if (port.interface_status != kInterfaceUp && port.interface_status != kInterfaceUnknown) {
    return pdu::PortAction::Down;
  }
  if (port.port_status == kPortBlocked) return pdu::PortAction::Blocked;
  // A bridge that names no ports has no VLANs to be left out of.
  const std::vector<PortId> members = bridge_.FindEgress(0, arrival_.vid, ltm_.target).flooded;
  const bool member =
      members.empty() || std::find(members.begin(), members.end(), id) != members.end();
  return member ? pdu::PortAction::Ok : pdu::PortAction::Vid;
}

void Responder::Forward(LinktraceAnswer& answer, PortId port, const PortInfo& info) const {
  ForwardedLtm forwarded{port, info.mac, ltm_};
  forwarded.ltm.ttl = answer.ltr.ttl;
  forwarded.ltm.egress_id = EgressIdentifierOf(info.mac);
  forwarded.ltm.sender_id = arrival_.sender_id;
  answer.ltr.forwarded = true;
  answer.ltr.next_egress = forwarded.ltm.egress_id;
  answer.forwarded = forwarded;
}

/** The egress half of a reply; the LTM goes on when nothing is against it. */
void Responder::Leave(LinktraceAnswer& answer, const Route& route, bool ingress_ok) {
  const PortInfo* port = bridge_.FindPort(route.port);
  if (port == nullptr) return;
  const EgressPoint point = bridge_.PointAt(route.port, arrival_.vid, ltm_.level);
  const pdu::PortAction action = ActionOf(route.port, *port);
  if (point.mip || point.up_mep) answer.ltr.egress = Describe(*port, action);
  answer.ltr.terminal_mep = point.up_mep;
  const bool open = ingress_ok && action == pdu::PortAction::Ok && !point.up_mep && !point.guarded;
  if (open && route.action != pdu::RelayAction::Hit && ltm_.ttl > 1) {
    Forward(answer, route.port, *port);
  }
}

std::optional<LinktraceAnswer> Responder::AtIngress() {
  LinktraceAnswer answer = Begin();
  const pdu::PortAction action = ActionOf(arrival_.port, port_);
  answer.ltr.ingress = Describe(port_, action);
  if (ltm_.target == port_.mac) {
    SetRelayAction(answer, pdu::RelayAction::Hit);
    return answer;
  }
  const std::optional<Route> route = FindRoute(arrival_.port);
  if (!route || route->port == arrival_.port) return std::nullopt;
  if (arrival_.mep) {
    // An MP of another port is no hit for a MEP, which ends the trace before it.
    const bool hit = route->action == pdu::RelayAction::Hit;
    SetRelayAction(answer, hit ? pdu::RelayAction::Fdb : route->action);
    return answer;
  }
  SetRelayAction(answer, route->action);
  Leave(answer, *route, action == pdu::PortAction::Ok);
  return answer;
}

std::optional<LinktraceAnswer> Responder::AtEgress() {
  LinktraceAnswer answer = Begin();
  answer.ltr.egress = Describe(port_, ActionOf(arrival_.port, port_));
  if (ltm_.target == port_.mac) {
    SetRelayAction(answer, pdu::RelayAction::Hit);
    return answer;
  }
  const std::optional<Route> route = FindRoute(0);
  if (!route || route->port != arrival_.port) return std::nullopt;
  SetRelayAction(answer, route->action);
  if (!arrival_.mep) Leave(answer, *route, true);
  return answer;
}

}  // namespace

pdu::EgressIdentifier EgressIdentifierOf(const Mac& address) {
  pdu::EgressIdentifier identifier{};
  std::copy(address.begin(), address.end(), identifier.end() - address.size());
  return identifier;
}

std::optional<LinktraceAnswer> AnswerLtm(LinktraceBridge& bridge, const LtmArrival& arrival,
                                         const pdu::Ltm& ltm) {
  const PortInfo* port = bridge.FindPort(arrival.port);
  if (ltm.ttl == 0 || port == nullptr) return std::nullopt;
  Responder responder(bridge, arrival, ltm, *port);
  return arrival.side == Side::Wire ? responder.AtIngress() : responder.AtEgress();
}

}  // namespace cfm_mgr::engine
