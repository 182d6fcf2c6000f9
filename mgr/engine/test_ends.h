/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_TEST_ENDS_H
#define CFM_MGR_ENGINE_TEST_ENDS_H

#include <cstdint>
#include <optional>

#include "engine/mep_table.h"

namespace cfm_mgr::engine {

/** Who tests whom, or why nobody does. */
struct TestEnds {
  std::optional<TriggerError> error;
  const LocalMep* mep = nullptr;
  Mac target{};
};

/**
 * Finds the two ends of a test: a local MEP that runs, and another one of its association whose
 * address a CCM has told.
 */
TestEnds FindTestEnds(const MepTable& table, const MepKey& mep, std::uint32_t remote_mep_id);

}  // namespace cfm_mgr::engine

#endif
