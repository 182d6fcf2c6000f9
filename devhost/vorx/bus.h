/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_BUS_H
#define DEVHOST_VORX_BUS_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <variant>

#include "connection.h"
#include "diagnostics.h"
#include "peers.h"
#include "returned_signals.h"
#include "wire.h"

namespace devhost {

/** The answer to an earlier call. */
struct Reply {
  std::function<void(sd_bus_message*)> handler;
};

/** One thing that came in and waits to be delivered. Its content points into the message. */
struct Incoming {
  MessagePtr message;
  std::variant<Packet, OwnerChange, Reply> content;
};

/** What a message weighs beside its payload: an estimate of header, descriptor and bookkeeping. */
inline constexpr std::size_t kMessageOverhead = 512;

/** How much may wait to be sent, and for how long a send may wait. */
struct SendLimits {
  std::size_t max_queued_bytes = 0;
  milliseconds timeout{};
};

/**
 * The messages to and from the bus, in order, in two queues. Both are bounded: a send waits while
 * the outgoing queue is full, and goes on reading meanwhile, so that two processes that flood each
 * other both get ahead; it stops reading when the incoming queue is full as well.
 */
class Bus {
 public:
  using ReplyHandler = std::function<void(sd_bus_message*)>;

  Bus(Peers& peers, Diagnostics& diagnostics)
      : peers_(peers), diagnostics_(diagnostics), returned_(peers, diagnostics) {}

  int Open(const std::string& address, SendLimits limits);
  /** Writes what is queued, as long as that goes ahead. Whether all of it is written. */
  bool Drain();

  /** False once the bus went away. */
  bool IsConnected() const { return connected_; }
  sd_bus* raw() const { return connection_.raw(); }
  std::string UniqueName() const { return connection_.UniqueName(); }
  int Fd() const { return connection_.Fd(); }
  int Events() const;
  int TimeoutMs() const;

  /**
   * Queues a message that carries @p bytes of payload. -ETIMEDOUT when the queue stayed full; after
   * that it no longer waits until the queue has moved again.
   */
  int Send(MessagePtr message, std::size_t bytes);
  /** Queues a call; the handler gets the reply when its turn comes to be delivered. */
  int Call(MessagePtr call, ReplyHandler handler);
  /** Waits for the reply of a call, no longer than a send may wait, without delivering anything. */
  int CallAndWait(MessagePtr call, MessagePtr& reply) {
    return CallAndWait(std::move(call), reply, limits_.timeout);
  }
  int CallAndWait(MessagePtr call, MessagePtr& reply, milliseconds limit);

  /** Takes the next thing to deliver, reading if there is none yet. Never waits. */
  bool Next(Incoming& incoming);
  /** Whether something to deliver has been read already. */
  bool HasIncoming() const { return !inbox_.empty(); }

 private:
  struct Outgoing {
    MessagePtr message;
    std::size_t bytes = 0;
    ReplyHandler handler;
    bool is_urgent = false;
  };
  struct PendingReply {
    ReplyHandler handler;
    bool is_urgent = false; /**< Hand it over as it is read, past the incoming queue. */
  };

  int Enqueue(Outgoing outgoing);
  void HandOver();
  void NoteSent(Outgoing& sent);
  int WaitForRoom(std::size_t bytes);
  bool HasRoom(std::size_t bytes) const;
  void Pump(milliseconds limit);
  bool Step();
  void Lose(int error);

  void Accept(MessagePtr message);
  void AcceptReply(MessagePtr message);
  void AcceptSignal(MessagePtr message);
  void AcceptCall(sd_bus_message* message);
  void PushIncoming(Incoming incoming);
  void DropIncoming();

  Peers& peers_;
  Diagnostics& diagnostics_;
  ReturnedSignals returned_;
  Connection connection_;
  SendLimits limits_;
  bool connected_ = false;

  std::deque<Outgoing> outbox_;
  std::size_t outbox_bytes_ = 0;
  bool is_stalled_ = false;
  std::unordered_map<std::uint64_t, PendingReply> pending_;

  std::deque<Incoming> inbox_;
  std::size_t inbox_bytes_ = 0;
};

}  // namespace devhost

#endif
