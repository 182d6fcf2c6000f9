// SPDX-License-Identifier: Apache-2.0
#include "engine/delay_initiator.h"

namespace cfm_mgr::engine {
namespace {

constexpr std::uint32_t kNanosecondsPerSecond = 1'000'000'000;

bool IsValid(const pdu::Timestamp& stamp) { return stamp.nanoseconds < kNanosecondsPerSecond; }

/** The two-way delay without the time at the responder; none when the times cannot be. */
std::optional<Time> FindDelay(Time sent, Time received, const pdu::DelayMeasurement& dmr) {
  if (!IsValid(dmr.rx_f) || !IsValid(dmr.tx_b)) return std::nullopt;
  const Time at_responder = Difference(dmr.tx_b, dmr.rx_f);
  const Time delay = (received - sent) - at_responder;
  if (at_responder < Time(0) || delay < Time(0)) return std::nullopt;
  return delay;
}

}  // namespace

pdu::Timestamp ToTimestamp(Time time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  return {static_cast<std::uint32_t>(seconds.count()),
          static_cast<std::uint32_t>((time - seconds).count())};
}

Time Difference(const pdu::Timestamp& later, const pdu::Timestamp& earlier) {
  const auto seconds = static_cast<std::int32_t>(later.seconds - earlier.seconds);
  return std::chrono::seconds(seconds) + Time(later.nanoseconds) - Time(earlier.nanoseconds);
}

std::optional<std::vector<std::uint8_t>> DelayInitiator::TakeDue(Time now, StampClock& clock) {
  if (!pacer_.TakeDue(now)) return std::nullopt;
  const pdu::Timestamp stamp = clock.Next(now);
  sent_[stamp] = {now};
  return pdu::EncodeDmm(settings_.level, stamp, settings_.pdu_size);
}

DelayInitiator::Reply DelayInitiator::OnReply(Time received, const Mac& source,
                                              const pdu::DelayMeasurement& dmr) {
  const auto sent = sent_.find(dmr.tx_f);
  if (sent == sent_.end() || source != settings_.target) return Reply::NotOurs;
  const bool in_time = received - sent->second.when <= kReplyWait;
  const auto delay = FindDelay(sent->second.when, received, dmr);
  if (sent->second.answered || !in_time || !delay) {
    ++rejected_;
    return Reply::Rejected;
  }
  sent->second.answered = true;
  ++received_;
  statistics_.Add(*delay);
  return Reply::Counted;
}

DelayResult DelayInitiator::Result() const {
  DelayResult result;
  result.sent = pacer_.sent();
  result.received = received_;
  result.rejected = rejected_;
  result.delay = statistics_.Delay();
  result.variation = statistics_.Variation();
  result.deviation = statistics_.Deviation();
  return result;
}

}  // namespace cfm_mgr::engine
