// SPDX-License-Identifier: Apache-2.0
#include <cfm/hierarchy.h>

namespace cfm {

st_maintenance_association_cfg::~st_maintenance_association_cfg() = default;

}  // namespace cfm
