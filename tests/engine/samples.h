/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Configurations and frames that the tests of the engine begin with.
 */
#ifndef CFM_TESTS_ENGINE_SAMPLES_H
#define CFM_TESTS_ENGINE_SAMPLES_H

#include <chrono>
#include <vector>

#include "engine/engine.h"
#include "pdu/ccm.h"

namespace cfm_mgr::engine {

using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::nanoseconds;
using std::chrono::seconds;

// Codes of the MIB.
inline constexpr std::int32_t kDown = 1;
inline constexpr std::int32_t kUp = 2;
inline constexpr std::int32_t kOneSecond = 4;

/** Domain "D1" at level 3, its name a character string. */
DomainSettings SampleDomain(std::uint32_t level = 3);

/** Association "A1" on VID 100 at 1 s, MEPs 1 and 2 in its list, none in this bridge. */
Association SampleAssociation();

/** An active Down MEP on port 1 that sends CCMs with priority 6 and alarms for all defects. */
Mep SampleMep();

inline MaKey SampleMa() { return {"D1", "A1"}; }
inline MepKey SampleKey(std::uint32_t mep_id) { return {SampleMa(), mep_id}; }

/** The association with this MEP in it. */
Association WithMep(Association association, std::uint32_t mep_id, const Mep& mep);

/** A CCM of MEP 2 of the sample association, as its 1 s interval asks. */
pdu::Ccm SampleCcm();

/** A frame of VID 100 from 02:00:00:00:09:09 to the group address of its level. */
Frame FrameOf(const pdu::Ccm& ccm);
/** The same with other tags or another PDU. */
Frame TaggedFrame(std::vector<std::uint16_t> vids, std::vector<std::uint8_t> pdu);

}  // namespace cfm_mgr::engine

#endif
