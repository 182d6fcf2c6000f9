/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_MEP_SETTINGS_H
#define CFM_MGR_ENGINE_MEP_SETTINGS_H

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/addresses.h"
#include "engine/surroundings.h"
#include "engine/time.h"
#include "model.h"
#include "pdu/maid.h"
#include "pdu/sender_id.h"

namespace cfm_mgr::engine {

/** Defects by their priority, IEEE 802.1Q 20.35; the codes of the MIB. */
namespace defect_priority {
inline constexpr unsigned kNone = 0;
inline constexpr unsigned kRdi = 1;
inline constexpr unsigned kMacStatus = 2;
inline constexpr unsigned kRemoteCcm = 3;
inline constexpr unsigned kErrorCcm = 4;
inline constexpr unsigned kXconCcm = 5;
}  // namespace defect_priority

enum class FaultAction : std::int32_t { None = 0, Block = 1, ShutDown = 2 };

/** When the fault notification generator raises an alarm. */
struct AlarmSettings {
  unsigned lowest_priority = defect_priority::kMacStatus;  ///< 1 to 6; 6 never.
  Time alarm_time{};
  Time reset_time{};
};

inline bool operator==(const AlarmSettings& a, const AlarmSettings& b) {
  return a.lowest_priority == b.lowest_priority && a.alarm_time == b.alarm_time &&
         a.reset_time == b.reset_time;
}

/** What of itself a sender tells in Sender ID TLVs. */
enum class SenderIdPermission : std::int32_t { None = 1, Chassis = 2, Manage = 3, Both = 4 };

/**
 * Alarm indication. The association's octet A is the level, which has to be above its own, or 0
 * for the next one; word B is the code of the period, where all but that of 1 min stand for 1 s;
 * the id set are the VIDs, none for the MEP's own; octet C is the priority; flag D tells whether
 * AIS received keeps lost CCMs from raising alarms.
 */
struct AisSettings {
  bool enabled = false;
  std::uint8_t level = 0;
  std::uint8_t period = 0;
  std::uint8_t priority = 0;
  std::vector<ServiceTags> services;
  bool suppresses_loss = false;
};

bool operator==(const AisSettings& a, const AisSettings& b);

/** What a MEP is made of, as its association and domain configure it. */
struct MepSettings {
  // What every CCM that comes in is compared with stands together.
  std::uint8_t level = 0;
  std::uint8_t ccm_interval = 0;  ///< 1 to 7; 0: no continuity check.
  std::optional<pdu::Maid> maid;  ///< None: its names do not fit their formats.

  MepKey key;
  PortId port = 0;
  Side side = Side::Wire;           ///< That it faces: the wire for a Down MEP.
  ServiceTags service;              ///< Of the frames it sends.
  std::vector<std::uint16_t> vids;  ///< Outer VIDs of the frames it takes, ascending; never empty.

  bool active = false;
  bool ccm_enabled = false;
  std::uint8_t priority = 0;
  std::vector<std::uint16_t> remotes;  ///< The MEP list without this MEP, ascending.
  SenderIdPermission sender_id = SenderIdPermission::None;
  AlarmSettings alarms;
  FaultAction fault_action = FaultAction::None;
  AisSettings ais;
};

bool operator==(const MepSettings& a, const MepSettings& b);

/** The settings of an endpoint of an association, which has it. */
MepSettings ResolveMep(const MaKey& ma, const DomainSettings& domain,
                       const Association& association, std::uint32_t mep_id);

/** Whether two settings put a MEP in the same place: it keeps its state when one replaces the
 * other. */
bool IsSamePlace(const MepSettings& a, const MepSettings& b);

/** The permission of an association, which may leave it to its domain. */
SenderIdPermission ResolveSenderId(const DomainSettings& domain,
                                   const AssociationSettings& association);

/**
 * The Sender ID TLV that a permission asks for: the chassis ID is an address of the sender's, of
 * subtype 4. There is no management address to tell. Points to @p mac; none without permission.
 */
std::optional<pdu::SenderId> SenderIdOf(SenderIdPermission permission, const Mac& mac);

}  // namespace cfm_mgr::engine

#endif
