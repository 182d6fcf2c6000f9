// SPDX-License-Identifier: Apache-2.0
#include "core/hierarchy_plan.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "core/in_step.h"

namespace cfm::core {
namespace {

bool SamePlace(const st_maintenance_endpoint_cfg& a, const st_maintenance_endpoint_cfg& b) {
  return a.port == b.port && a.direction == b.direction && a.primary_vid == b.primary_vid &&
         a.inner_vid == b.inner_vid;
}

// The entry with a key; null if there is none.
template <typename Entry, typename Key>
const Entry* Find(const Run<Entry>& entries, const Key& key) {
  const Entry* const found =
      std::lower_bound(entries.begin(), entries.end(), key,
                       [](const Entry& entry, const Key& wanted) { return KeyOf(entry) < wanted; });
  return found == entries.end() || key < KeyOf(*found) ? nullptr : found;
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
  HierarchyPlan Plan(const KeptHierarchy& applied, const KeptHierarchy& desired) {
    WalkInStep(applied.Mds(), desired.Mds(),
               [this](const KeptMd* old_md, const KeptMd* md) { Visit(old_md, md); });
    // What is created anew comes after what is re-created.
    Append(plan_.creates.meps, std::move(new_meps_));
    return std::move(plan_);
  }

 private:
  void Visit(const KeptMd* old_md, const KeptMd* md) {
    if (md == nullptr) {
      plan_.deletes.mds.push_back(old_md);
      return;
    }
    if (old_md == nullptr) {
      CreateWhole(*md);
      return;
    }
    const bool keep = old_md->cfg.level == md->cfg.level;
    Sort(keep, old_md, md, &WorkingSet::mds);
    supposed_mas_.clear();
    WalkInStep(old_md->mas, md->mas,
               [&](const KeptMa* old_ma, const KeptMa* ma) { Visit(*old_md, old_ma, ma, keep); });
  }

  void Visit(const KeptMd& old_md, const KeptMa* old_ma, const KeptMa* ma, bool keep_md) {
    if (ma == nullptr) {
      plan_.deletes.mas.push_back(old_ma);
      return;
    }
    if (old_ma == nullptr) {
      CreateNew(old_md, *ma);
      return;
    }
    const bool keep = keep_md && old_ma->cfg.vids == ma->cfg.vids;
    Sort(keep, old_ma, ma, &WorkingSet::mas);
    WalkInStep(old_ma->meps, ma->meps, [&](const KeptMep* old_mep, const KeptMep* mep) {
      Compare(old_mep, mep, keep);
      // Usually an endpoint names the association that it lies in.
      if (mep != nullptr &&
          (mep->ma_name == &ma->name ? old_mep == nullptr : !HasMep(old_md, *mep))) {
        new_meps_.push_back(mep);
      }
    });
  }

  // What survives, of an endpoint whose association is there before and after.
  void Compare(const KeptMep* old_mep, const KeptMep* mep, bool keep_ma) {
    if (mep == nullptr) {
      plan_.deletes.meps.push_back(old_mep);
    } else if (old_mep != nullptr) {
      const bool keep = keep_ma && SamePlace(old_mep->cfg, mep->cfg);
      Sort(keep, old_mep, mep, &WorkingSet::meps);
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

  void CreateWhole(const KeptMd& md) {
    plan_.creates.mds.push_back(&md);
    for (const KeptMa& ma : md.mas) {
      CreateWhole(ma);
    }
  }

  void CreateWhole(const KeptMa& ma) {
    plan_.creates.mas.push_back(&ma);
    for (const KeptMep& mep : ma.meps) {
      new_meps_.push_back(&mep);
    }
  }

  // An association that the old domain lacks, unless it is supposed to be in it by now.
  void CreateNew(const KeptMd& old_md, const KeptMa& ma) {
    if (supposed_mas_.count(ma.name) == 0) {
      CreateWhole(ma);
      return;
    }
    for (const KeptMep& mep : ma.meps) {
      if (!HasMep(old_md, mep)) {
        new_meps_.push_back(&mep);
      }
    }
  }

  // Endpoints are found under the association that they name themselves. One that the old domain
  // lacks is from then on supposed to be in it, empty, and so is not created any more.
  bool HasMep(const KeptMd& old_md, const KeptMep& mep) {
    const KeptMa* const ma = Find(old_md.mas, *mep.ma_name);
    if (ma == nullptr) {
      supposed_mas_.insert(*mep.ma_name);
      return false;
    }
    return Find(ma->meps, mep.key) != nullptr;
  }

  std::set<std::string_view> supposed_mas_;  // of the old domain at hand
  MepList new_meps_;
  HierarchyPlan plan_;
};

}  // namespace

HierarchyPlan PlanHierarchy(const KeptHierarchy& applied, const KeptHierarchy& desired) {
  return Planner().Plan(applied, desired);
}

}  // namespace cfm::core
