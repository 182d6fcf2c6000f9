/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The interfaces of this machine as the ports of a bridge.
 *
 * Ports are the Ethernet interfaces of the network namespace, by their index. Each has a packet
 * socket, beside whatever else the kernel does with its frames: what the kernel forwards, it
 * forwards whether or not the engine lets it pass.
 *
 * Ports of one of the kernel's bridges are joined by its relay. A frame that an Up MEP sends leaves
 * by the other ports of the bridge, or by the one behind which the bridge knows its destination,
 * and what comes in by one port meets the MPs of those others too. All ports of a bridge count as
 * members of all VLANs. Other interfaces are not joined: there, what an Up MEP sends goes nowhere.
 */
#ifndef CFM_MGR_NET_PACKET_PACKET_NETWORK_H
#define CFM_MGR_NET_PACKET_PACKET_NETWORK_H

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "net/network.h"
#include "net/packet/bridge_table.h"
#include "net/packet/link_monitor.h"
#include "net/packet/packet_socket.h"

namespace cfm_mgr::net {

struct PacketNetworkOptions {
  /** Names of the interfaces to use, which may appear later; all Ethernet interfaces if none. */
  std::set<std::string> interfaces;
  /** Takes what an operator should know, a line at a time. */
  std::function<void(const std::string& line)> log;
};

/** Its time is the monotonic clock's, as MonotonicNow() gives it. */
class PacketNetwork : public Network, private engine::Surroundings {
 public:
  /**
   * @param notifications Of the engine; outlives the network.
   * @throws std::runtime_error when the process may not use packet sockets, with what it lacks
   */
  PacketNetwork(PacketNetworkOptions options, engine::Notifications& notifications,
                std::uint64_t seed);

  engine::Engine& engine() override { return engine_; }
  void Advance(engine::Time now) override;
  std::optional<engine::Time> NextDeadline() const override;
  int Descriptor() const override { return epoll_.get(); }
  std::vector<DropCount> Drops() override;

  /** None for an interface that is not used. They begin anew when the interface does. */
  std::optional<PortCounters> CountersOf(engine::PortId port) const;

 private:
  struct Port {
    LinkState link;
    std::unique_ptr<PacketSocket> socket;  ///< None while it cannot be opened.
    bool awaits_room = false;              ///< The socket is watched for room to send.
  };
  struct Relayed {
    engine::PortId ingress = 0;
    engine::Frame frame;
  };

  void Transmit(engine::PortId port, engine::Side side, const engine::Frame& frame) override;
  engine::EgressPorts FindEgress(engine::PortId ingress, std::uint16_t vid,
                                 const engine::Mac& destination) override;
  engine::Time TimeOfSending(engine::Time now) override;

  bool IsUsed(const LinkState& link) const;
  void TakeLinks(const std::vector<LinkUpdate>& updates);
  void TakeLink(const LinkState& link);
  void Open(Port& port);
  void Close(engine::PortId port);
  void ReceiveAll();
  void RunUntil(engine::Time now);
  void RunEngine(engine::Time now);
  void TakeFrame(const ReceivedFrame& received);
  std::vector<engine::PortId> EgressOf(engine::PortId ingress, const engine::Frame& frame);
  void RelayOwnFrames();
  void Flush();
  void Flush(Port& port);
  void Watch(Port& port, bool for_room);
  void Log(const std::string& line) const;

  PacketNetworkOptions options_;
  FileDescriptor epoll_;
  LinkMonitor monitor_;
  BridgeTable bridge_table_;
  ReceiveBatch batch_;
  engine::Time now_;
  std::map<engine::PortId, Port> ports_;
  std::deque<ReceivedFrame> received_;  ///< In the order of their times; some may be yet to come.
  std::vector<Relayed> relayed_;
  std::set<engine::PortId> unflushed_;
  engine::Engine engine_;
};

}  // namespace cfm_mgr::net

#endif
