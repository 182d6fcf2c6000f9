/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * What a simulated network consists of.
 */
#ifndef CFM_MGR_NET_SIMULATED_DESCRIPTION_H
#define CFM_MGR_NET_SIMULATED_DESCRIPTION_H

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "engine/frame.h"
#include "engine/surroundings.h"
#include "engine/time.h"
#include "model.h"

namespace cfm_mgr::net {

/** A port by the names of its bridge and of itself. */
struct PortName {
  std::string bridge;
  std::string port;
};

inline bool operator<(const PortName& a, const PortName& b) {
  return std::tie(a.bridge, a.port) < std::tie(b.bridge, b.port);
}

struct PortDescription {
  std::string name;
  /** Of the local bridge: the index of the interface by which clients know the port. */
  engine::PortId id = 0;
  engine::Mac mac{};
  /** VIDs that the relay lets through, 0 for untagged frames; all when there are none. */
  std::set<std::uint16_t> vids;
};

struct BridgeDescription {
  std::string name;
  std::vector<PortDescription> ports;
  /** What is configured there; endpoints name ports by their id. None for the local bridge. */
  std::map<std::string, Domain> domains;
};

/** How a link treats frames, the same in both directions. */
struct LinkQuality {
  engine::Time delay{};   ///< The least time that a frame takes.
  engine::Time jitter{};  ///< The most that chance adds to it; frames stay in order.
  double loss = 0;        ///< Share of frames that get lost, 0 to 1.
  double reorder = 0;     ///< Share of frames that others may overtake, 0 to 1.
  engine::Time reorder_by = std::chrono::milliseconds(10);  ///< How much longer those take.
};

/** A link that is cut or mended. */
struct LinkChange {
  engine::Time at{};  ///< From the start of the network on.
  bool up = true;
};

struct LinkDescription {
  PortName ends[2];
  LinkQuality quality;
  bool up = true;                   ///< At the start.
  std::vector<LinkChange> changes;  ///< In the order of their times.
};

/** Frames that come out where they should not. */
struct CrossConnection {
  PortName from;  ///< What leaves this port on the wire...
  PortName to;    ///< ...comes in by this one instead, in no time and never lost.
  std::optional<std::uint16_t> vid;  ///< Only frames of this VLAN, 0 for untagged ones.
  std::optional<std::uint16_t>
      to_vid;  ///< The VID that tagged ones come out with; the same if none.
};

struct NetworkDescription {
  std::string local;  ///< The bridge whose engine the owner configures.
  std::vector<BridgeDescription> bridges;
  std::vector<LinkDescription> links;
  std::vector<CrossConnection> cross_connections;
};

}  // namespace cfm_mgr::net

#endif
