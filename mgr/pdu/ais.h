/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_PDU_AIS_H
#define CFM_MGR_PDU_AIS_H

#include <cstdint>
#include <vector>

#include "pdu/header.h"

namespace cfm_mgr::pdu {

/** Codes of the two periods of AIS frames; all others are reserved. */
inline constexpr std::uint8_t kAisOneSecond = 4;
inline constexpr std::uint8_t kAisOneMinute = 6;

/** An Alarm Indication Signal, ITU-T Y.1731 9.7. */
struct Ais {
  std::uint8_t level = 0;  ///< Of those whom it is for.
  std::uint8_t period = kAisOneSecond;
};

Decoded<Ais> DecodeAis(OctetView pdu);
std::vector<std::uint8_t> Encode(const Ais& ais);

}  // namespace cfm_mgr::pdu

#endif
