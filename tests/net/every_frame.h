/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Servers that send every kind of frame over one wire.
 */
#ifndef CFM_TESTS_NET_EVERY_FRAME_H
#define CFM_TESTS_NET_EVERY_FRAME_H

#include <cstdint>

#include "packet_node.h"

namespace cfm_mgr::net {

/**
 * A server at v0; another one at v1 and w0, which a bridge of the kernel's joins; a third one at
 * w1, the other end of w0. Their associations:
 *
 * - "line" in "example": VLAN 100 at level 4, MEP 1 on v0 and MEP 2 on w1, with MIPs at v1 and w0
 *   between them; CCMs of priority 7 each 10 s; the chassis as sender ID
 * - 513 in 02:00:00:00:00:fe/4660: C-VLAN 30 in S-VLAN 200 at level 6, MEP 1 on v0 and MEP 2 on v1;
 *   CCMs of priority 3 each minute; the management address as sender ID, of which there is none
 * - "ICC123UMC0001", without domain: untagged at level 1, MEP 8191 on v0, whose only remote MEP is
 *   missing; CCMs each 100 ms; no sender ID
 * - VLAN 300 at level 2, an Up MEP on v1 without CCMs, whose only remote MEP is missing; AIS for
 * the VLANs 300 and 301 at level 5, of priority 6, each minute
 * - VLAN 300 at level 5, a MEP on v0 without CCMs, which those AIS frames are for
 */
class EveryFrame {
 public:
  /** Begins with all interfaces there and up. */
  EveryFrame();

  /**
   * Runs until every endpoint has done its part: CCMs, RDI, AIS, and all tests from MEP 1 to MEP 2
   * of the first two associations. False when that does not happen within some seconds.
   */
  bool Run();

  /** What the tests of an endpoint began with. */
  struct Tests {
    std::uint32_t loopback = 0;  ///< Transaction identifier of the first LBM.
    std::uint32_t linktrace = 0;
  };
  /** 3 LBMs with 1000 octets, an LTM, and 3 DMMs of 64 octets and priority 5. */
  const Tests& single_tagged() const { return single_tagged_; }
  /**
   * An LBM without data, an LTM of TTL 255 that asks for more than filtering databases, and a DMM
   * of 1000 octets and priority 0.
   */
  const Tests& double_tagged() const { return double_tagged_; }

  /** @name When the tests ran
   * @{ */
  engine::Time begin() const { return begin_; }
  engine::Time end() const { return end_; }
  /** @} */

 private:
  struct Parameters;
  Tests Start(const MaKey& ma, const Parameters& parameters);
  bool HasEverything();

  Node near_;
  Node bridge_;
  Node far_;
  Tests single_tagged_;
  Tests double_tagged_;
  engine::Time begin_{};
  engine::Time end_{};
};

}  // namespace cfm_mgr::net

#endif
