// SPDX-License-Identifier: Apache-2.0
#include "net/packet/packet_network.h"

#include <sys/epoll.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "pdu/header.h"

namespace cfm_mgr::net {
namespace {

// What one port may bring in before the others and the engine have their turn.
constexpr std::size_t kMaxFramesAtOnce = 4096;

constexpr std::uint64_t kMonitor = 0;  // Marks the monitor's descriptor; no port has this number.

constexpr const char* kNotPermitted =
    "packet sockets are not permitted: cfm-mgr needs the capability CAP_NET_RAW to run on real "
    "interfaces; start it as root, or give the program the capability with "
    "\"setcap cap_net_raw+ep\"";

// Tells at once whether packet sockets may be used at all.
void CheckPermission() {
  try {
    const FileDescriptor probe(socket(AF_PACKET, SOCK_RAW | SOCK_CLOEXEC, 0), "");
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::operation_not_permitted) throw std::runtime_error(kNotPermitted);
    throw std::runtime_error("packet sockets cannot be used: " + error.code().message());
  }
}

bool IsGroupAddress(const engine::Mac& mac) { return (mac[0] & 1U) != 0; }

void Control(int epoll, int operation, int descriptor, std::uint32_t events, std::uint64_t mark) {
  epoll_event event{};
  event.events = events;
  event.data.u64 = mark;
  if (epoll_ctl(epoll, operation, descriptor, &event) != 0) ThrowErrno("cannot watch a socket");
}

void AppendDrops(std::vector<DropCount>& counts, const std::string& interface,
                 const PortCounters& counters) {
  AppendDrop(counts, interface, "came in faster than they were taken (receive buffer full)",
             counters.overrun);
  AppendDrop(counts, interface,
             "not readable (more than two tags, a reserved VID, a group address as source, or too "
             "long)",
             counters.refused);
  AppendDrop(counts, interface, "not sent: the interface is down", counters.down);
  AppendDrop(counts, interface, "not sent: too many wait for the interface", counters.crowded);
  AppendDrop(counts, interface, "not sent: refused, such as too long for the interface",
             counters.unsendable);
}

/** Whether a frame tells when it was sent. */
bool IsStamped(const engine::Frame& frame) {
  const auto opcode = static_cast<pdu::Opcode>(frame.pdu[1]);
  return opcode == pdu::Opcode::Dmm || opcode == pdu::Opcode::Dmr;
}

}  // namespace

PacketNetwork::PacketNetwork(PacketNetworkOptions options, engine::Notifications& notifications,
                             std::uint64_t seed)
    : options_((CheckPermission(), std::move(options))),
      epoll_(epoll_create1(EPOLL_CLOEXEC), "cannot watch sockets"),
      now_(MonotonicNow()),
      engine_(*this, notifications, seed) {
  Control(epoll_.get(), EPOLL_CTL_ADD, monitor_.descriptor(), EPOLLIN, kMonitor);
  for (const auto& [index, link] : monitor_.links()) {
    if (IsUsed(link)) TakeLink(link);
  }
}

void PacketNetwork::Advance(engine::Time now) {
  ReceiveAll();
  RunUntil(std::max(now, now_));
  Flush();
}

std::optional<engine::Time> PacketNetwork::NextDeadline() const {
  if (!relayed_.empty() || !unflushed_.empty()) return now_;
  std::optional<engine::Time> deadline = engine_.NextDeadline();
  if (!received_.empty() && (!deadline || received_.front().at < *deadline)) {
    deadline = received_.front().at;
  }
  return deadline;
}

std::optional<PortCounters> PacketNetwork::CountersOf(engine::PortId port) const {
  const auto found = ports_.find(port);
  if (found == ports_.end() || !found->second.socket) return std::nullopt;
  return found->second.socket->counters();
}

std::vector<DropCount> PacketNetwork::Drops() {
  std::vector<DropCount> counts;
  for (auto& [index, port] : ports_) {
    const std::string& name = port.link.name;
    if (port.socket) {
      port.socket->CountOverruns();
      AppendDrops(counts, name, port.socket->counters());
    }
    AppendDrops(counts, name, engine_.DropsAt(index));
  }
  return counts;
}

bool PacketNetwork::IsUsed(const LinkState& link) const {
  return link.is_ethernet &&
         (options_.interfaces.empty() || options_.interfaces.count(link.name) != 0);
}

void PacketNetwork::TakeLinks(const std::vector<LinkUpdate>& updates) {
  for (const LinkUpdate& update : updates) {
    if (update.link && IsUsed(*update.link)) {
      TakeLink(*update.link);
    } else {
      Close(update.index);
    }
  }
}

void PacketNetwork::TakeLink(const LinkState& link) {
  Port& port = ports_[link.index];
  port.link = link;
  if (!port.socket) Open(port);
  engine_.SetPort(now_, link.index, ToPortInfo(link));
}

// An interface that goes away while it is opened is tried again if it comes back.
void PacketNetwork::Open(Port& port) {
  try {
    port.socket = std::make_unique<PacketSocket>(port.link.index);
    Control(epoll_.get(), EPOLL_CTL_ADD, port.socket->descriptor(), EPOLLIN, port.link.index);
  } catch (const std::system_error& error) {
    port.socket.reset();
    Log("interface " + port.link.name + " cannot be used: " + error.what());
  }
}

void PacketNetwork::Close(engine::PortId port) {
  if (ports_.erase(port) == 0) return;
  unflushed_.erase(port);
  engine_.RemovePort(now_, port);
}

