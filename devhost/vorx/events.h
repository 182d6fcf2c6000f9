/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_EVENTS_H
#define DEVHOST_VORX_EVENTS_H

#include <vorx/vorx.h>

#include <map>
#include <memory>
#include <unordered_map>

#include "bus.h"
#include "callback_table.h"

/** A registration for an event, known by its address outside. */
struct vorx_eventreg {
  devhost::DescriptorKey key;
  vorx_event_cb callback = nullptr;
  void* user = nullptr;
  bool is_active = true;
};

namespace devhost {

/** Events: from this process to all that want them, and from others to the callbacks here. */
class Events {
 public:
  Events(vorx_t* handle, Bus& bus, Diagnostics& diagnostics)
      : handle_(handle), bus_(bus), diagnostics_(diagnostics) {}

  /** Null when the bus is gone or takes no such name. */
  vorx_eventreg* Add(const vorx_event_descriptor& descriptor, vorx_event_cb callback, void* user);
  void Remove(const vorx_eventreg* registration);

  int Publish(const vorx_event_descriptor& descriptor, Payload payload);

  /** Notes that an event arrived. How many of its kind and publisher before it were lost. */
  std::uint64_t CountLost(const Packet& packet);
  /** Calls the callbacks of an event. */
  void Deliver(const Packet& packet);

  /** Forgets a publisher that is gone. */
  void Forget(vorx_pid_t publisher);

 private:
  /** The bus passes the events of a descriptor on; what came from whom, once that is certain. */
  struct Reception {
    bool is_armed = false;
    std::unordered_map<vorx_pid_t, std::uint64_t> last;
  };
  template <typename Value>
  using ByDescriptor = std::map<DescriptorKey, Value, DescriptorLess>;

  int StartReception(const DescriptorKey& key);
  void StopReception(const DescriptorKey& key);

  vorx_t* handle_;
  Bus& bus_;
  Diagnostics& diagnostics_;
  CallbackTable<vorx_eventreg> table_;
  ByDescriptor<std::shared_ptr<Reception>> receptions_;
  ByDescriptor<std::uint64_t> published_;
};

}  // namespace devhost

#endif
