/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_CONNECTION_H
#define DEVHOST_VORX_CONNECTION_H

#include <poll.h>

#include <chrono>
#include <string>

#include "wire.h"

namespace devhost {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/**
 * One sd-bus connection that is read and written by hand: nothing here waits without a limit, and
 * sd-bus calls nobody back.
 */
class Connection {
 public:
  Connection() = default;
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /** Connects and says hello. 0 or a negative error number. */
  int Open(const std::string& address, milliseconds limit);
  void Close();

  [[nodiscard]] bool IsOpen() const { return bus_ != nullptr && sd_bus_is_open(bus_) > 0; }
  [[nodiscard]] sd_bus* raw() const { return bus_; }
  [[nodiscard]] std::string UniqueName() const;

  /** Stays the same, and open, until this object is gone; the peer may hang up earlier. */
  [[nodiscard]] int Fd() const { return fd_; }
  /** Poll events to wait for, or a negative error number. */
  [[nodiscard]] int Events() const;
  /** As poll(2) takes it. */
  [[nodiscard]] int TimeoutMs() const;

  /** Waits until there is something to do. Whether there is. */
  [[nodiscard]] bool Wait(int events, milliseconds limit) const;

  /**
   * Does one piece of work: writes what waits, or reads one message. Positive when it did
   * something, 0 when there is nothing to do, or a negative error number.
   */
  int Step(MessagePtr& message);

  /** Whether a message that was posted is not fully written yet. */
  [[nodiscard]] bool IsWriting() const;
  /** Posts a message. To be called when nothing is being written, so that sd-bus queues nothing. */
  int Post(sd_bus_message* message, bool wants_reply);

 private:
  sd_bus* bus_ = nullptr;
  int fd_ = -1;
};

/** The time that is left until @p deadline, never negative. */
milliseconds Until(Clock::time_point deadline);

}  // namespace devhost

#endif
