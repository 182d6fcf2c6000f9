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
};

/** What the creation of MIPs asks of an association and its domain. */
MipAssociation DescribeForMips(const DomainSettings& domain, const Association& association);

/** The level of the MIP of each VID that has one. */
using MipLevels = std::map<std::uint16_t, std::uint8_t>;

/**
 * The MIPs of a port, one for each VID at the most.
 *
 * A level is active for a VID on a port when an association of that level and VID has a MEP there,
 * or an Up MEP on any port, or no MEP in this bridge at all: such an association is configured for
 * its MIPs. The MIP is made at the lowest active level that is above every MEP of the port and may
 * have one. By default it may when no level is active below it, or the port has a MEP at the next
 * active level below it; by explicit only in the latter case.
 */
MipLevels FindMips(PortId port, const std::vector<MipAssociation>& associations);

}  // namespace cfm_mgr::engine

#endif
