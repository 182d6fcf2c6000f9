/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_SIGNALS_H
#define DEVHOST_VORX_SIGNALS_H

#include <vorx/vorx.h>

#include <memory>

#include "bus.h"
#include "callback_table.h"

/** A registration for a signal, known by its address outside. */
struct vorx_registration {
  devhost::DescriptorKey key;
  vorx_sig_cb callback = nullptr;
  void* user = nullptr;
  bool is_active = true;
};

namespace devhost {

/** Signals: from this process to one other, and from others to the callbacks here. */
class Signals {
 public:
  Signals(vorx_t* handle, Bus& bus, Peers& peers, Diagnostics& diagnostics)
      : handle_(handle), bus_(bus), peers_(peers), diagnostics_(diagnostics) {}

  vorx_registration* Add(const vorx_sig_descriptor& descriptor, vorx_sig_cb callback, void* user);
  void Remove(const vorx_registration* registration) { table_.Remove(registration); }

  /** 0, or a negative error number: -ESRCH when there is no such process. */
  int Send(vorx_pid_t destination, const vorx_sig_descriptor& descriptor, Payload payload);

  /** Notes that a signal arrived. How many signals of its sender before it were lost. */
  std::uint64_t CountLost(const Packet& packet) {
    return peers_.CountReceived(packet.sender, packet.sequence);
  }
  /** Calls the callbacks of a signal. */
  void Deliver(const Packet& packet);

 private:
  int CheckPresent(vorx_pid_t pid);

  vorx_t* handle_;
  Bus& bus_;
  Peers& peers_;
  Diagnostics& diagnostics_;
  CallbackTable<vorx_registration> table_;
};

}  // namespace devhost

#endif
