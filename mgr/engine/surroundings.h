/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_SURROUNDINGS_H
#define CFM_MGR_ENGINE_SURROUNDINGS_H

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/frame.h"
#include "engine/time.h"

namespace cfm_mgr::engine {

/** A port of the bridge, by the index of its interface. Never 0. */
using PortId = std::uint32_t;

/** The two sides of the MPs on a port. */
enum class Side {
  Wire,   ///< The link: where a Down MEP sends.
  Relay,  ///< The bridge's relay function: where an Up MEP sends.
};

/** What the bridge's relay knows of a destination. */
struct EgressPorts {
  /** The one port behind which the address was learnt. */
  std::optional<PortId> learnt;
  /** All ports of the VLAN, the one of entry left out: where an unknown address would go. */
  std::vector<PortId> flooded;
};

/**
 * Where an engine's frames go. These functions may be called from any member of the engine that
 * takes a time, and must not call back into it: a simulated network queues what it is given.
 */
class Surroundings {
 public:
  Surroundings() = default;
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;
  virtual ~Surroundings() = default;

  /** Takes a frame that leaves the MPs of a port on one side. */
  virtual void Transmit(PortId port, Side side, const Frame& frame) = 0;

  /**
   * Where the relay would send a frame of this VLAN and destination that came in by @p ingress.
   * When that is 0 the port of entry is not known, and `flooded` has all ports of the VLAN.
   */
  virtual EgressPorts FindEgress(PortId ingress, std::uint16_t vid, const Mac& destination) = 0;

  /**
   * When a frame that is transmitted now leaves, by the engine's clock: at @p now, to which the
   * owner has brought the engine, or later, while the owner catches up with what has come in.
   */
  virtual Time TimeOfSending(Time now) { return now; }
};

}  // namespace cfm_mgr::engine

#endif
