// SPDX-License-Identifier: Apache-2.0
#include "peers.h"

namespace devhost {

Peers::State Peers::StateOf(vorx_pid_t pid) const {
  const auto peer = peers_.find(pid);
  return peer == peers_.end() ? State::kUnknown : peer->second.state;
}

void Peers::Seen(vorx_pid_t pid) {
  Peer& peer = peers_[pid];
  if (peer.state == State::kUnknown) {
    peer.state = State::kPresent;
  }
}

void Peers::Gone(vorx_pid_t pid) { peers_[pid].state = State::kGone; }

std::uint64_t Peers::CountReceived(vorx_pid_t pid, std::uint64_t sequence) {
  Peer& peer = peers_[pid];
  const std::uint64_t expected = peer.received + 1;
  peer.received = sequence;
  return sequence > expected ? sequence - expected : 0;
}

}  // namespace devhost
