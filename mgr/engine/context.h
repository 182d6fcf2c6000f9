/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_CONTEXT_H
#define CFM_MGR_ENGINE_CONTEXT_H

#include <functional>
#include <random>

#include "engine/engine.h"
#include "engine/timer_queue.h"

namespace cfm_mgr::engine {

class LocalMep;

/** What all parts of one engine share. */
struct Context {
  Surroundings& surroundings;
  Notifications& notifications;
  std::mt19937_64 random;
  TimerQueue timers;
  Drops drops;

  /**
   * Takes a frame of a higher level than a MEP's that leaves the MEP on the side that it does not
   * face. It meets the other MPs of the port on its way.
   */
  std::function<void(Time now, const LocalMep& from, const Frame& frame)> send_behind;
  /** A MEP has stopped running; its tests end. The MEP is still there. */
  std::function<void(Time now, const LocalMep& mep)> on_mep_stopped;
};

}  // namespace cfm_mgr::engine

#endif
