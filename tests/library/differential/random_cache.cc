// SPDX-License-Identifier: Apache-2.0
#include "random_cache.h"

#include "request_messages.h"

namespace cfm_test {
namespace {

client_server::OpCacheSync CacheOf(const cfm::hierarchy& hierarchy, const cfm::probe& probes) {
  client_server::OpCacheSync cache;
  for (const auto& [md_name, md] : hierarchy.mds) {
    *cache.add_mds() = CreateMdMessage(md_name, md.cfg);
    for (const auto& [ma_name, ma] : md.mas) {
      *cache.add_mas() = CreateMaMessage(ma.md_name, ma_name, ma.cfg);
      for (const auto& [key, mep] : ma.meps) {
        *cache.add_meps() = CreateMepMessage(mep);
      }
    }
  }
  for (const auto& [probe_id, probe] : probes.probes) {
    *cache.add_probes() = CreateProbeMessage(probe_id, probe);
    for (const auto& [session_id, session] : probe.sessions) {
      *cache.add_sessions() = CreateSessionMessage(probe_id, session_id, session);
    }
  }
  return cache;
}

// Makes entries odd.
class Oddities {
 public:
  explicit Oddities(RandomRecords& records) : records_(records), random_(records.random) {}

  void In(client_server::OpCacheSync& cache) {
    InList(*cache.mutable_mds());
    InList(*cache.mutable_mas());
    InList(*cache.mutable_meps());
    InList(*cache.mutable_probes());
    InList(*cache.mutable_sessions());
  }

 private:
  template <typename List>
  void InList(List& list) {
    if (random_.OneIn(4) && list.size() > 0) {
      list.erase(list.begin() + static_cast<int>(random_.Below(Size(list))));
    }
    if (random_.OneIn(8)) {
      list.Clear();
    }
    if (random_.OneIn(3) && list.size() > 0) {
      const auto entry = list.Get(static_cast<int>(random_.Below(Size(list))));
      *list.Add() = entry;
      InEntry(*list.Mutable(list.size() - 1));
    }
    for (auto& entry : list) {
      if (random_.OneIn(4)) {
        InEntry(entry);
      }
    }
    if (random_.OneIn(4) && list.size() > 1) {
      list.SwapElements(0, static_cast<int>(random_.Below(Size(list))));
    }
    if (random_.OneIn(16)) {
      list.Add();  // an entry without any field
    }
  }

  template <typename List>
  static std::size_t Size(const List& list) {
    return static_cast<std::size_t>(list.size());
  }

  // The same number for a receiver that keeps the low 8 or 16 bits, or another one.
  std::uint32_t Wide(std::uint32_t number) {
    switch (random_.Below(4)) {
      case 0:
        return number + 0x10000U;
      case 1:
        return number | 0xffff0000U;
      case 2:
        return number + 0x100U;
      default:
        return records_.Number();
    }
  }

  void InEntry(client_server::OpCreateMaintenanceDomain& md) {
    switch (random_.Below(3)) {
      case 0:
        md.set_level(Wide(md.level()));
        return;
      case 1:
        md.set_md_name(records_.Name());
        return;
      default:
        md.clear_level();
        md.set_format(-1);
    }
  }

  void InEntry(client_server::OpCreateMaintenanceAssociation& ma) {
    switch (random_.Below(6)) {
      case 0:
        ma.clear_ais();
        return;
      case 1:
        ma.mutable_ais()->set_enabled(true);
        ma.mutable_ais()->add_id_set(Wide(records_.Number()));
        return;
      case 2:
        ma.set_md_name(records_.Name());
        return;
      case 3:
        ma.set_ma_name(records_.Name());
        return;
      case 4:
        ma.add_vids(Wide(records_.Number()));
        return;
      default:
        for (auto& vid : *ma.mutable_vids()) {
          vid = Wide(vid);
        }
        ma.add_mep_ids(Wide(records_.Number()));
    }
  }

  void InEntry(client_server::OpCreateMaintenanceEndpoint& mep) {
    switch (random_.Below(7)) {
      case 0:
        mep.set_mep_id(Wide(mep.mep_id()));
        return;
      case 1:
        mep.set_md_name(records_.Name());
        return;
      case 2:
        mep.set_ma_name(records_.Name());
        return;
      case 3:
        mep.set_primary_vid(Wide(mep.primary_vid()));
        return;
      case 4:
        mep.set_inner_vid(Wide(mep.inner_vid()));
        return;
      case 5:
        mep.set_ifindex(Wide(mep.ifindex()));
        mep.set_lowest_prio_defect(-1);
        return;
      default:
        mep.clear_direction();
        mep.clear_mep_id();
    }
  }

  void InEntry(client_server::OpCreateDelayMeasurementProbe& probe) {
    switch (random_.Below(7)) {
      case 0:
        probe.set_probe_id(Wide(probe.probe_id()));
        return;
      case 1:
        probe.set_interval(Wide(probe.interval()));
        return;
      case 2:
        probe.set_lmep_id(Wide(probe.lmep_id()));
        return;
      case 3:
        probe.set_rmep_id(Wide(probe.rmep_id()));
        return;
      case 4:
        probe.set_md_name(records_.Name());
        return;
      case 5:
        probe.set_ma_name(records_.Name());
        return;
      default:
        probe.clear_probe_id();
        probe.clear_interval();
    }
  }

  void InEntry(client_server::OpCreateDelayMeasurementSession& session) {
    switch (random_.Below(7)) {
      case 0:
        session.set_probe_id(Wide(session.probe_id()));
        return;
      case 1:
        session.set_session_id(Wide(session.session_id()));
        return;
      case 2:
        session.set_count(Wide(session.count()));
        return;
      case 3:
        session.set_interval(Wide(session.interval()));
        return;
      case 4:
        session.set_size(Wide(session.size()));
        return;
      case 5:
        session.set_pcp(Wide(session.pcp()));
        return;
      default:
        session.clear_session_id();
        session.clear_pcp();
    }
  }

  RandomRecords& records_;
  Random& random_;
};

}  // namespace

client_server::OpCacheSync RandomCache(RandomRecords& records, const cfm::hierarchy& hierarchy,
                                       const cfm::probe& probes) {
  client_server::OpCacheSync cache = CacheOf(hierarchy, probes);
  if (records.random.OneIn(2)) {
    Oddities(records).In(cache);
  }
  return cache;
}

}  // namespace cfm_test
