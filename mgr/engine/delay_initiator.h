/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_DELAY_INITIATOR_H
#define CFM_MGR_ENGINE_DELAY_INITIATOR_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "engine/delay_statistics.h"
#include "engine/notifications.h"
#include "engine/pacer.h"
#include "pdu/delay.h"

namespace cfm_mgr::engine {

/** A moment as DMMs and DMRs carry it: seconds wrap after 2^32. */
pdu::Timestamp ToTimestamp(Time time);

/** How long after another moment one was, by the same clock; the seconds may have wrapped. */
Time Difference(const pdu::Timestamp& later, const pdu::Timestamp& earlier);

/**
 * Gives each DMM of an engine a time stamp of its own, since a reply is told by nothing else. DMMs
 * of one moment get nanoseconds that follow each other.
 */
class StampClock {
 public:
  pdu::Timestamp Next(Time now) {
    last_ = now > last_ ? now : last_ + Time(1);
    return ToTimestamp(last_);
  }

 private:
  Time last_{-1};
};

struct DelaySettings {
  std::uint8_t level = 0;
  Mac target{};
  std::uint32_t count = 0;
  Time interval{};
  std::size_t pdu_size = pdu::kMinDelayPduSize;
};

/**
 * One run of a two-way delay measurement, ITU-T Y.1731 8.2: DMMs at a fixed interval, then
 * kReplyWait for the replies to the last. A reply counts when it comes at most kReplyWait after its
 * DMM, for the first time, and with times that can be.
 */
class DelayInitiator {
 public:
  enum class Reply { NotOurs, Counted, Rejected };

  DelayInitiator(Time start, const DelaySettings& settings)
      : settings_(settings), pacer_(start, settings.count, settings.interval, kReplyWait) {}

  const Mac& target() const { return settings_.target; }
  Time NextDeadline() const { return pacer_.NextDeadline(); }
  bool Ended(Time now) const { return pacer_.Ended(now); }

  /** The DMM that is to be sent now, if one is. */
  std::optional<std::vector<std::uint8_t>> TakeDue(Time now, StampClock& clock);

  /** @param received When the frame arrived: by the clock that gave the times of sending. */
  Reply OnReply(Time received, const Mac& source, const pdu::DelayMeasurement& dmr);

  DelayResult Result() const;

 private:
  struct Sent {
    Time when{};
    bool answered = false;
  };

  DelaySettings settings_;
  Pacer pacer_;
  std::map<pdu::Timestamp, Sent> sent_;
  DelayStatistics statistics_;
  std::uint64_t received_ = 0;
  std::uint64_t rejected_ = 0;
};

}  // namespace cfm_mgr::engine

#endif
