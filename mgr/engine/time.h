/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_TIME_H
#define CFM_MGR_ENGINE_TIME_H

#include <chrono>

namespace cfm_mgr::engine {

/** A moment, as nanoseconds since a start of the caller's choosing. It never goes back. */
using Time = std::chrono::nanoseconds;

}  // namespace cfm_mgr::engine

#endif
