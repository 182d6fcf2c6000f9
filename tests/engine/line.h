/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * A row of bridges with a MEP at either end, all of them monitored by the sample association.
 */
#ifndef CFM_TESTS_ENGINE_LINE_H
#define CFM_TESTS_ENGINE_LINE_H

#include <vector>

#include "samples.h"
#include "virtual_network.h"

namespace cfm_mgr::engine {

/** Left and right port of each bridge. */
inline constexpr PortId kLeft = 1;
inline constexpr PortId kRight = 2;

/** How the MEPs face each other: from the outer ports through the bridges, or over the links. */
enum class Ends { Up, Down };

/** MEP 1 is in the first bridge, MEP 2 in the last one; bridges between them have MIPs. */
class Line {
 public:
  explicit Line(std::size_t bridges, Ends ends = Ends::Down, std::uint64_t seed = 1);

  /** Lets the MEPs find each other. */
  void Settle() { network.Run(seconds(3)); }

  Bridge& At(std::size_t index) { return *bridges_[index]; }
  Bridge& First() { return *bridges_.front(); }
  Bridge& Last() { return *bridges_.back(); }
  Engine& engine() { return First().engine(); }
  /** Configures a bridge anew. */
  void Configure(std::size_t index, const DomainSettings& domain, const Association& association);
  /** What a bridge is configured with at first. */
  Association AssociationOf(std::size_t index) const;

  Mac FirstMepMac() const;
  Mac LastMepMac() const;

  /** @name Tests of MEP 1 against MEP 2
   * @{ */
  LoopbackRequest Loopback(std::uint32_t request_id, std::uint32_t count = 3,
                           std::uint32_t data_size = 0) const;
  LinktraceRequest Linktrace(std::uint32_t ttl = 64, bool use_fdb_only = true) const;
  DelayRequest Delay(std::uint32_t request_id, std::uint32_t count = 3,
                     std::uint32_t interval_ms = 100) const;
  /** @} */

  VirtualNetwork network;

 private:
  PortId MepPort(bool first) const;

  Ends ends_;
  std::vector<Bridge*> bridges_;
};

/** The PDUs of one opcode that a bridge sent, in order. */
std::vector<SentFrame> SentBy(const Bridge& bridge, pdu::Opcode opcode);

}  // namespace cfm_mgr::engine

#endif
