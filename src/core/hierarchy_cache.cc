// SPDX-License-Identifier: Apache-2.0
#include "core/hierarchy_cache.h"

#include "core/numbers.h"

namespace cfm::core {
namespace {

template <typename Numbers>
std::set<std::uint16_t> IdSet(const Numbers& numbers) {
  std::set<std::uint16_t> ids;
  for (const std::uint32_t number : numbers) {
    ids.insert(ids.end(), Low16(number));
  }
  return ids;
}

st_maintenance_domain_cfg MdSettings(const client_server::OpCreateMaintenanceDomain& entry) {
  st_maintenance_domain_cfg cfg;
  cfg.format = static_cast<MdNameFormat>(entry.format());
  cfg.level = Low8(entry.level());
  cfg.sender_id = static_cast<SenderIdTlvContent>(entry.sender_id());
  cfg.mhf_creation = static_cast<MhfCreationMode>(entry.mhf_creation());
  return cfg;
}

st_ais_cfg AisSettings(const client_server::Ais& entry) {
  st_ais_cfg ais;
  ais.enabled = entry.enabled();
  if (ais.enabled) {
    ais.octet_a = Low8(entry.octet_a());
    ais.word_b = entry.word_b();
    ais.octet_c = Low8(entry.octet_c());
    ais.id_set = IdSet(entry.id_set());
  }
  ais.flag_d = entry.flag_d();
  return ais;
}

st_maintenance_association_cfg MaSettings(
    const client_server::OpCreateMaintenanceAssociation& entry) {
  st_maintenance_association_cfg cfg;
  cfg.mep_ids = IdSet(entry.mep_ids());
  cfg.vids.reserve(static_cast<std::size_t>(entry.vids_size()));
  for (const std::uint32_t vid : entry.vids()) {
    cfg.vids.push_back(Low16(vid));
  }
  cfg.ais = AisSettings(entry.ais());
  cfg.format = static_cast<MaNameFormat>(entry.format());
  cfg.ccm_interval = static_cast<CcmInterval>(entry.ccm_interval());
  cfg.sender_id = static_cast<SenderIdTlvContent>(entry.sender_id());
  cfg.mhf_creation = static_cast<MhfCreationMode>(entry.mhf_creation());
  return cfg;
}

st_maintenance_endpoint_cfg MepSettings(const client_server::OpCreateMaintenanceEndpoint& entry,
                                        PortOfIfindex port_of) {
  st_maintenance_endpoint_cfg cfg;
  cfg.mep_id = Low16(entry.mep_id());
  cfg.direction = static_cast<MepDirection>(entry.direction());
  cfg.port = port_of(entry.ifindex());
  cfg.primary_vid = Low16(entry.primary_vid());
  cfg.inner_vid = Low16(entry.inner_vid());
  cfg.ccm_priority = Low8(entry.ccm_priority());
  cfg.admin_state = entry.admin_state();
  cfg.ccm_enabled = entry.ccm_enabled();
  cfg.aux_flag = entry.aux_flag();
  cfg.lowest_prio_defect =
      static_cast<Defects>(Low8(static_cast<std::uint32_t>(entry.lowest_prio_defect())));
  cfg.fng_alarm_time = Low16(entry.fng_alarm_time());
  cfg.fng_reset_time = Low16(entry.fng_reset_time());
  cfg.fault_action = static_cast<FaultAction>(entry.fault_action());
  return cfg;
}

// Servers list entities in the order of their names, so the place is usually at the end.
template <typename Map>
typename Map::mapped_type& Place(Map& map, const typename Map::key_type& key) {
  return map.try_emplace(map.end(), key)->second;
}

// Finds associations. Endpoints usually follow others of the same one.
class MaFinder {
 public:
  explicit MaFinder(hierarchy& config) : config_(config) {}

  hierarchy_ma& Find(const std::string& md_name, const std::string& ma_name) {
    if (ma_ == nullptr || *md_name_ != md_name || *ma_name_ != ma_name) {
      md_name_ = &md_name;
      ma_name_ = &ma_name;
      ma_ = &Place(Place(config_.mds, md_name).mas, ma_name);
    }
    return *ma_;
  }

 private:
  hierarchy& config_;
  const std::string* md_name_ = nullptr;  // of what was found last; in the message
  const std::string* ma_name_ = nullptr;
  hierarchy_ma* ma_ = nullptr;
};

}  // namespace

hierarchy HierarchyFromCache(const client_server::OpCacheSync& cache, PortOfIfindex port_of) {
  hierarchy result;
  for (const auto& entry : cache.mds()) {
    Place(result.mds, entry.md_name()) = hierarchy_md{MdSettings(entry), {}};
  }
  MaFinder mas(result);
  for (const auto& entry : cache.mas()) {
    mas.Find(entry.md_name(), entry.ma_name()) =
        hierarchy_ma{entry.md_name(), MaSettings(entry), {}};
  }
  for (const auto& entry : cache.meps()) {
    hierarchy_ma& ma = mas.Find(entry.md_name(), entry.ma_name());
    hierarchy_mep& mep = Place(ma.meps, Low16(entry.mep_id()));
    mep.md_name = entry.md_name();
    mep.ma_name = entry.ma_name();
    mep.cfg = MepSettings(entry, port_of);
  }
  return result;
}

}  // namespace cfm::core
