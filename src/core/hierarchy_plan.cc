#include "core/hierarchy_plan.h"

#include <set>
#include <string_view>
#include <utility>

#include "core/in_step.h"

namespace cfm::core {
namespace {

using MepEntry = std::map<std::uint16_t, hierarchy_mep>::value_type;

bool SamePlace(const st_maintenance_endpoint_cfg& a, const st_maintenance_endpoint_cfg& b) {
  return a.port == b.port && a.direction == b.direction && a.primary_vid == b.primary_vid &&
         a.inner_vid == b.inner_vid;
}

void Append(MepList& list, MepList&& more) {
  if (list.empty()) {
    list = std::move(more);
  } else {
    list.insert(list.end(), more.begin(), more.end());
  }
}

// Walks the applied and the desired configuration together, which visits either in its own order.
class Planner {
 public:
  HierarchyPlan Plan(const hierarchy& applied, const hierarchy& desired) {
    WalkInStep(applied.mds, desired.mds,
               [this](const MdEntry* old_md, const MdEntry* md) { Visit(old_md, md); });
    // What is created anew comes after what is re-created.
    Append(plan_.creates.meps, std::move(new_meps_));
    return std::move(plan_);
  }

 private:
  void Visit(const MdEntry* old_md, const MdEntry* md) {
    if (md == nullptr) {
      plan_.deletes.mds.push_back(old_md);
      return;
    }
    if (old_md == nullptr) {
      CreateWhole(*md);
      return;
    }
    const bool keep = old_md->second.cfg.level == md->second.cfg.level;
    Sort(keep, old_md, md, &WorkingSet::mds);
    supposed_mas_.clear();
    WalkInStep(old_md->second.mas, md->second.mas, [&](const MaEntry* old_ma, const MaEntry* ma) {
      Visit(old_md->second, old_ma, ma, keep);
    });
  }

  void Visit(const hierarchy_md& old_md, const MaEntry* old_ma, const MaEntry* ma, bool keep_md) {
    if (ma == nullptr) {
      plan_.deletes.mas.push_back(old_ma);
      return;
    }
    if (old_ma == nullptr) {
      CreateNew(old_md, *ma);
      return;
    }
    const bool keep = keep_md && old_ma->second.cfg.vids == ma->second.cfg.vids;
    Sort(keep, old_ma, ma, &WorkingSet::mas);
    WalkInStep(
        old_ma->second.meps, ma->second.meps, [&](const MepEntry* old_mep, const MepEntry* mep) {
          Compare(old_mep, mep, keep);
          // Usually an endpoint names the association that it lies in.
          if (mep != nullptr &&
              (mep->second.ma_name == ma->first ? old_mep == nullptr : !HasMep(old_md, *mep))) {
            new_meps_.push_back(&mep->second);
          }
        });
  }

  // What survives, of an endpoint whose association is there before and after.
  void Compare(const MepEntry* old_mep, const MepEntry* mep, bool keep_ma) {
    if (mep == nullptr) {
      plan_.deletes.meps.push_back(&old_mep->second);
    } else if (old_mep != nullptr) {
      const bool keep = keep_ma && SamePlace(old_mep->second.cfg, mep->second.cfg);
      Sort(keep, &old_mep->second, &mep->second, &WorkingSet::meps);
    }
  }

  // An entity that survives: kept, or deleted and created.
  template <typename Entity>
  void Sort(bool keep, const Entity* old, const Entity* entity,
            std::vector<const Entity*> WorkingSet::*list) {
    if (keep) {
      (plan_.updates.*list).push_back(entity);
    } else {
      (plan_.deletes.*list).push_back(old);
      (plan_.creates.*list).push_back(entity);
    }
  }

  void CreateWhole(const MdEntry& md) {
    plan_.creates.mds.push_back(&md);
    for (const MaEntry& ma : md.second.mas) {
      CreateWhole(ma);
    }
  }

  void CreateWhole(const MaEntry& ma) {
    plan_.creates.mas.push_back(&ma);
    for (const MepEntry& mep : ma.second.meps) {
      new_meps_.push_back(&mep.second);
    }
  }

  // An association that the old domain lacks, unless it is supposed to be in it by now.
  void CreateNew(const hierarchy_md& old_md, const MaEntry& ma) {
    if (supposed_mas_.count(ma.first) == 0) {
      CreateWhole(ma);
      return;
    }
    for (const MepEntry& mep : ma.second.meps) {
      if (!HasMep(old_md, mep)) {
        new_meps_.push_back(&mep.second);
      }
    }
  }

  // Endpoints are found under the association that they name themselves. One that the old domain
  // lacks is from then on supposed to be in it, empty, and so is not created any more.
  bool HasMep(const hierarchy_md& old_md, const MepEntry& mep) {
    const auto ma = old_md.mas.find(mep.second.ma_name);
    if (ma == old_md.mas.end()) {
      supposed_mas_.insert(mep.second.ma_name);
      return false;
    }
    return ma->second.meps.count(mep.first) != 0;
  }

  std::set<std::string_view> supposed_mas_;  // of the old domain at hand
  MepList new_meps_;
  HierarchyPlan plan_;
};

}  // namespace

HierarchyPlan PlanHierarchy(const hierarchy& applied, const hierarchy& desired) {
  return Planner().Plan(applied, desired);
}

}  // namespace cfm::core
