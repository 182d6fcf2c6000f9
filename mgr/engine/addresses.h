/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_ADDRESSES_H
#define CFM_MGR_ENGINE_ADDRESSES_H

#include <cstdint>
#include <vector>

#include "engine/frame.h"

namespace cfm_mgr::engine {

/** Group address of CCMs, multicast LBMs and AIS frames of a level, IEEE 802.1Q table 8-13. */
Mac CcmGroupAddress(std::uint8_t level);

/** Whether an address is the group address of CCMs of any level. */
bool IsCcmGroupAddress(const Mac& address);

/** Group address of LTMs of a level. */
Mac LtmGroupAddress(std::uint8_t level);

/** The service that a frame belongs to: the VIDs of its tags, 0 where there is no such tag. */
struct ServiceTags {
  std::uint16_t vid = 0;        ///< Of the outer tag; a tag that is for priority alone has 0 too.
  std::uint16_t inner_vid = 0;  ///< Of the tag inside it.
};

inline bool operator==(ServiceTags a, ServiceTags b) {
  return a.vid == b.vid && a.inner_vid == b.inner_vid;
}

/** The service of a frame; @p frame has at most two tags. */
ServiceTags ServiceOf(const Frame& frame);

/** The tags of frames of a service: an S-tag is outside when there are two. */
std::vector<VlanTag> TagsOf(ServiceTags service, std::uint8_t pcp);

}  // namespace cfm_mgr::engine

#endif
