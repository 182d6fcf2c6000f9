/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_RESPONDERS_H
#define CFM_MGR_ENGINE_RESPONDERS_H

#include <cstdint>
#include <optional>

#include "engine/linktrace_responder.h"
#include "engine/mip_database.h"
#include "engine/mip_table.h"
#include "engine/reply_queue.h"
#include "pdu/sender_id.h"

namespace cfm_mgr::engine {

/** The MP that has got a request. */
struct AnsweringMp {
  PortId port = 0;
  Side side = Side::Wire;  ///< From which the request came.
  Mac mac{};
  std::uint8_t level = 0;
  bool mep = false;  ///< Or else an MHF.
  std::optional<pdu::SenderId> sender_id;
};

/** When a frame arrived. */
inline Time ArrivalOf(Time now, const Frame& frame) { return frame.received.value_or(now); }

/**
 * Answers the requests of others. Each function tells whether the frame was for the MP: an MHF lets
 * other frames pass. Replies have the tags and priorities of their requests.
 */
class Responders {
 public:
  Responders(Context& context, const MepTable& meps, MipTable& mips)
      : context_(context), meps_(meps), mips_(mips), queue_(context, meps) {}

  /** To its own address at once; to the group of MEPs of its level, a MEP after a random time. */
  bool TakeLbm(Time now, const AnsweringMp& mp, const Frame& frame);

  /** To its own address. */
  bool TakeDmm(Time now, const AnsweringMp& mp, const Frame& frame);

  /** To the group of its level or its own address; the reply comes after a random time. */
  bool TakeLtm(Time now, const AnsweringMp& mp, const Frame& frame);

  /** A CCM that passes an MHF on its way in from the wire: it tells where its sender is. */
  void SeeCcm(Time now, PortId port, const Frame& frame);

 private:
  class Bridge;

  Context& context_;
  const MepTable& meps_;
  MipTable& mips_;
  MipDatabase database_;
  ReplyQueue queue_;
};

}  // namespace cfm_mgr::engine

#endif
