// SPDX-License-Identifier: Apache-2.0
#include "events.h"

#include <cerrno>

namespace devhost {

vorx_eventreg* Events::Add(const vorx_event_descriptor& descriptor, vorx_event_cb callback,
                           void* user) {
  auto registration = std::make_shared<vorx_eventreg>();
  registration->key = {descriptor.group, descriptor.number};
  registration->callback = callback;
  registration->user = user;
  if (!table_.Has(registration->key) && StartReception(registration->key) < 0) {
    return nullptr;
  }
  vorx_eventreg* const address = registration.get();
  table_.Add(std::move(registration));
  return address;
}

void Events::Remove(const vorx_eventreg* registration) {
  const DescriptorKey key = registration->key;
  if (table_.Remove(registration)) {
    StopReception(key);
  }
}

int Events::StartReception(const DescriptorKey& key) {
  const auto reception = std::make_shared<Reception>();
  const std::string text = ToText(key);
  // Events may still be on their way from an earlier registration; only from the bus's answer on
  // does every missing number mean a loss.
  const int result =
      bus_.Call(MakeBusCall(bus_.raw(), "AddMatch", EventMatchRule(key.name, key.number).c_str()),
                [this, reception, text](sd_bus_message* reply) {
                  const sd_bus_error* const error = sd_bus_message_get_error(reply);
                  if (error != nullptr) {
                    diagnostics_.Say("no event " + text + " will come: " + error->name + ": " +
                                     (error->message == nullptr ? "" : error->message));
                  }
                  reception->is_armed = error == nullptr;
                });
  if (result >= 0) {
    receptions_[key] = reception;
  }
  return result;
}

void Events::StopReception(const DescriptorKey& key) {
  receptions_.erase(key);
  if (bus_.IsConnected()) {
    bus_.Call(MakeBusCall(bus_.raw(), "RemoveMatch", EventMatchRule(key.name, key.number).c_str()),
              [](sd_bus_message*) {});
  }
}

int Events::Publish(const vorx_event_descriptor& descriptor, Payload payload) {
  if (!bus_.IsConnected()) {
    return -ENOTCONN;
  }
  std::uint64_t& published = published_[{descriptor.group, descriptor.number}];
  int result = 0;
  MessagePtr message = MakeEvent(bus_.raw(), descriptor, published + 1, payload, result);
  if (message == nullptr) {
    return result;
  }
  result = bus_.Send(std::move(message), payload.size);
  if (result >= 0) {
    ++published;
  }
  return result;
}

void Events::Deliver(const Packet& packet) {
  // See Signals::Deliver.
  auto* const data = const_cast<void*>(packet.payload.data);  // NOLINT
  table_.ForEach({packet.name, packet.number}, [&](const vorx_eventreg& registration) {
    registration.callback(handle_, registration.user, data,
                          static_cast<unsigned int>(packet.payload.size));
  });
}

std::uint64_t Events::CountLost(const Packet& packet) {
  const auto reception = receptions_.find(DescriptorView(packet.name, packet.number));
  if (reception == receptions_.end() || !reception->second->is_armed) {
    return 0;
  }
  const auto [last, is_first] = reception->second->last.try_emplace(packet.sender, packet.sequence);
  const std::uint64_t expected = is_first ? packet.sequence : last->second + 1;
  last->second = packet.sequence;
  return packet.sequence > expected ? packet.sequence - expected : 0;
}

void Events::Forget(vorx_pid_t publisher) {
  for (const auto& [key, reception] : receptions_) {
    reception->last.erase(publisher);
  }
}

}  // namespace devhost
