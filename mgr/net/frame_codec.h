/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * CFM frames as they stand on an Ethernet, without the frame check sequence.
 */
#ifndef CFM_MGR_NET_FRAME_CODEC_H
#define CFM_MGR_NET_FRAME_CODEC_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "engine/frame.h"

namespace cfm_mgr::net {

/** Shortest frame that an Ethernet carries; shorter ones are padded with zeros. */
inline constexpr std::size_t kMinFrameSize = 60;
/** Longest frame that is taken: a jumbo frame of 9,000 octets with two tags. */
inline constexpr std::size_t kMaxFrameSize = 9022;
inline constexpr std::size_t kMaxTags = 2;
/** Octets of the common CFM header, the shortest PDU. */
inline constexpr std::size_t kMinPduSize = 4;

/** TPIDs, IEEE 802.1Q 9.5. */
inline constexpr std::uint16_t kCustomerTag = 0x8100;
inline constexpr std::uint16_t kServiceTag = 0x88a8;

/** Greatest VID that a frame may carry; 4095 is reserved. */
inline constexpr std::uint16_t kMaxVid = 4094;

/**
 * Takes a tag control information field apart. None for a TPID that is not one of the two, and for
 * the reserved VID.
 */
std::optional<engine::VlanTag> DecodeTag(std::uint16_t tpid, std::uint16_t tci);

/**
 * Reads the octets of a frame from the destination address on.
 *
 * @return None when the octets are no CFM frame with at most two tags: another EtherType, more
 *     tags, a reserved VID, a group address as the source, less than a CFM header, or more octets
 *     than the longest frame has.
 */
std::optional<engine::Frame> DecodeFrame(const std::uint8_t* octets, std::size_t size);

/**
 * Appends the octets of a frame, with its padding, to @p out.
 *
 * @return The number of octets appended; 0, and nothing appended, when the frame cannot be sent
 *     as it is: DecodeFrame() would refuse it, or a priority is above 7.
 */
std::size_t EncodeFrame(const engine::Frame& frame, std::vector<std::uint8_t>& out);

}  // namespace cfm_mgr::net

#endif
