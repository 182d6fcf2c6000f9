/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_SIMULATED_BRIDGE_H
#define CFM_MGR_NET_SIMULATED_BRIDGE_H

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "engine/engine.h"
#include "net/drop_count.h"
#include "net/simulated/description.h"
#include "net/simulated/forwarding_table.h"

namespace cfm_mgr::net {

class Bridge;

/** A frame on its way inside a bridge: out to the wire of a port, or into the relay from it. */
struct Departure {
  Bridge* bridge = nullptr;
  engine::PortId port = 0;
  engine::Side side = engine::Side::Wire;
  engine::Frame frame;
  unsigned hops = 0;  ///< Relays that it has passed.
};

/**
 * A bridge with a learning relay and an engine at its ports.
 *
 * A frame that comes in meets the MPs of its port; what they let pass is learnt from and relayed,
 * and meets the MPs of every port by which it leaves. What leaves is put into a list, from which
 * the owner takes it: nothing here calls the engine while the engine is calling.
 */
class Bridge : public engine::Surroundings {
 public:
  /**
   * @param clock The present, which the owner keeps; it and the others outlive the bridge.
   * @param departures Takes what leaves.
   */
  Bridge(const BridgeDescription& description, const engine::Time& clock,
         std::vector<Departure>& departures, engine::Notifications& notifications,
         std::uint64_t seed);

  const std::string& name() const { return name_; }
  engine::Engine& engine() { return engine_; }
  const engine::Engine& engine() const { return engine_; }
  /** None of this name is 0. */
  engine::PortId FindPort(const std::string& name) const;
  const std::string& NameOf(engine::PortId port) const { return ports_.at(port).info.name; }

  /** A port whose link is down neither takes nor gives anything. */
  void SetLinkUp(engine::PortId port, bool up);
  bool IsLinkUp(engine::PortId port) const { return ports_.at(port).up; }

  /** What was dropped at its ports, by name. */
  std::vector<DropCount> Drops() const;

  /** A frame that comes in from the wire. */
  void Receive(engine::PortId port, const engine::Frame& frame, unsigned hops);
  /** A frame that enters the relay from a port. */
  void Relay(engine::PortId ingress, const engine::Frame& frame, unsigned hops);

  void Transmit(engine::PortId port, engine::Side side, const engine::Frame& frame) override;
  engine::EgressPorts FindEgress(engine::PortId ingress, std::uint16_t vid,
                                 const engine::Mac& destination) override;

 private:
  struct Port {
    engine::PortInfo info;
    std::set<std::uint16_t> vids;
    bool up = true;
  };

  bool IsMember(const Port& port, std::uint16_t vid) const;
  std::vector<engine::PortId> EgressOf(engine::PortId ingress, const engine::Frame& frame) const;

  std::string name_;
  const engine::Time& clock_;
  std::vector<Departure>& departures_;
  std::map<engine::PortId, Port> ports_;
  ForwardingTable table_;
  engine::Engine engine_;
};

/** The VID by which a relay tells frames apart; 0 for an untagged one. */
inline std::uint16_t OuterVid(const engine::Frame& frame) {
  return frame.tags.empty() ? std::uint16_t{0} : frame.tags.front().vid;
}

}  // namespace cfm_mgr::net

#endif
