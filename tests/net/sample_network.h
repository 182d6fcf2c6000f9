/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Networks that the tests begin with.
 */
#ifndef CFM_TESTS_NET_SAMPLE_NETWORK_H
#define CFM_TESTS_NET_SAMPLE_NETWORK_H

#include "net/simulated/description.h"

namespace cfm_mgr::net {

constexpr std::int32_t kDown = 1;
constexpr std::int32_t kUp = 2;

/** Domain "D" of level 4. */
DomainSettings SampleDomain();

inline MaKey SampleMa() { return {"D", "A"}; }
inline MepKey SampleMep(std::uint32_t mep_id) { return {SampleMa(), mep_id}; }

/** Association "A" of MEPs 1 and 2 on this VLAN at 1 s, with one of them on a port. */
Association SampleAssociation(std::uint32_t mep_id, engine::PortId port,
                              std::int32_t direction = kDown, std::uint32_t vid = 100);

/**
 * Bridges "b1" (the local one), "b2" and so on, each with ports "west" (1) and "east" (2), whose
 * addresses end in the bridge's and the port's number; a link from each to the next one.
 */
NetworkDescription SampleLine(std::size_t bridges, const LinkQuality& quality = {});

/** Puts a Down MEP 2 of the sample association onto the west port of the last bridge. */
NetworkDescription WithFarMep(NetworkDescription description);

/** A CFM frame of level 7 between two stations, tagged unless the VID is 0. */
engine::Frame SampleFrame(std::uint8_t source, std::uint8_t destination, std::uint16_t vid);

}  // namespace cfm_mgr::net

#endif
