// SPDX-License-Identifier: Apache-2.0
#include "engine/mep_settings.h"

#include <algorithm>
#include <tuple>

#include "engine/ccm_interval.h"
#include "pdu/ais.h"

namespace cfm_mgr::engine {
namespace {

constexpr std::int32_t kUp = 2;
constexpr std::int32_t kDeferSenderId = 5;
constexpr unsigned kMaxAlarmPriority = 6;
constexpr std::uint32_t kDefaultAlarmTime = 250;
constexpr std::uint32_t kDefaultResetTime = 1000;

std::uint16_t Vid(std::uint32_t vid) { return static_cast<std::uint16_t>(vid & 0xfffU); }

/** Times travel in centiseconds; 0 stands for the default. */
Time Centiseconds(std::uint32_t configured, std::uint32_t if_zero) {
  return std::chrono::milliseconds(10) * (configured == 0 ? if_zero : configured);
}

std::uint32_t PrimaryVid(const AssociationSettings& association, const Mep& mep) {
  if (mep.primary_vid != 0 || association.vids.empty()) return mep.primary_vid;
  return association.vids.front();
}

/** There is no tag inside of none. */
ServiceTags Service(const AssociationSettings& association, const Mep& mep) {
  const std::uint16_t vid = Vid(PrimaryVid(association, mep));
  return {vid, vid == 0 ? std::uint16_t{0} : Vid(mep.inner_vid)};
}

std::vector<std::uint16_t> TakenVids(const AssociationSettings& association, std::uint16_t own) {
  std::vector<std::uint16_t> vids{own};
  for (const std::uint32_t vid : association.vids) vids.push_back(Vid(vid));
  std::sort(vids.begin(), vids.end());
  vids.erase(std::unique(vids.begin(), vids.end()), vids.end());
  return vids;
}

std::vector<std::uint16_t> Remotes(const Association& association, std::uint32_t own) {
  const std::vector<std::uint32_t> remotes = RemotesOf(association, own);
  return {remotes.begin(), remotes.end()};
}

AlarmSettings Alarms(const Mep& mep) {
  AlarmSettings alarms;
  const auto lowest = static_cast<unsigned>(mep.lowest_prio_defect);
  if (lowest >= 1 && lowest <= kMaxAlarmPriority) alarms.lowest_priority = lowest;
  alarms.alarm_time = Centiseconds(mep.fng_alarm_time, kDefaultAlarmTime);
  alarms.reset_time = Centiseconds(mep.fng_reset_time, kDefaultResetTime);
  return alarms;
}

AisSettings ResolveAis(const Ais& configured, std::uint8_t level, ServiceTags own) {
  AisSettings ais;
  const std::uint32_t client = configured.octet_a == 0 ? level + 1U : configured.octet_a;
  ais.enabled = configured.enabled && client > level && client <= pdu::kMaxLevel;
  ais.level = static_cast<std::uint8_t>(client & pdu::kMaxLevel);
  ais.period = configured.word_b == pdu::kAisOneMinute ? pdu::kAisOneMinute : pdu::kAisOneSecond;
  ais.priority = static_cast<std::uint8_t>(configured.octet_c & 7U);
  for (const std::uint32_t vid : configured.id_set) ais.services.push_back({Vid(vid), 0});
  if (ais.services.empty()) ais.services.push_back(own);
  ais.suppresses_loss = configured.flag_d;
  return ais;
}

}  // namespace

bool operator==(const AisSettings& a, const AisSettings& b) {
  const auto fields = [](const AisSettings& s) {
    return std::tie(s.enabled, s.level, s.period, s.priority, s.services, s.suppresses_loss);
  };
  return fields(a) == fields(b);
}

bool operator==(const MepSettings& a, const MepSettings& b) {
  const auto fields = [](const MepSettings& s) {
    return std::tie(s.key.ma.md_name, s.key.ma.ma_name, s.key.mep_id, s.ccm_interval, s.active,
                    s.ccm_enabled, s.priority, s.remotes, s.sender_id, s.alarms, s.fault_action,
                    s.ais);
  };
  return IsSamePlace(a, b) && fields(a) == fields(b);
}

SenderIdPermission ResolveSenderId(const DomainSettings& domain,
                                   const AssociationSettings& association) {
  const std::int32_t code =
      association.sender_id == kDeferSenderId ? domain.sender_id : association.sender_id;
  const auto permission = static_cast<SenderIdPermission>(code);
  const bool known =
      permission >= SenderIdPermission::None && permission <= SenderIdPermission::Both;
  return known ? permission : SenderIdPermission::None;
}

std::optional<pdu::SenderId> SenderIdOf(SenderIdPermission permission, const Mac& mac) {
  if (permission == SenderIdPermission::None) return std::nullopt;
  pdu::SenderId sender_id;
  if (permission != SenderIdPermission::Manage) {
    sender_id.chassis_subtype = pdu::kChassisIdMac;
    sender_id.chassis_id = mac;
  }
  return sender_id;
}

MepSettings ResolveMep(const MaKey& ma, const DomainSettings& domain,
                       const Association& association, std::uint32_t mep_id) {
  const AssociationSettings& common = association.settings;
  const Mep& mep = association.meps.at(mep_id);
  MepSettings settings;
  settings.key = {ma, mep_id};
  settings.port = mep.ifindex;
  settings.side = mep.direction == kUp ? Side::Relay : Side::Wire;
  settings.level = static_cast<std::uint8_t>(domain.level & pdu::kMaxLevel);
  settings.service = Service(common, mep);
  settings.vids = TakenVids(common, settings.service.vid);
  settings.active = mep.admin_state;
  settings.ccm_enabled = mep.ccm_enabled;
  settings.priority = static_cast<std::uint8_t>(mep.ccm_priority & 7U);
  const auto interval = static_cast<std::uint8_t>(common.ccm_interval);
  settings.ccm_interval = IsInterval(interval) ? interval : std::uint8_t{0};
  const auto maid = pdu::EncodeMaid(domain.format, ma.md_name, common.format, ma.ma_name);
  if (maid) settings.maid = *maid;
  settings.remotes = Remotes(association, mep_id);
  settings.sender_id = ResolveSenderId(domain, common);
  settings.alarms = Alarms(mep);
  settings.fault_action = static_cast<FaultAction>(mep.fault_action);
  settings.ais = ResolveAis(common.ais, settings.level, settings.service);
  return settings;
}

bool IsSamePlace(const MepSettings& a, const MepSettings& b) {
  const auto place = [](const MepSettings& s) {
    return std::tie(s.port, s.side, s.level, s.service.vid, s.service.inner_vid, s.vids, s.maid);
  };
  return place(a) == place(b);
}

}  // namespace cfm_mgr::engine
