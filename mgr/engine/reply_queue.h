/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_REPLY_QUEUE_H
#define CFM_MGR_ENGINE_REPLY_QUEUE_H

#include <cstddef>
#include <map>

#include "engine/context.h"
#include "engine/mep_table.h"

namespace cfm_mgr::engine {

/**
 * Replies that wait for a random time up to a second, so that all that answer one request do not
 * answer together: LBRs to a multicast LBM and LTRs.
 */
class ReplyQueue {
 public:
  static constexpr Time kMaxDelay = std::chrono::seconds(1);
  /** What comes when so many wait already is dropped and counted. */
  static constexpr std::size_t kMaxWaiting = 4096;

  ReplyQueue(Context& context, const MepTable& table);

  /** Sends within kMaxDelay, if the port is there then. */
  void Send(Time now, PortId port, Side side, Frame frame);

 private:
  struct Waiting {
    PortId port = 0;
    Side side = Side::Wire;
    Frame frame;
  };

  void SendDue(Time now);

  Context& context_;
  const MepTable& table_;
  std::multimap<Time, Waiting> waiting_;
  Timer timer_;
};

}  // namespace cfm_mgr::engine

#endif
