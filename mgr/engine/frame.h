/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_FRAME_H
#define CFM_MGR_ENGINE_FRAME_H

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "engine/time.h"

namespace cfm_mgr::engine {

using Mac = std::array<std::uint8_t, 6>;

/** EtherType of CFM frames, IEEE 802.1Q 21.4. */
inline constexpr std::uint16_t kCfmEtherType = 0x8902;

/** One VLAN tag, IEEE 802.1Q 9.6. */
struct VlanTag {
  std::uint16_t tpid = 0x8100;  ///< 0x8100 of a C-tag, 0x88a8 of an S-tag.
  std::uint8_t pcp = 0;         ///< Priority, 0 to 7.
  bool dei = false;
  std::uint16_t vid = 0;
};

/** An Ethernet frame that carries a CFM PDU. */
struct Frame {
  Mac destination{};
  Mac source{};
  std::vector<VlanTag> tags;      ///< Outermost first; at most two.
  std::vector<std::uint8_t> pdu;  ///< All that follows the EtherType, padding included.
  /** When it arrived, where that is known better than from the moment of Engine::Receive(). */
  std::optional<Time> received{};
};

}  // namespace cfm_mgr::engine

#endif
