// SPDX-License-Identifier: Apache-2.0
#include "configuration_edits.h"

#include <array>
#include <string>

namespace cfm_fuzz {
namespace {

const std::array<std::string, 4> kNames = {"D", "E", "", std::string("a\0\xff", 3)};

// Which entity an edit is about.
struct Place {
  explicit Place(std::uint8_t choice)
      : md_name(kNames[choice & 3U]),
        ma_name(kNames[choice >> 2U & 3U]),
        mep_id(static_cast<std::uint16_t>(1 + (choice >> 4U & 3U))) {}

  const std::string& md_name;
  const std::string& ma_name;
  std::uint16_t mep_id;
};

template <typename Enum>
Enum AnyOf(unsigned value) {
  return static_cast<Enum>(value);
}

cfm::hierarchy_md& Md(cfm::hierarchy& config, const Place& place) {
  cfm::hierarchy_md& md = config.mds[place.md_name];
  md.cfg.format = AnyOf<cfm::MdNameFormat>(static_cast<unsigned>(place.md_name.size()) + 1);
  return md;
}

cfm::hierarchy_ma& Ma(cfm::hierarchy& config, const Place& place) {
  auto& mas = Md(config, place).mas;
  const auto [ma, is_new] = mas.try_emplace(place.ma_name);
  if (is_new) {
    ma->second.md_name = place.md_name;
    ma->second.cfg.format =
        AnyOf<cfm::MaNameFormat>(static_cast<unsigned>(place.ma_name.size()) + 2);
  }
  return ma->second;
}

cfm::hierarchy_mep& Mep(cfm::hierarchy& config, const Place& place) {
  auto& meps = Ma(config, place).meps;
  const auto [mep, is_new] = meps.try_emplace(place.mep_id);
  if (is_new) {
    mep->second.md_name = place.md_name;
    mep->second.ma_name = place.ma_name;
    mep->second.cfg.mep_id = place.mep_id;
    mep->second.cfg.port = 1;
  }
  return mep->second;
}

void EditMd(cfm::st_maintenance_domain_cfg& cfg, std::uint8_t value) {
  cfg.level = value & 7U;
  cfg.sender_id = AnyOf<cfm::SenderIdTlvContent>(value >> 3U & 7U);
  cfg.mhf_creation = AnyOf<cfm::MhfCreationMode>(value >> 6U);
}

void EditAis(cfm::st_ais_cfg& ais, std::uint8_t value) {
  ais.enabled = (value & 1U) != 0;
  ais.flag_d = (value & 2U) != 0;
  ais.octet_a = value;
  ais.word_b = value * 0x01010101U;
  ais.octet_c = static_cast<std::uint8_t>(~value);
  ais.id_set.clear();
  for (unsigned id = 0; id < (value >> 2U & 3U); ++id) {
    ais.id_set.insert(static_cast<std::uint16_t>(id * 30000U + value));
  }
}

void EditMa(cfm::st_maintenance_association_cfg& cfg, std::uint8_t value) {
  cfg.ccm_interval = AnyOf<cfm::CcmInterval>(value & 7U);
  cfg.sender_id = AnyOf<cfm::SenderIdTlvContent>(0U - value);
  cfg.mhf_creation = AnyOf<cfm::MhfCreationMode>(value * 0x01000000U);
  if ((value & 8U) != 0) {
    cfg.mep_ids.insert(value);
  } else {
    cfg.mep_ids.clear();
  }
}

// Order and duplicates matter.
void EditVids(cfm::st_maintenance_association_cfg& cfg, std::uint8_t value) {
  if (value < 16) {
    cfg.vids.clear();
  } else {
    cfg.vids.insert(value % 2 == 0 ? cfg.vids.begin() : cfg.vids.end(), value % 4 * 21845U);
  }
}

// What a MEP is told apart by: a change of it takes a new MEP.
void EditPlace(cfm::st_maintenance_endpoint_cfg& cfg, std::uint8_t value) {
  cfg.port = value & 7U;
  cfg.direction = AnyOf<cfm::MepDirection>(value >> 3U & 3U);
  cfg.primary_vid = static_cast<std::uint16_t>((value >> 5U & 1U) * 65535U);
  cfg.inner_vid = static_cast<std::uint16_t>(value >> 6U);
}

void EditMep(cfm::st_maintenance_endpoint_cfg& cfg, std::uint8_t value) {
  cfg.admin_state = (value & 1U) != 0;
  cfg.ccm_enabled = (value & 2U) != 0;
  cfg.aux_flag = (value & 4U) != 0;
  cfg.ccm_priority = value;
  cfg.lowest_prio_defect = AnyOf<cfm::Defects>(value);
  cfg.fng_alarm_time = static_cast<std::uint16_t>(value * 257U);
  cfg.fng_reset_time = static_cast<std::uint16_t>(65535U - value);
  cfg.fault_action = AnyOf<cfm::FaultAction>(0U - (value & 3U));
}

}  // namespace

void EditHierarchy(ByteReader& input, cfm::hierarchy& config) {
  const Place place(input.Next());
  const std::uint8_t what = input.Next();
  const std::uint8_t value = input.Next();
  switch (what % 9) {
    case 0:
      config.mds.erase(place.md_name);
      break;
    case 1:
      Md(config, place).mas.erase(place.ma_name);
      break;
    case 2:
      Ma(config, place).meps.erase(place.mep_id);
      break;
    case 3:
      EditMd(Md(config, place).cfg, value);
      break;
    case 4:
      EditVids(Ma(config, place).cfg, value);
      break;
    case 5:
      EditMa(Ma(config, place).cfg, value);
      break;
    case 6:
      EditAis(Ma(config, place).cfg.ais, value);
      break;
    case 7:
      EditPlace(Mep(config, place).cfg, value);
      break;
    default:
      EditMep(Mep(config, place).cfg, value);
      break;
  }
}

void Spoil(ByteReader& input, cfm::hierarchy& config) {
  const Place place(input.Next());
  const std::uint8_t value = input.Next();
  const std::string& other = kNames[value >> 2U & 3U];
  cfm::hierarchy_mep& mep = Mep(config, place);
  switch (value & 3U) {
    case 0:
      Ma(config, place).md_name = other;
      break;
    case 1:
      mep.md_name = other;
      break;
    case 2:
      mep.ma_name = other;
      break;
    default:
      mep.cfg.mep_id = value;
      break;
  }
}

void Repair(cfm::hierarchy& config) {
  for (auto& [md_name, md] : config.mds) {
    for (auto& [ma_name, ma] : md.mas) {
      ma.md_name = md_name;
      for (auto& [mep_id, mep] : ma.meps) {
        mep.md_name = md_name;
        mep.ma_name = ma_name;
        mep.cfg.mep_id = mep_id;
      }
    }
  }
}

bool IsConsistent(const cfm::hierarchy& config) {
  for (const auto& [md_name, md] : config.mds) {
    for (const auto& [ma_name, ma] : md.mas) {
      if (ma.md_name != md_name) {
        return false;
      }
      for (const auto& [mep_id, mep] : ma.meps) {
        if (mep.md_name != md_name || mep.ma_name != ma_name || mep.cfg.mep_id != mep_id) {
          return false;
        }
      }
    }
  }
  return true;
}

void EditProbes(ByteReader& input, cfm::probe& config) {
  const std::uint8_t choice = input.Next();
  const std::uint8_t what = input.Next();
  const std::uint8_t value = input.Next();
  const auto probe_id = static_cast<std::uint16_t>((choice & 3U) * 21845U);
  const auto session_id = static_cast<std::uint16_t>((choice >> 2U & 3U) + 1U);
  switch (what % 6) {
    case 0:
      config.probes.erase(probe_id);
      break;
    case 1:
      config.probes[probe_id].sessions.erase(session_id);
      break;
    case 2:
      config.probes[probe_id].id = value % 2 == 0 ? probe_id : value;
      break;
    case 3: {
      cfm::probe_cfg& probe = config.probes[probe_id];
      probe.md = kNames[value & 3U];
      probe.ma = kNames[value >> 2U & 3U];
      break;
    }
    case 4: {
      cfm::probe_cfg& probe = config.probes[probe_id];
      probe.interval = static_cast<std::uint16_t>((value & 3U) * 20000U);
      probe.lmep = value >> 2U & 7U;
      probe.rmep = static_cast<std::uint16_t>((value >> 5U) * 8191U);
      break;
    }
    default:
      config.probes[probe_id].sessions[session_id] = {
          static_cast<std::uint16_t>(value & 3U), static_cast<std::uint16_t>(value >> 2U & 3U),
          static_cast<std::uint16_t>((value >> 4U & 3U) * 21845U), value};
      break;
  }
}

}  // namespace cfm_fuzz
