// SPDX-License-Identifier: Apache-2.0
#include "engine/ccm_sender.h"

#include <utility>

#include "pdu/ccm.h"

namespace cfm_mgr::engine {

CcmSender::CcmSender(Context& context)
    : context_(context), timer_(context.timers, [this](Time now) { Send(now); }) {}

void CcmSender::SetFrame(PortId port, Side side, Frame frame) {
  port_ = port;
  side_ = side;
  frame_ = std::move(frame);
}

void CcmSender::SetRdi(bool rdi) {
  std::uint8_t& flags = frame_.pdu[pdu::kCcmFlagsAt];
  flags = pdu::CcmFlags(rdi, static_cast<std::uint8_t>(flags & 7U));
}

void CcmSender::Start(Time now, std::uint8_t interval) {
  if (interval == interval_) return;
  interval_ = interval;
  paced_ = false;
  timer_.Arm(now);
}

void CcmSender::Stop() {
  interval_ = 0;
  timer_.Stop();
}

void CcmSender::Send(Time now) {
  // 0 would tell that CCMs are not numbered.
  if (++sequence_ == 0) sequence_ = 1;
  pdu::PatchU32(frame_.pdu, pdu::kCcmSequenceAt, sequence_);
  ++sent_;
  Schedule(context_.surroundings.TimeOfSending(now));
  context_.surroundings.Transmit(port_, side_, frame_);
}

void CcmSender::Schedule(Time now) {
  if (paced_) {
    pace_.GoOn(now);
  } else {
    std::uniform_int_distribution<std::int64_t> phase(1, Interval(interval_).count());
    pace_ = CcmPace(now + Time(phase(context_.random)), interval_);
    paced_ = true;
  }
  timer_.Arm(pace_.next());
}

}  // namespace cfm_mgr::engine
