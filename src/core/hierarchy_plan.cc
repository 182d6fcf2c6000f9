#include "core/hierarchy_plan.h"

#include <set>

namespace cfm::core {
namespace {

template <typename Map, typename Key>
auto Find(const Map& map, const Key& key) -> const typename Map::value_type* {
  const auto found = map.find(key);
  return found == map.end() ? nullptr : &*found;
}

// Views of strings that outlive the plan; a pair of copies would not.
MaSet::key_type MaKey(std::string_view md_name, std::string_view ma_name) {
  return {md_name, ma_name};
}

bool SamePlace(const st_maintenance_endpoint_cfg& a, const st_maintenance_endpoint_cfg& b) {
  return a.port == b.port && a.direction == b.direction && a.primary_vid == b.primary_vid &&
         a.inner_vid == b.inner_vid;
}

class Planner {
 public:
  Planner(const hierarchy& applied, const hierarchy& desired)
      : applied_(applied), desired_(desired) {}

  HierarchyPlan Plan() {
    for (const MdEntry& md : applied_.mds) {
      VisitApplied(md);
    }
    for (const MdEntry& md : desired_.mds) {
      VisitDesired(md);
    }
    return std::move(plan_);
  }

 private:
  void VisitApplied(const MdEntry& old_md) {
    const auto& [name, old] = old_md;
    const MdEntry* const md = Find(desired_.mds, name);
    if (md == nullptr) {
      plan_.deletes.mds.emplace(name, &old_md);
      return;
    }
    const bool keep = old.cfg.level == md->second.cfg.level;
    if (keep) {
      plan_.updates.mds.emplace(name, md);
    } else {
      plan_.deletes.mds.emplace(name, &old_md);
      plan_.creates.mds.emplace(name, md);
    }
    for (const MaEntry& old_ma : old.mas) {
      VisitApplied(name, old_ma, md->second, keep);
    }
  }

  void VisitApplied(const std::string& md_name, const MaEntry& old_ma, const hierarchy_md& md,
                    bool keep_md) {
    const auto& [name, old] = old_ma;
    const auto key = MaKey(md_name, name);
    const MaEntry* const ma = Find(md.mas, name);
    if (ma == nullptr) {
      plan_.deletes.mas.emplace(key, &old_ma);
      return;
    }
    const bool keep = keep_md && old.cfg.vids == ma->second.cfg.vids;
    if (keep) {
      plan_.updates.mas.emplace(key, ma);
    } else {
      plan_.deletes.mas.emplace(key, &old_ma);
      plan_.creates.mas.emplace(key, ma);
    }
    for (const auto& [mep_id, old_mep] : old.meps) {
      const auto* const mep = Find(ma->second.meps, mep_id);
      if (mep == nullptr) {
        plan_.deletes.meps.push_back(&old_mep);
      } else if (keep && SamePlace(old_mep.cfg, mep->second.cfg)) {
        plan_.updates.meps.push_back(&mep->second);
      } else {
        plan_.deletes.meps.push_back(&old_mep);
        plan_.creates.meps.push_back(&mep->second);
      }
    }
  }

  void VisitDesired(const MdEntry& md_entry) {
    const auto& [md_name, md] = md_entry;
    const MdEntry* const old_md = Find(applied_.mds, md_name);
    if (old_md == nullptr) {
      plan_.creates.mds.emplace(md_name, &md_entry);
    }
    supposed_mas_.clear();
    for (const MaEntry& ma_entry : md.mas) {
      const auto& [ma_name, ma] = ma_entry;
      const bool is_new = old_md == nullptr || !HasMa(old_md->second, ma_name);
      if (is_new) {
        plan_.creates.mas.emplace(MaKey(md_name, ma_name), &ma_entry);
      }
      for (const auto& [mep_id, mep] : ma.meps) {
        if (is_new || !HasMep(old_md->second, mep.ma_name, mep_id)) {
          plan_.creates.meps.push_back(&mep);
        }
      }
    }
  }

  bool HasMa(const hierarchy_md& old_md, const std::string& ma_name) const {
    return old_md.mas.count(ma_name) != 0 || supposed_mas_.count(ma_name) != 0;
  }

  // Endpoints are found under the association that they name themselves. One that the old domain
  // lacks is from then on supposed to be in it, empty, and so is not created any more.
  bool HasMep(const hierarchy_md& old_md, const std::string& ma_name, std::uint16_t mep_id) {
    const MaEntry* const ma = Find(old_md.mas, ma_name);
    if (ma == nullptr) {
      supposed_mas_.insert(ma_name);
      return false;
    }
    return ma->second.meps.count(mep_id) != 0;
  }

  const hierarchy& applied_;
  const hierarchy& desired_;
  std::set<std::string_view> supposed_mas_;  // of the old domain at hand
  HierarchyPlan plan_;
};

}  // namespace

HierarchyPlan PlanHierarchy(const hierarchy& applied, const hierarchy& desired) {
  return Planner(applied, desired).Plan();
}

}  // namespace cfm::core
