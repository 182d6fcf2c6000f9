/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_LINKTRACE_INITIATOR_H
#define CFM_MGR_ENGINE_LINKTRACE_INITIATOR_H

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/notifications.h"
#include "engine/pacer.h"
#include "pdu/linktrace.h"

namespace cfm_mgr::engine {

/** One linktrace, IEEE 802.1Q 20.3: one LTM, and kReplyWait for the replies to it. */
class LinktraceInitiator {
 public:
  LinktraceInitiator(Time start, const pdu::Ltm& ltm)
      : transaction_id_(ltm.transaction_id),
        ltm_(pdu::Encode(ltm)),
        pacer_(start, 1, Time(0), kReplyWait) {}

  std::uint32_t transaction_id() const { return transaction_id_; }
  Time NextDeadline() const { return pacer_.NextDeadline(); }
  bool Ended(Time now) const { return pacer_.Ended(now); }

  /** The LTM, once. */
  std::optional<std::vector<std::uint8_t>> TakeDue(Time now) {
    if (!pacer_.TakeDue(now)) return std::nullopt;
    return ltm_;
  }

  /** Whether a reply answers this linktrace. */
  bool Owns(const pdu::Ltr& ltr) const {
    return pacer_.sent() != 0 && ltr.transaction_id == transaction_id_;
  }

 private:
  std::uint32_t transaction_id_;
  std::vector<std::uint8_t> ltm_;
  Pacer pacer_;
};

/** A reply and the frame that brought it, as they are notified. */
LinktraceReply DescribeReply(const Frame& frame, const pdu::Ltr& ltr);

}  // namespace cfm_mgr::engine

#endif
