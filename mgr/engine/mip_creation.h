/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Which MIPs the associations of a bridge ask for, IEEE 802.1Q 22.2.3.
 */
#ifndef CFM_MGR_ENGINE_MIP_CREATION_H
#define CFM_MGR_ENGINE_MIP_CREATION_H

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "engine/mep_settings.h"
#include "engine/surroundings.h"
#include "model.h"

namespace cfm_mgr::engine {

/** MHF creation, numbered as in the IEEE 802.1ag MIB. */
enum class MhfCreation : std::int32_t { None = 1, Default = 2, Explicit = 3, Defer = 4 };

/** An association as the creation of MIPs looks at it. */
struct MipAssociation {
  std::uint8_t level = 0;
  std::set<std::uint16_t> vids;              ///< 0 stands for frames without a tag.
  MhfCreation creation = MhfCreation::None;  ///< Defer is none: nothing is left to defer to.
  std::set<PortId> mep_ports;                ///< Where its MEPs are.
  bool has_up_mep = false;
  SenderIdPermission sender_id = SenderIdPermission::None;
};

/** What the creation of MIPs asks of an association and its domain. */
MipAssociation DescribeForMips(const DomainSettings& domain, const Association& association);

/** A MIP, that is its two MHFs. */
struct Mip {
  std::uint8_t level = 0;
  SenderIdPermission sender_id = SenderIdPermission::None;  ///< Of the association that made it.
};

inline bool operator==(const Mip& a, const Mip& b) {
  return a.level == b.level && a.sender_id == b.sender_id;
}

/** MIPs by their VIDs. */
using Mips = std::map<std::uint16_t, Mip>;

/**
 * The MIPs of a port, one for each VID at the most.
 *
 * A level is active for a VID on a port when an association of that level and VID has a MEP there,
 * or an Up MEP on any port, or no MEP in this bridge at all: such an association is configured for
 * its MIPs. The MIP is made at the lowest active level that is above every MEP of the port and may
 * have one. By default it may when no level is active below it, or the port has a MEP at the next
 * active level below it; by explicit only in the latter case.
 */
Mips FindMips(PortId port, const std::vector<MipAssociation>& associations);

}  // namespace cfm_mgr::engine

#endif
