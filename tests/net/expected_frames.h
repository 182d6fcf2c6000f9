/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The frames that EveryFrame has to send, as an analyser should read them: derived from its
 * configuration and its tests by the tables of IEEE 802.1Q clause 21 and ITU-T Y.1731 clause 9.
 */
#ifndef CFM_TESTS_NET_EXPECTED_FRAMES_H
#define CFM_TESTS_NET_EXPECTED_FRAMES_H

#include <cstddef>
#include <functional>
#include <vector>

#include "analyser.h"
#include "every_frame.h"

namespace cfm_mgr::net {

/** Frames that differ in nothing but a number, and what goes with it. */
struct ExpectedFrames {
  /** One that has @p before frames of the same opcode, source and VID before it. */
  std::function<Fields(std::size_t before)> frame;
  /** How many there are; 0 when it depends on the time, and is one at least. */
  std::size_t count = 0;
};

/**
 * All frames that the captured wire may carry, with all that there is in them but the time stamps
 * of DMMs and DMRs that are not 0.
 */
std::vector<ExpectedFrames> FramesOf(const EveryFrame& servers);

}  // namespace cfm_mgr::net

#endif
