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
      : ltm_(ltm), pacer_(start, 1, Time(0), kReplyWait) {}

  std::uint32_t transaction_id() const { return ltm_.transaction_id; }
  Time NextDeadline() const { return pacer_.NextDeadline(); }
  bool Ended(Time now) const { return pacer_.Ended(now); }

  /** The LTM, once. */
  std::optional<std::vector<std::uint8_t>> TakeDue(Time now) {
    if (!pacer_.TakeDue(now)) return std::nullopt;
    return pdu::Encode(ltm_);
  }

  /** Whether a reply answers this linktrace. */
  bool Owns(const pdu::Ltr& ltr) const {
    return pacer_.sent() != 0 && ltr.transaction_id == ltm_.transaction_id;
  }

 private:
  pdu::Ltm ltm_;
  Pacer pacer_;
};

/** A reply and the frame that brought it, as they are notified. */
LinktraceReply DescribeReply(const Frame& frame, const pdu::Ltr& ltr);

}  // namespace cfm_mgr::engine

#endif
