/* SPDX-License-Identifier: Apache-2.0 */
// What it takes to turn one configuration into another.
#ifndef CFM_SRC_CORE_HIERARCHY_PLAN_H
#define CFM_SRC_CORE_HIERARCHY_PLAN_H

#include <vector>

#include "core/kept_hierarchy.h"

namespace cfm::core {

/// The working sets of one reconciliation. They point into the two configurations compared, and
/// live no longer than those stay as they are. Domains are ordered by name; associations by the
/// pair of their domain's key and their own; endpoints as they were found.
using MdList = std::vector<const KeptMd*>;
using MaList = std::vector<const KeptMa*>;
using MepList = std::vector<const KeptMep*>;

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
HierarchyPlan PlanHierarchy(const KeptHierarchy& applied, const KeptHierarchy& desired);

}  // namespace cfm::core

#endif
