// SPDX-License-Identifier: Apache-2.0
#include "engine_world.h"

#include <algorithm>

#include "engine_input.h"
#include "pdu_rules.h"
#include "require.h"

namespace cfm_fuzz {
namespace {

using namespace cfm_mgr;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::nanoseconds;
using std::chrono::seconds;

constexpr std::size_t kMostOnTheWire = 64;
// Deadlines that are met one by one; then the owner comes late.
constexpr int kMostSteps = 200;

bool Has(const std::map<MaKey, Association>& associations, const MepKey& mep) {
  const auto found = associations.find(mep.ma);
  return found != associations.end() && found->second.meps.count(mep.mep_id) != 0;
}

bool Lists(const std::map<MaKey, Association>& associations, const MaKey& ma, std::uint32_t id) {
  const auto found = associations.find(ma);
  if (found == associations.end()) return false;
  const auto& ids = found->second.settings.mep_ids;
  return std::find(ids.begin(), ids.end(), id) != ids.end();
}

}  // namespace

EngineWorld::EngineWorld() : engine_(*this, *this, 1) {
  for (const engine::PortId port : kPorts) {
    ports_.insert(port);
    engine_.SetPort(now_, port, {MacOfPort(port), 1, 2, "p" + std::to_string(port)});
  }
  SetAssociation(FirstKey(), FirstDomain(), FirstAssociation());
}

void EngineWorld::Step(ByteReader& input) {
  // An owner lets the engine do what is due before it asks for more.
  AdvanceTo(now_);
  switch (input.Next() % 16) {
    case 0:
      return SetPort(input);
    case 1: {
      const engine::PortId port = kPorts[input.Next() % 2U];
      engine_.RemovePort(now_, port);
      ports_.erase(port);
      return;
    }
    case 2: {
      const MaKey key = MakeKey(input);
      const DomainSettings domain = MakeDomain(input);
      return SetAssociation(key, domain, MakeAssociation(input));
    }
    case 3:
      return RemoveAssociation(MakeKey(input));
    case 4:
      return SetProbe(input);
    case 5:
      return RemoveProbe(input.Next() % 2U);
    case 6:
    case 7:
      return Receive(input, false);
    case 8:
      return Receive(input, true);
    case 9:
      return Carry(input);
    case 10:
      return StartLoopback(input);
    case 11:
      return StartLinktrace(input);
    case 12:
      return StartDelay(input);
    case 13:
      relay_knows_ = input.Next();
      return LookAtState();
    default:
      return PassTime(input);
  }
}

void EngineWorld::SetPort(ByteReader& input) {
  const std::uint8_t bits = input.Next();
  const engine::PortId port = kPorts[bits & 1U];
  engine::PortInfo info;
  info.mac = MacOfPort((bits & 2U) != 0 ? port + 2 : port);
  info.port_status = (bits & 4U) != 0 ? 1 : 2;
  info.interface_status = static_cast<std::uint8_t>(1 + (bits >> 3U) % 7U);
  info.name = input.Take(input.Next());
  ports_.insert(port);
  engine_.SetPort(now_, port, info);
}

void EngineWorld::SetAssociation(const MaKey& key, const DomainSettings& domain,
                                 const Association& association) {
  before_ = associations_;
  associations_[key] = association;
  engine_.SetAssociation(now_, key, domain, association);
  before_.clear();
}

void EngineWorld::RemoveAssociation(const MaKey& key) {
  before_ = associations_;
  associations_.erase(key);
  engine_.RemoveAssociation(now_, key);
  before_.clear();
}

void EngineWorld::SetProbe(ByteReader& input) {
  const std::uint32_t probe_id = input.Next() % 2U;
  const Probe probe = MakeProbe(input);
  for (const auto& session : probe.sessions) sessions_.insert({probe_id, session.first});
  engine_.SetProbe(now_, probe_id, probe);
  for (auto it = sessions_.begin(); it != sessions_.end();) {
    const bool stays = it->first != probe_id || probe.sessions.count(it->second) != 0;
    it = stays ? std::next(it) : sessions_.erase(it);
  }
}

void EngineWorld::RemoveProbe(std::uint32_t probe_id) {
  engine_.RemoveProbe(now_, probe_id);
  for (std::uint32_t session = 0; session < 3; ++session) sessions_.erase({probe_id, session});
}

void EngineWorld::Receive(ByteReader& input, bool raw) {
  const std::uint8_t bits = input.Next();
  const auto frame = raw ? MakeRawFrame(input) : MakeFrame(input);
  if (frame) ReceiveAt(kPorts[bits & 1U], (bits & 2U) == 0 ? Side::Wire : Side::Relay, *frame);
}

// A bridge lets a frame that is not for the MPs of one port go on to those of the other.
void EngineWorld::ReceiveAt(PortId port, Side from, const Frame& frame) {
  if (engine_.Receive(now_, port, from, frame) == engine::Verdict::Stop || from == Side::Relay) {
    return;
  }
  engine_.Receive(now_, Across(port), Side::Relay, frame);
}

void EngineWorld::Carry(ByteReader& input) {
  const std::uint8_t bits = input.Next();
  for (unsigned count = bits & 15U; count > 0 && !on_the_wire_.empty(); --count) {
    Sent sent = on_the_wire_.front();
    if ((bits & 0x10U) == 0) on_the_wire_.pop_front();
    if ((bits & 0x20U) != 0) {
      const std::size_t at = input.NextTwo() % sent.frame.pdu.size();
      sent.frame.pdu[at] = static_cast<std::uint8_t>(sent.frame.pdu[at] ^ input.Next());
    }
    if ((bits & 0x40U) == 0) ReceiveAt(Across(sent.port), Side::Wire, sent.frame);
  }
}

void EngineWorld::CarryAll() {
  for (std::size_t count = on_the_wire_.size(); count > 0; --count) {
    const Sent sent = std::move(on_the_wire_.front());
    on_the_wire_.pop_front();
    ReceiveAt(Across(sent.port), Side::Wire, sent.frame);
  }
}

void EngineWorld::StartLoopback(ByteReader& input) {
  engine::LoopbackRequest request;
  request.request_id = ++last_request_;
  request.mep = MakeMepKey(input);
  request.remote_mep_id = MakeMepId(input);
  request.count = input.NextTwo();
  request.data_size = input.NextTwo();
  loopbacks_.insert(request.request_id);
  if (engine_.StartLoopback(now_, request).error) loopbacks_.erase(request.request_id);
}

void EngineWorld::StartLinktrace(ByteReader& input) {
  engine::LinktraceRequest request;
  request.request_id = ++last_request_;
  request.mep = MakeMepKey(input);
  request.remote_mep_id = MakeMepId(input);
  request.ttl = input.NextTwo() % 300;
  request.use_fdb_only = input.Next() % 2 == 0;
  const auto started = engine_.StartLinktrace(now_, request);
  if (!started.error) linktraces_.insert({request.mep, started.transaction_id});
}

void EngineWorld::StartDelay(ByteReader& input) {
  engine::DelayRequest request;
  request.request_id = ++last_request_;
  request.mep = MakeMepKey(input);
  request.remote_mep_id = MakeMepId(input);
  request.count = input.NextTwo() % 2048;
  request.interval_ms = input.NextTwo();
  request.size = input.NextTwo() % 2048;
  request.pcp = input.Next();
  delays_.insert(request.request_id);
  if (engine_.StartDelayMeasurement(now_, request).error) delays_.erase(request.request_id);
}

void EngineWorld::PassTime(ByteReader& input) {
  constexpr Time kSteps[] = {nanoseconds(1),    milliseconds(3), milliseconds(10),
                             milliseconds(100), seconds(1),      milliseconds(3500),
                             seconds(10),       minutes(11),     hours(40)};
  const std::uint8_t bits = input.Next();
  const Time end = now_ + kSteps[(bits & 15U) % std::size(kSteps)];
  for (int step = 0; step < kMostSteps; ++step) {
    const auto next = engine_.NextDeadline();
    if (!next || *next > end) break;
    AdvanceTo(std::max(*next, now_));
    if ((bits & 0x10U) != 0) CarryAll();
  }
  AdvanceTo(end);
}

void EngineWorld::AdvanceTo(Time now) {
  now_ = now;
  engine_.Advance(now_);
  const auto next = engine_.NextDeadline();
  Require(!next || *next > now_, "after Advance() nothing is due");
}

void EngineWorld::LookAtState() {
  for (const auto& [ma, association] : associations_) {
    for (const auto& mep : association.meps) {
      const MepKey key{ma, mep.first};
      const auto local = engine_.LocalStatus(key);
      Require(local.has_value() && engine_.Counters(key).has_value(),
              "each configured endpoint has a status");
      Require(local->highest_defect_priority <= 5, "a defect has a priority up to 5");
      for (const std::uint32_t remote : RemotesOf(association, mep.first)) {
        const auto status = engine_.RemoteStatus(key, remote);
        Require(status && status->last_change <= now_, "a remote MEP changed in the past");
      }
      engine_.ClearCounters(key);
    }
  }
}

void EngineWorld::RequireConfigured(const MepKey& mep) const {
  Require(Has(associations_, mep) || Has(before_, mep),
          "only endpoints that are configured are notified of");
}

void EngineWorld::Transmit(PortId port, Side side, const Frame& frame) {
  Require(ports_.count(port) != 0, "frames leave by ports that are there");
  Require(IsDecodable(frame.pdu), "a PDU that is sent can be decoded");
  const auto received = OverTheWire(frame);
  Require(received.has_value(), "a frame that is sent can stand on a wire");
  if (side == Side::Wire && on_the_wire_.size() < kMostOnTheWire) {
    on_the_wire_.push_back({port, *received});
  }
}

engine::EgressPorts EngineWorld::FindEgress(PortId ingress, std::uint16_t /*vid*/,
                                            const Mac& destination) {
  engine::EgressPorts egress;
  for (const PortId port : kPorts) {
    if (port != ingress && ports_.count(port) != 0) egress.flooded.push_back(port);
  }
  if ((relay_knows_ & 1U) != 0) egress.learnt = destination == MacOfPort(1) ? 1 : 2;
  if ((relay_knows_ & 2U) != 0) egress.flooded.clear();
  return egress;
}

void EngineWorld::OnLocalMepChanged(const MepKey& mep) { RequireConfigured(mep); }

void EngineWorld::OnRemoteMepChanged(const MepKey& mep, std::uint32_t remote_mep_id) {
  RequireConfigured(mep);
  Require(Lists(associations_, mep.ma, remote_mep_id) || Lists(before_, mep.ma, remote_mep_id),
          "remote MEPs are those of the list");
}

void EngineWorld::OnFaultAlarm(const MepKey& mep, std::uint32_t defect_priority) {
  RequireConfigured(mep);
  Require(defect_priority >= 1 && defect_priority <= 5, "an alarm has a priority from 1 to 5");
}

void EngineWorld::OnLoopbackReply(std::uint32_t request_id, const Mac& /*source*/,
                                  std::uint32_t /*transaction_id*/) {
  Require(loopbacks_.count(request_id) != 0, "a reply belongs to a loopback that is running");
}

void EngineWorld::OnLoopbackEnded(std::uint32_t request_id, const engine::LoopbackResult& result) {
  Require(loopbacks_.erase(request_id) == 1, "a loopback that began ends once");
  Require(result.in_order <= result.expected, "no more replies in order than messages");
}

void EngineWorld::OnLinktraceReply(const MepKey& mep, const engine::LinktraceReply& reply) {
  RequireConfigured(mep);
  Require(linktraces_.count({mep, reply.transaction_id}) != 0,
          "a reply belongs to a linktrace that is running");
}

void EngineWorld::OnLinktraceEnded(const MepKey& mep, std::uint32_t transaction_id) {
  RequireConfigured(mep);
  Require(linktraces_.erase({mep, transaction_id}) == 1, "a linktrace that began ends once");
}

void EngineWorld::OnDelayReply(std::uint32_t request_id, const Mac& /*source*/) {
  Require(delays_.count(request_id) != 0, "a reply belongs to a measurement that is running");
}

void EngineWorld::OnDelayEnded(std::uint32_t request_id, const engine::DelayResult& result) {
  Require(delays_.erase(request_id) == 1, "a measurement that began ends once");
  Require(result.received <= result.sent, "no more replies count than messages were sent");
  Require(result.delay.min <= result.delay.max, "the least delay is not above the greatest");
}

void EngineWorld::OnSessionEnded(const engine::SessionResult& result) {
  Require(sessions_.count({result.probe_id, result.session_id}) != 0,
          "sessions that end were configured");
  Require(result.start <= result.finish && result.finish <= now_, "a session ends after its start");
}

}  // namespace cfm_fuzz