void PacketNetwork::ReceiveAll() {
  std::array<epoll_event, 64> events{};
  const int count = epoll_wait(epoll_.get(), events.data(), static_cast<int>(events.size()), 0);
  std::vector<ReceivedFrame> frames;
  bool links_changed = false;
  for (int i = 0; i < count; ++i) {
    const epoll_event& event = events[static_cast<std::size_t>(i)];
    if (event.data.u64 == kMonitor) {
      links_changed = true;
      continue;
    }
    const auto port = ports_.find(static_cast<engine::PortId>(event.data.u64));
    if (port == ports_.end()) continue;
    if ((event.events & EPOLLOUT) != 0) unflushed_.insert(port->first);
    port->second.socket->Receive(batch_, kMaxFramesAtOnce, frames);
  }
  std::move(frames.begin(), frames.end(), std::back_inserter(received_));
  const auto is_earlier = [](const ReceivedFrame& a, const ReceivedFrame& b) {
    return a.at < b.at;
  };
  if (!std::is_sorted(received_.begin(), received_.end(), is_earlier)) {
    std::stable_sort(received_.begin(), received_.end(), is_earlier);
  }
  if (links_changed) TakeLinks(monitor_.Update());
}

// Frames count at the time when the kernel took them in, so that a process that was held up takes
// no remote endpoint for lost whose CCMs came in time.
void PacketNetwork::RunUntil(engine::Time now) {
  while (!received_.empty() && received_.front().at <= now) {
    ReceivedFrame received = std::move(received_.front());
    received_.pop_front();
    received.frame.received = received.at;
    RunEngine(std::max(received.at, now_));
    TakeFrame(received);
  }
  RunEngine(now);
}

void PacketNetwork::RunEngine(engine::Time now) {
  now_ = now;
  const auto deadline = engine_.NextDeadline();
  if (deadline && *deadline <= now_) engine_.Advance(now_);
  RelayOwnFrames();
}

void PacketNetwork::TakeFrame(const ReceivedFrame& received) {
  const auto& [at, port, frame] = received;
  if (engine_.Receive(now_, port, engine::Side::Wire, frame) == engine::Verdict::Pass) {
    // The kernel's relay takes it there, whatever the MPs say.
    for (const engine::PortId egress : EgressOf(port, frame)) {
      engine_.Receive(now_, egress, engine::Side::Relay, frame);
    }
  }
  RelayOwnFrames();
}

void PacketNetwork::Transmit(engine::PortId port, engine::Side side, const engine::Frame& frame) {
  if (side == engine::Side::Relay) {
    relayed_.push_back({port, frame});
    return;
  }
  const auto found = ports_.find(port);
  if (found == ports_.end() || !found->second.socket) return;
  found->second.socket->Send(frame);
  if (IsStamped(frame)) {
    Flush(found->second);
  } else {
    unflushed_.insert(port);
  }
}

engine::Time PacketNetwork::TimeOfSending(engine::Time now) {
  return std::max(now, MonotonicNow());
}

engine::EgressPorts PacketNetwork::FindEgress(engine::PortId ingress, std::uint16_t vid,
                                              const engine::Mac& destination) {
  engine::EgressPorts egress;
  const auto found = ports_.find(ingress);
  const engine::PortId bridge = found == ports_.end() ? 0 : found->second.link.bridge;
  if (bridge == 0) return egress;
  for (const auto& [index, port] : ports_) {
    if (index != ingress && port.link.bridge == bridge) egress.flooded.push_back(index);
  }
  if (!IsGroupAddress(destination)) egress.learnt = bridge_table_.Find(bridge, vid, destination);
  return egress;
}

std::vector<engine::PortId> PacketNetwork::EgressOf(engine::PortId ingress,
                                                    const engine::Frame& frame) {
  const std::uint16_t vid = frame.tags.empty() ? std::uint16_t{0} : frame.tags.front().vid;
  engine::EgressPorts egress = FindEgress(ingress, vid, frame.destination);
  if (!egress.learnt) return std::move(egress.flooded);
  if (*egress.learnt == ingress || ports_.count(*egress.learnt) == 0) return {};
  return {*egress.learnt};
}

void PacketNetwork::RelayOwnFrames() {
  while (!relayed_.empty()) {
    std::vector<Relayed> relayed;
    relayed.swap(relayed_);
    for (const auto& [ingress, frame] : relayed) {
      for (const engine::PortId egress : EgressOf(ingress, frame)) {
        if (engine_.Receive(now_, egress, engine::Side::Relay, frame) == engine::Verdict::Pass) {
          Transmit(egress, engine::Side::Wire, frame);
        }
      }
    }
  }
}

void PacketNetwork::Flush() {
  for (const engine::PortId index : std::exchange(unflushed_, {})) {
    const auto port = ports_.find(index);
    if (port != ports_.end() && port->second.socket) Flush(port->second);
  }
}

void PacketNetwork::Flush(Port& port) { Watch(port, !port.socket->Flush()); }

void PacketNetwork::Watch(Port& port, bool for_room) {
  if (port.awaits_room == for_room) return;
  port.awaits_room = for_room;
  const std::uint32_t events = EPOLLIN | (for_room ? EPOLLOUT : 0U);
  Control(epoll_.get(), EPOLL_CTL_MOD, port.socket->descriptor(), events, port.link.index);
}

void PacketNetwork::Log(const std::string& line) const {
  if (options_.log) options_.log(line);
}

}  // namespace cfm_mgr::net
