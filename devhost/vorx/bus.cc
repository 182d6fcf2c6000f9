// SPDX-License-Identifier: Apache-2.0
#include "bus.h"

#include <cerrno>
#include <utility>

namespace devhost {
namespace {

constexpr milliseconds kConnectTimeout{10'000};
/** How much is read ahead while a send waits. */
constexpr std::size_t kMaxInboxBytes = std::size_t{64} << 20U;
constexpr int kStepsPerPump = 64;
constexpr int kStepsPerPumpWhenFull = 1;

std::size_t WeightOf(const Incoming& incoming) {
  const auto* const packet = std::get_if<Packet>(&incoming.content);
  return kMessageOverhead + (packet == nullptr ? 0 : packet->payload.size);
}

std::string OriginOf(sd_bus_message* message) {
  const auto text = [](const char* value) { return value == nullptr ? "?" : value; };
  return std::string(text(sd_bus_message_get_interface(message))) + '.' +
         text(sd_bus_message_get_member(message)) + "' from " +
         text(sd_bus_message_get_sender(message));
}

}  // namespace

int Bus::Open(const std::string& address, SendLimits limits) {
  limits_ = limits;
  const int result = connection_.Open(address, kConnectTimeout);
  connected_ = result >= 0;
  return result;
}

bool Bus::Drain() {
  auto deadline = Clock::now() + limits_.timeout;
  std::size_t left = outbox_.size();
  while (connected_ && (!outbox_.empty() || connection_.IsWriting()) && Clock::now() < deadline) {
    DropIncoming();
    Pump(Until(deadline));
    if (outbox_.size() < left) {
      left = outbox_.size();
      deadline = Clock::now() + limits_.timeout;
    }
  }
  if (connected_ && !outbox_.empty()) {
    diagnostics_.Say("closed with " + std::to_string(outbox_.size()) + " messages not sent");
  }
  return connected_ && outbox_.empty() && !connection_.IsWriting();
}

int Bus::Events() const { return connected_ ? connection_.Events() : -ENOTCONN; }

int Bus::TimeoutMs() const { return inbox_.empty() ? connection_.TimeoutMs() : 0; }

int Bus::Send(MessagePtr message, std::size_t bytes) {
  if (bytes > kMaxPayload) {
    return -EMSGSIZE;
  }
  const std::size_t weight = bytes + kMessageOverhead;
  const int result = WaitForRoom(weight);
  return result < 0 ? result : Enqueue({std::move(message), weight, nullptr, false});
}

int Bus::Call(MessagePtr call, ReplyHandler handler) {
  return call == nullptr ? -EINVAL
                         : Enqueue({std::move(call), kMessageOverhead, std::move(handler), false});
}

int Bus::CallAndWait(MessagePtr call, MessagePtr& reply, milliseconds limit) {
  if (call == nullptr) {
    return -EINVAL;
  }
  // Shared with the handler, which may outlive this call when the reply comes too late.
  const auto received = std::make_shared<MessagePtr>();
  const auto deadline = Clock::now() + limit;
  int result =
      Enqueue({std::move(call), kMessageOverhead,
               [received](sd_bus_message* m) { received->reset(sd_bus_message_ref(m)); }, true});
  while (result >= 0 && *received == nullptr) {
    if (Clock::now() >= deadline) {
      result = -ETIMEDOUT;
    } else if (Pump(Until(deadline)); !connected_) {
      result = -ENOTCONN;
    }
  }
  reply = std::move(*received);
  return result;
}

int Bus::Enqueue(Outgoing outgoing) {
  if (!connected_) {
    return -ENOTCONN;
  }
  outbox_bytes_ += outgoing.bytes;
  outbox_.push_back(std::move(outgoing));
  HandOver();
  return 0;
}

/** sd-bus holds at most the one message that it is writing: its own queue is slow when long. */
void Bus::HandOver() {
  while (connected_ && !outbox_.empty() && !connection_.IsWriting()) {
    Outgoing next = std::move(outbox_.front());
    outbox_.pop_front();
    outbox_bytes_ -= next.bytes;
    is_stalled_ = false;
    const int result = connection_.Post(next.message.get(), next.handler != nullptr);
    if (result >= 0) {
      NoteSent(next);
    } else if (!connection_.IsOpen() || result == -ECONNRESET || result == -EPIPE) {
      Lose(result);
    } else {
      diagnostics_.SayCounted("post", "a message could not be sent: " + ErrorText(result));
    }
  }
}

void Bus::NoteSent(Outgoing& sent) {
  if (sent.handler == nullptr) {
    returned_.NoteSent(sent.message.get());
    return;
  }
  std::uint64_t cookie = 0;
  sd_bus_message_get_cookie(sent.message.get(), &cookie);
  pending_.emplace(cookie, PendingReply{std::move(sent.handler), sent.is_urgent});
}

bool Bus::HasRoom(std::size_t bytes) const {
  return outbox_.empty() || outbox_bytes_ + bytes <= limits_.max_queued_bytes;
}

int Bus::WaitForRoom(std::size_t bytes) {
  auto deadline = Clock::now() + limits_.timeout;
  while (connected_ && !HasRoom(bytes)) {
    const std::size_t before = outbox_.size();
    Pump(is_stalled_ ? milliseconds::zero() : Until(deadline));
    if (outbox_.size() < before) {
      deadline = Clock::now() + limits_.timeout;
    } else if (is_stalled_ || Clock::now() >= deadline) {
      is_stalled_ = true;
      return -ETIMEDOUT;
    }
  }
  return connected_ ? 0 : -ENOTCONN;
}

/** Waits for work and does some of it. */
void Bus::Pump(milliseconds limit) {
  const bool may_read = inbox_bytes_ < kMaxInboxBytes;
  const int events = may_read ? connection_.Events() : POLLOUT;
  if (!connection_.Wait(events, limit)) {
    if (!connection_.IsOpen()) {
      Lose(-ECONNRESET);
    }
    return;
  }
  int left = may_read ? kStepsPerPump : kStepsPerPumpWhenFull;
  while (left > 0 && Step()) {
    left = inbox_bytes_ < kMaxInboxBytes ? left - 1 : 0;
  }
}

bool Bus::Step() {
  if (!connected_) {
    return false;
  }
  MessagePtr message;
  const int result = connection_.Step(message);
  if (result < 0) {
    Lose(result);
    return false;
  }
  if (message != nullptr) {
    Accept(std::move(message));
  }
  HandOver();
  return result > 0;
}

void Bus::Lose(int error) {
  if (!connected_) {
    return;
  }
  connected_ = false;
  diagnostics_.Say("the bus is gone: " + ErrorText(error));
  if (!outbox_.empty()) {
    diagnostics_.Say(std::to_string(outbox_.size()) + " messages were not sent");
    outbox_.clear();
    outbox_bytes_ = 0;
  }
}

bool Bus::Next(Incoming& incoming) {
  while (inbox_.empty() && Step()) {
  }
  if (inbox_.empty()) {
    return false;
  }
  incoming = std::move(inbox_.front());
  inbox_.pop_front();
  inbox_bytes_ -= WeightOf(incoming);
  return true;
}

void Bus::PushIncoming(Incoming incoming) {
  inbox_bytes_ += WeightOf(incoming);
  inbox_.push_back(std::move(incoming));
}

void Bus::DropIncoming() {
  inbox_.clear();
  inbox_bytes_ = 0;
}

void Bus::Accept(MessagePtr message) {
  std::uint8_t type = 0;
  if (sd_bus_message_get_type(message.get(), &type) < 0) {
    return;
  }
  switch (type) {
    case SD_BUS_MESSAGE_METHOD_RETURN:
    case SD_BUS_MESSAGE_METHOD_ERROR:
      AcceptReply(std::move(message));
      break;
    case SD_BUS_MESSAGE_SIGNAL:
      AcceptSignal(std::move(message));
      break;
    default:
      AcceptCall(message.get());
      break;
  }
}

void Bus::AcceptReply(MessagePtr message) {
  std::uint64_t cookie = 0;
  sd_bus_message_get_reply_cookie(message.get(), &cookie);
  const auto found = pending_.find(cookie);
  if (found == pending_.end()) {
    returned_.Report(message.get(), cookie);
    return;
  }
  PendingReply pending = std::move(found->second);
  pending_.erase(found);
  if (pending.is_urgent) {
    pending.handler(message.get());
  } else {
    PushIncoming({std::move(message), Reply{std::move(pending.handler)}});
  }
}

void Bus::AcceptSignal(MessagePtr message) {
  if (sd_bus_message_is_signal(message.get(), "org.freedesktop.DBus.Local", "Disconnected") > 0) {
    Lose(-ECONNRESET);
    return;
  }
  if (LooksLikeOwnerChange(message.get())) {
    if (const auto change = ReadOwnerChange(message.get())) {
      if (change->from != 0) {
        peers_.Gone(change->from);
      }
      if (change->to != 0) {
        peers_.Seen(change->to);
      }
      PushIncoming({std::move(message), *change});
    }
    return;
  }
  if (const auto packet = ReadPacket(message.get())) {
    peers_.Seen(packet->sender);
    PushIncoming({std::move(message), *packet});
    return;
  }
  const char* const sender = sd_bus_message_get_sender(message.get());
  if (sender == nullptr || std::string_view(sender) != kBusDriver) {
    diagnostics_.SayCounted(
        LooksLikePacket(message.get()) ? "malformed" : "foreign",
        "ignored a message that is no signal or event: '" + OriginOf(message.get()));
  }
}

void Bus::AcceptCall(sd_bus_message* message) {
  diagnostics_.SayCounted("call", "refused a call, for there are none here: '" + OriginOf(message));
  if (sd_bus_message_get_expect_reply(message) > 0) {
    sd_bus_reply_method_errorf(message, SD_BUS_ERROR_UNKNOWN_METHOD, "No methods are offered here");
  }
}

}  // namespace devhost
