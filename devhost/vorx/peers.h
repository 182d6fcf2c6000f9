/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_PEERS_H
#define DEVHOST_VORX_PEERS_H

#include <vorx/vorx.h>

#include <cstdint>
#include <unordered_map>

namespace devhost {

/**
 * What is known of the processes that this one has to do with. Identifiers are never used again,
 * so that whoever is gone stays gone.
 */
class Peers {
 public:
  enum class State { kUnknown, kPresent, kGone };

  State StateOf(vorx_pid_t pid) const;
  /** Notes that the process is there, unless it is known to be gone. */
  void Seen(vorx_pid_t pid);
  void Gone(vorx_pid_t pid);

  /** The sequence number of the next signal to the process. */
  std::uint64_t NextSequence(vorx_pid_t pid) { return peers_[pid].sent + 1; }
  void CountSent(vorx_pid_t pid) { ++peers_[pid].sent; }

  /** Notes a signal from the process. How many before it are missing. */
  std::uint64_t CountReceived(vorx_pid_t pid, std::uint64_t sequence);

 private:
  struct Peer {
    State state = State::kUnknown;
    std::uint64_t sent = 0;
    std::uint64_t received = 0;
  };

  std::unordered_map<vorx_pid_t, Peer> peers_;
};

}  // namespace devhost

#endif
