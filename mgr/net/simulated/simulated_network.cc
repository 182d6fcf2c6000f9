// SPDX-License-Identifier: Apache-2.0
#include "net/simulated/simulated_network.h"

#include <algorithm>
#include <stdexcept>

namespace cfm_mgr::net {
namespace {

// A frame that went through so many relays goes in circles.
constexpr unsigned kMaxHops = 64;
// Bounds what a storm may take.
constexpr std::size_t kMaxUnderWay = 65536;

/** Nobody asks what a simulated neighbour notices. */
class IgnoredNotifications : public engine::Notifications {
 public:
  void OnLocalMepChanged(const MepKey& /*mep*/) override {}
  void OnRemoteMepChanged(const MepKey& /*mep*/, std::uint32_t /*remote_mep_id*/) override {}
  void OnFaultAlarm(const MepKey& /*mep*/, std::uint32_t /*defect_priority*/) override {}
  void OnLoopbackReply(std::uint32_t /*request_id*/, const engine::Mac& /*source*/,
                       std::uint32_t /*transaction_id*/) override {}
  void OnLoopbackEnded(std::uint32_t /*request_id*/,
                       const engine::LoopbackResult& /*result*/) override {}
  void OnLinktraceReply(const MepKey& /*mep*/, const engine::LinktraceReply& /*reply*/) override {}
  void OnLinktraceEnded(const MepKey& /*mep*/, std::uint32_t /*transaction_id*/) override {}
  void OnDelayReply(std::uint32_t /*request_id*/, const engine::Mac& /*source*/) override {}
  void OnDelayEnded(std::uint32_t /*request_id*/, const engine::DelayResult& /*result*/) override {}
  void OnSessionEnded(const engine::SessionResult& /*result*/) override {}
};

void Sooner(std::optional<engine::Time>& deadline, std::optional<engine::Time> other) {
  if (other && (!deadline || *other < *deadline)) deadline = other;
}

}  // namespace

SimulatedNetwork::SimulatedNetwork(const NetworkDescription& description,
                                   engine::Notifications& notifications, std::uint64_t seed,
                                   engine::Time start)
    : now_(start), random_(seed), ignored_(std::make_unique<IgnoredNotifications>()) {
  AddBridges(description, notifications);
  for (const LinkDescription& link : description.links) AddLink(link, start);
  std::stable_sort(changes_.begin(), changes_.end(),
                   [](const Change& a, const Change& b) { return a.at > b.at; });
  for (const CrossConnection& cross : description.cross_connections) {
    diversions_.emplace(Find(cross.from), Diversion{Find(cross.to), cross.vid, cross.to_vid});
  }
}

void SimulatedNetwork::AddBridges(const NetworkDescription& description,
                                  engine::Notifications& notifications) {
  for (const BridgeDescription& bridge : description.bridges) {
    const bool is_local = bridge.name == description.local;
    auto& added = bridges_[bridge.name];
    added = std::make_unique<Bridge>(bridge, now_, departures_,
                                     is_local ? notifications : *ignored_, random_.Seed());
    if (is_local) local_ = added.get();
  }
  if (local_ == nullptr) {
    throw std::invalid_argument("there is no bridge \"" + description.local + "\"");
  }
}

void SimulatedNetwork::AddLink(const LinkDescription& link, engine::Time start) {
  Connection& connection =
      *connections_.emplace_back(std::make_unique<Connection>(Connection{Link(link.quality), {}}));
  for (const std::size_t end : {0U, 1U}) {
    connection.ends[end] = Find(link.ends[end]);
    links_[connection.ends[end]] = {&connection, end};
  }
  SetUp(connection, link.up);
  for (auto change = link.changes.rbegin(); change != link.changes.rend(); ++change) {
    changes_.push_back({start + change->at, &connection, change->up});
  }
}

SimulatedNetwork::Place SimulatedNetwork::Find(const PortName& name) const {
  const auto bridge = bridges_.find(name.bridge);
  const engine::PortId port = bridge == bridges_.end() ? 0 : bridge->second->FindPort(name.port);
  if (port == 0) {
    throw std::invalid_argument("there is no port \"" + name.bridge + "." + name.port + "\"");
  }
  return {bridge->second.get(), port};
}

SimulatedNetwork::Connection& SimulatedNetwork::ConnectionOf(const PortName& name) {
  const auto found = links_.find(Find(name));
  if (found == links_.end()) {
    throw std::invalid_argument("port \"" + name.bridge + "." + name.port + "\" has no link");
  }
  return *found->second.connection;
}

engine::Engine& SimulatedNetwork::engine() { return local_->engine(); }

engine::Engine* SimulatedNetwork::FindEngine(const std::string& bridge) {
  const auto found = bridges_.find(bridge);
  return found == bridges_.end() ? nullptr : &found->second->engine();
}

std::optional<engine::Time> SimulatedNetwork::NextDeadline() const {
  if (!departures_.empty()) return now_;
  std::optional<engine::Time> deadline;
  if (!arrivals_.empty()) deadline = arrivals_.top().at;
  if (!changes_.empty()) Sooner(deadline, changes_.back().at);
  for (const auto& [name, bridge] : bridges_) Sooner(deadline, bridge->engine().NextDeadline());
  return deadline;
}

void SimulatedNetwork::Advance(engine::Time now) {
  Settle();
  for (auto next = NextDeadline(); next && *next <= now; next = NextDeadline()) {
    Step(std::max(*next, now_));
  }
  now_ = std::max(now, now_);
}

void SimulatedNetwork::Step(engine::Time now) {
  now_ = now;
  ApplyChanges();
  Settle();
  while (!arrivals_.empty() && arrivals_.top().at <= now_) {
    const Arrival arrival = arrivals_.top();
    arrivals_.pop();
    Deliver(arrival);
    Settle();
  }
  for (const auto& [name, bridge] : bridges_) {
    const auto deadline = bridge->engine().NextDeadline();
    if (deadline && *deadline <= now_) bridge->engine().Advance(now_);
    Settle();
  }
}

void SimulatedNetwork::ApplyChanges() {
  while (!changes_.empty() && changes_.back().at <= now_) {
    const Change change = changes_.back();
    changes_.pop_back();
    SetUp(*change.connection, change.up);
  }
}

void SimulatedNetwork::SetUp(Connection& connection, bool up) {
  connection.link.SetUp(up);
  for (const Place& end : connection.ends) end.bridge->SetLinkUp(end.port, up);
}

void SimulatedNetwork::SetLinkUp(const PortName& port, bool up) { SetUp(ConnectionOf(port), up); }

void SimulatedNetwork::SetLinkQuality(const PortName& port, const LinkQuality& quality) {
  ConnectionOf(port).link.SetQuality(quality);
}

void SimulatedNetwork::Inject(const PortName& port, const engine::Frame& frame) {
  Arrival arrival;
  arrival.at = now_;
  arrival.to = Find(port);
  arrival.frame = frame;
  Queue(std::move(arrival));
}

void SimulatedNetwork::Queue(Arrival arrival) {
  if (arrivals_.size() >= kMaxUnderWay || arrival.hops > kMaxHops) {
    ++counters_.overwhelmed;
    return;
  }
  arrival.order = order_++;
  arrivals_.push(std::move(arrival));
}

void SimulatedNetwork::Deliver(const Arrival& arrival) {
  if (arrival.by != nullptr && arrival.by->link.cuts() != arrival.cuts) {
    ++counters_.lost;
    return;
  }
  ++counters_.delivered;
  arrival.to.bridge->Receive(arrival.to.port, arrival.frame, arrival.hops);
}

// Takes what leaves until nothing does any more.
void SimulatedNetwork::Settle() {
  while (!departures_.empty()) {
    std::vector<Departure> leaving;
    leaving.swap(departures_);
    for (const Departure& departure : leaving) {
      if (departure.side == engine::Side::Wire) {
        Leave(departure);
      } else {
        departure.bridge->Relay(departure.port, departure.frame, departure.hops);
      }
    }
  }
}

void SimulatedNetwork::Leave(const Departure& departure) {
  if (tap_) {
    const Bridge& bridge = *departure.bridge;
    tap_({now_, bridge.name(), bridge.NameOf(departure.port), departure.frame});
  }
  if (Divert(departure)) return;
  const auto found = links_.find({departure.bridge, departure.port});
  if (found == links_.end()) {
    ++counters_.unconnected;
    return;
  }
  auto& [connection, end] = found->second;
  const auto arrives_at = connection->link.Carry(now_, end, random_);
  if (!arrives_at) {
    ++counters_.lost;
    return;
  }
  Queue({*arrives_at, 0, connection->ends[1 - end], connection, connection->link.cuts(),
         departure.frame, departure.hops});
}

bool SimulatedNetwork::Divert(const Departure& departure) {
  const auto [begin, end] = diversions_.equal_range({departure.bridge, departure.port});
  const auto found = std::find_if(begin, end, [&departure](const auto& entry) {
    return !entry.second.vid || *entry.second.vid == OuterVid(departure.frame);
  });
  if (found == end) return false;
  const Diversion& diversion = found->second;
  Arrival arrival;
  arrival.at = now_;
  arrival.to = diversion.to;
  arrival.frame = departure.frame;
  arrival.hops = departure.hops;
  if (diversion.to_vid && !arrival.frame.tags.empty()) {
    arrival.frame.tags.front().vid = *diversion.to_vid;
  }
  ++counters_.misdelivered;
  Queue(std::move(arrival));
  return true;
}

}  // namespace cfm_mgr::net
