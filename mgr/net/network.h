/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The one interface between the server and the networks that its engine may run over.
 */
#ifndef CFM_MGR_NET_NETWORK_H
#define CFM_MGR_NET_NETWORK_H

#include <optional>
#include <vector>

#include "engine/engine.h"
#include "engine/time.h"
#include "net/drop_count.h"

namespace cfm_mgr::net {

/**
 * A network together with the engine of the bridge that the server manages.
 *
 * The ports of that bridge are the network's to report to the engine; associations, probes and
 * tests are the owner's. The owner keeps the time, which may be a real or a virtual one:
 *
 * 1. It calls Advance() with the present time when Descriptor() is readable and when the moment
 *    that NextDeadline() names has come, and also right before it calls the engine, which then gets
 *    the same time.
 * 2. What the engine sends meanwhile is kept. NextDeadline() names the present until the next
 *    Advance() has taken it out; it is asked anew after every call to the engine.
 *
 * No member may be called from inside the engine's notifications.
 */
class Network {
 public:
  Network() = default;
  Network(const Network&) = delete;
  Network& operator=(const Network&) = delete;
  virtual ~Network() = default;

  virtual engine::Engine& engine() = 0;

  /** Takes in and sends out all that is due, and lets the engine do what is due. */
  virtual void Advance(engine::Time now) = 0;

  /** When Advance() has something to do next; none while only the descriptor can bring it. */
  virtual std::optional<engine::Time> NextDeadline() const = 0;

  /** What to poll for reading; -1 when there is nothing to poll. The network's own. */
  virtual int Descriptor() const = 0;

  /**
   * What was dropped at the ports of the managed bridge since each was made known, by port and
   * reason; only what is not 0.
   */
  virtual std::vector<DropCount> Drops() { return {}; }
};

}  // namespace cfm_mgr::net

#endif
