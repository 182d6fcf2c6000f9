// SPDX-License-Identifier: Apache-2.0
#include "engine/reply_queue.h"

#include <utility>

namespace cfm_mgr::engine {

ReplyQueue::ReplyQueue(Context& context, const MepTable& table)
    : context_(context),
      table_(table),
      timer_(context.timers, [this](Time now) { SendDue(now); }) {}

void ReplyQueue::Send(Time now, PortId port, Side side, Frame frame) {
  if (waiting_.size() == kMaxWaiting) {
    ++context_.drops.At(port).unanswered;
    return;
  }
  std::uniform_int_distribution<std::int64_t> delay(0, kMaxDelay.count());
  waiting_.insert({now + Time(delay(context_.random)), {port, side, std::move(frame)}});
  timer_.Arm(waiting_.begin()->first);
}

void ReplyQueue::SendDue(Time now) {
  while (!waiting_.empty() && waiting_.begin()->first <= now) {
    const Waiting reply = std::move(waiting_.begin()->second);
    waiting_.erase(waiting_.begin());
    if (table_.FindPort(reply.port) == nullptr) continue;
    context_.surroundings.Transmit(reply.port, reply.side, reply.frame);
  }
  if (!waiting_.empty()) timer_.Arm(waiting_.begin()->first);
}

}  // namespace cfm_mgr::engine
