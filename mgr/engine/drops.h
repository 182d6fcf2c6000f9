/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Frames that were not worth anything, by port and reason.
 */
#ifndef CFM_MGR_ENGINE_DROPS_H
#define CFM_MGR_ENGINE_DROPS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <numeric>

#include "engine/surroundings.h"
#include "pdu/decoded.h"

namespace cfm_mgr::engine {

/** Frames that were dropped, by why. */
struct DropCounters {
  /** Truncated, over-long, or against the coding rules. */
  std::array<std::uint64_t, pdu::kFaults> by_fault{};
  std::uint64_t unknown = 0;     ///< An opcode that no MP here takes.
  std::uint64_t low_level = 0;   ///< Below the level of a MEP that guards the port.
  std::uint64_t unexpected = 0;  ///< To another's address, or replies to no test that is running.
  std::uint64_t unanswered = 0;  ///< Replies that were not sent, since too many wait.

  std::uint64_t malformed() const {
    return std::accumulate(by_fault.begin(), by_fault.end(), std::uint64_t{0});
  }
};

/** The counters of all ports of an engine. */
class Drops {
 public:
  /** A frame meets the MPs of this port; what is counted from now on counts for it. */
  void SetPort(PortId port) { port_ = port; }

  DropCounters& here() { return by_port_[port_]; }
  DropCounters& At(PortId port) { return by_port_[port]; }
  void CountMalformed(pdu::Fault fault) { ++here().by_fault[static_cast<std::size_t>(fault)]; }

  void Forget(PortId port) { by_port_.erase(port); }

  /** All zero for a port where nothing was dropped. */
  DropCounters Of(PortId port) const {
    const auto found = by_port_.find(port);
    return found == by_port_.end() ? DropCounters{} : found->second;
  }

 private:
  PortId port_ = 0;
  std::map<PortId, DropCounters> by_port_;
};

}  // namespace cfm_mgr::engine

#endif
