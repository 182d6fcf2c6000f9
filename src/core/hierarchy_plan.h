// What it takes to turn one configuration into another.
#ifndef CFM_SRC_CORE_HIERARCHY_PLAN_H
#define CFM_SRC_CORE_HIERARCHY_PLAN_H

#include <cfm/hierarchy.h>

#include <map>
#include <string>
#include <vector>

namespace cfm::core {

using MdEntry = std::map<std::string, hierarchy_md>::value_type;
using MaEntry = std::map<std::string, hierarchy_ma>::value_type;

/// The working sets of one reconciliation. They point into the two configurations compared, and
/// live no longer than those stay as they are. Domains are ordered by name; associations by the
/// pair of their domain's key and their own; endpoints as they were found.
using MdList = std::vector<const MdEntry*>;
using MaList = std::vector<const MaEntry*>;
using MepList = std::vector<const hierarchy_mep*>;

struct WorkingSet {
  MdList mds;
  MaList mas;
  MepList meps;
};

/// Deletes name entities of the applied configuration, creates and updates those of the desired
/// one.
struct HierarchyPlan {
  WorkingSet deletes;
  WorkingSet creates;
  WorkingSet updates;
};

/// Compares what was applied last with what is desired now.
///
/// What survives is updated, changed or not. A changed level re-creates a domain, changed VIDs an
/// association, and a changed port, direction, primary or inner VID an endpoint; re-creation takes
/// along all that survives beneath. What lies beneath a removed entity is not named: the server
/// removes it.
HierarchyPlan PlanHierarchy(const hierarchy& applied, const hierarchy& desired);

}  // namespace cfm::core

#endif
