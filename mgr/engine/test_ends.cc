// SPDX-License-Identifier: Apache-2.0
#include "engine/test_ends.h"

namespace cfm_mgr::engine {

TestEnds FindTestEnds(const MepTable& table, const MepKey& mep, std::uint32_t remote_mep_id) {
  TestEnds ends;
  ends.mep = table.FindMep(mep);
  if (ends.mep == nullptr) {
    ends.error = TriggerError::UnknownMep;
    return ends;
  }
  const RemoteMep* const remote = ends.mep->FindRemote(remote_mep_id);
  if (remote == nullptr) {
    ends.error = TriggerError::UnknownRemoteMep;
    return ends;
  }
  ends.target = remote->status().mac;
  if (!ends.mep->running()) {
    ends.error = TriggerError::NotActive;
  } else if (ends.target == Mac{}) {
    ends.error = TriggerError::UnknownAddress;
  }
  return ends;
}

}  // namespace cfm_mgr::engine
