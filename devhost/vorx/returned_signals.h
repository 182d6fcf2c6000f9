/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_RETURNED_SIGNALS_H
#define DEVHOST_VORX_RETURNED_SIGNALS_H

#include <cstdint>
#include <deque>

#include "diagnostics.h"
#include "peers.h"
#include "wire.h"

namespace devhost {

/** Reports the signals that the bus returns because it could not deliver them. */
class ReturnedSignals {
 public:
  ReturnedSignals(Peers& peers, Diagnostics& diagnostics)
      : peers_(peers), diagnostics_(diagnostics) {}

  /** Notes a message that was sent, if it went to one process. */
  void NoteSent(sd_bus_message* message);

  /** Reports the error that the bus sent for the message of this cookie, if it is one. */
  void Report(sd_bus_message* error_message, std::uint64_t cookie);

 private:
  struct Sent {
    std::uint64_t cookie = 0;
    vorx_pid_t destination = 0;
  };

  [[nodiscard]] vorx_pid_t DestinationOf(std::uint64_t cookie) const;

  Peers& peers_;
  Diagnostics& diagnostics_;
  /** The latest ones, in the order of their cookies. */
  std::deque<Sent> sent_;
};

}  // namespace devhost

#endif
