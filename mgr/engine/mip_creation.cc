// SPDX-License-Identifier: Apache-2.0
#include "engine/mip_creation.h"

#include <algorithm>

#include "pdu/header.h"

namespace cfm_mgr::engine {
namespace {

constexpr std::int32_t kUp = 2;

std::uint16_t Vid(std::uint32_t vid) { return static_cast<std::uint16_t>(vid & 0xfffU); }

MhfCreation Resolve(std::int32_t association, std::int32_t domain) {
  const std::int32_t value =
      association == static_cast<std::int32_t>(MhfCreation::Defer) ? domain : association;
  if (value == static_cast<std::int32_t>(MhfCreation::Default)) return MhfCreation::Default;
  if (value == static_cast<std::int32_t>(MhfCreation::Explicit)) return MhfCreation::Explicit;
  return MhfCreation::None;
}

/** What the associations of one level and VID come to on a port. */
struct ActiveLevel {
  bool mep = false;
  bool by_default = false;
  bool by_explicit = false;
  SenderIdPermission sender_id = SenderIdPermission::None;
};

using ActiveLevels = std::map<std::uint8_t, ActiveLevel>;

bool IsActive(const MipAssociation& association, PortId port) {
  return association.mep_ports.empty() || association.has_up_mep ||
         association.mep_ports.count(port) != 0;
}

std::map<std::uint16_t, ActiveLevels> FindActiveLevels(
    PortId port, const std::vector<MipAssociation>& associations) {
  std::map<std::uint16_t, ActiveLevels> levels_of;
  for (const MipAssociation& association : associations) {
    if (!IsActive(association, port)) continue;
    for (const std::uint16_t vid : association.vids) {
      ActiveLevel& level = levels_of[vid][association.level];
      level.mep |= association.mep_ports.count(port) != 0;
      level.by_default |= association.creation == MhfCreation::Default;
      level.by_explicit |= association.creation == MhfCreation::Explicit;
      if (association.creation != MhfCreation::None) level.sender_id = association.sender_id;
    }
  }
  return levels_of;
}

std::optional<Mip> FindMip(const ActiveLevels& levels) {
  const auto highest_mep = std::find_if(levels.rbegin(), levels.rend(),
                                        [](const auto& entry) { return entry.second.mep; });
  bool lowest = true;
  bool mep_below = false;
  for (const auto& [number, level] : levels) {
    const bool above_meps = highest_mep == levels.rend() || number > highest_mep->first;
    const bool wanted =
        (level.by_default && (lowest || mep_below)) || (level.by_explicit && mep_below);
    if (above_meps && wanted) return Mip{number, level.sender_id};
    lowest = false;
    mep_below = level.mep;
  }
  return std::nullopt;
}

}  // namespace

MipAssociation DescribeForMips(const DomainSettings& domain, const Association& association) {
  MipAssociation described;
  described.level = static_cast<std::uint8_t>(domain.level & pdu::kMaxLevel);
  described.sender_id = ResolveSenderId(domain, association.settings);
  described.creation = Resolve(association.settings.mhf_creation, domain.mhf_creation);
  for (const std::uint32_t vid : association.settings.vids) {
    described.vids.insert(Vid(vid));
  }
  for (const auto& [id, mep] : association.meps) {
    if (mep.primary_vid != 0) described.vids.insert(Vid(mep.primary_vid));
    described.mep_ports.insert(mep.ifindex);
    described.has_up_mep |= mep.direction == kUp;
  }
  if (described.vids.empty()) described.vids.insert(0);
  return described;
}

Mips FindMips(PortId port, const std::vector<MipAssociation>& associations) {
  Mips mips;
  for (const auto& [vid, levels] : FindActiveLevels(port, associations)) {
    if (const auto mip = FindMip(levels)) mips[vid] = *mip;
  }
  return mips;
}

}  // namespace cfm_mgr::engine
