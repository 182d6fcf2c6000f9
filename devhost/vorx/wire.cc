// SPDX-License-Identifier: Apache-2.0
#include "wire.h"

#include <charconv>
#include <system_error>

#include "names.h"

namespace devhost {
namespace {

constexpr const char* kPath = "/vorx";
constexpr const char* kInterface = "vorx.Messaging";
constexpr const char* kSignalMember = "Signal";
constexpr const char* kEventMember = "Event";
/** block, number, sequence, payload */
constexpr const char* kSignalTypes = "sytay";
/** group, number, sequence, payload; the number is text because match rules compare text only */
constexpr const char* kEventTypes = "sstay";

MessagePtr NewMessage(sd_bus* bus, const char* member, int& error) {
  sd_bus_message* message = nullptr;
  error = sd_bus_message_new_signal(bus, &message, kPath, kInterface, member);
  return MessagePtr(message);
}

int AppendPayload(sd_bus_message* message, std::uint64_t sequence, Payload payload) {
  const int result = sd_bus_message_append(message, "t", sequence);
  return result < 0 ? result
                    : sd_bus_message_append_array(message, 'y', payload.data, payload.size);
}

bool ReadPayload(sd_bus_message* message, Packet& packet) {
  return sd_bus_message_read(message, "t", &packet.sequence) > 0 &&
         sd_bus_message_read_array(message, 'y', &packet.payload.data, &packet.payload.size) >= 0;
}

bool ParseNumber(std::string_view text, std::uint32_t& number) {
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  return result.ec == std::errc() && result.ptr == end;
}

bool ReadSignal(sd_bus_message* message, Packet& packet) {
  const char* block = nullptr;
  std::uint8_t number = 0;
  if (sd_bus_message_has_signature(message, kSignalTypes) <= 0 ||
      sd_bus_message_read(message, "sy", &block, &number) <= 0) {
    return false;
  }
  packet.name = block;
  packet.number = number;
  return ReadPayload(message, packet);
}

bool ReadEvent(sd_bus_message* message, Packet& packet) {
  const char* group = nullptr;
  const char* number = nullptr;
  if (sd_bus_message_has_signature(message, kEventTypes) <= 0 ||
      sd_bus_message_read(message, "ss", &group, &number) <= 0) {
    return false;
  }
  packet.name = group;
  return ParseNumber(number, packet.number) && ReadPayload(message, packet);
}

}  // namespace

MessagePtr MakeSignal(sd_bus* bus, vorx_pid_t destination, const vorx_sig_descriptor& descriptor,
                      std::uint64_t sequence, Payload payload, int& error) {
  MessagePtr message = NewMessage(bus, kSignalMember, error);
  if (error >= 0) {
    error = sd_bus_message_set_destination(message.get(), UniqueNameOf(destination).c_str());
  }
  if (error >= 0) {
    error = sd_bus_message_append(message.get(), "sy", descriptor.block, descriptor.number);
  }
  if (error >= 0) {
    error = AppendPayload(message.get(), sequence, payload);
  }
  return error >= 0 ? std::move(message) : nullptr;
}

MessagePtr MakeEvent(sd_bus* bus, const vorx_event_descriptor& descriptor, std::uint64_t sequence,
                     Payload payload, int& error) {
  MessagePtr message = NewMessage(bus, kEventMember, error);
  if (error >= 0) {
    error = sd_bus_message_append(message.get(), "ss", descriptor.group,
                                  std::to_string(descriptor.number).c_str());
  }
  if (error >= 0) {
    error = AppendPayload(message.get(), sequence, payload);
  }
  return error >= 0 ? std::move(message) : nullptr;
}

MessagePtr MakeBusCall(sd_bus* bus, const char* method, const char* argument) {
  sd_bus_message* raw = nullptr;
  if (sd_bus_message_new_method_call(bus, &raw, kBusDriver, "/org/freedesktop/DBus", kBusDriver,
                                     method) < 0) {
    return nullptr;
  }
  MessagePtr message(raw);
  return sd_bus_message_append(raw, "s", argument) < 0 ? nullptr : std::move(message);
}

std::string EventMatchRule(std::string_view group, std::uint32_t number) {
  return std::string("type='signal',interface='") + kInterface + "',member='" + kEventMember +
         "',arg0=" + QuoteForMatch(group) + ",arg1='" + std::to_string(number) + "'";
}

std::string PresenceMatchRule() {
  return std::string("type='signal',sender='") + kBusDriver + "',member='NameOwnerChanged'," +
         "arg0namespace='" + std::string(kBusNamespace) + "'";
}

bool LooksLikePacket(sd_bus_message* message) {
  return sd_bus_message_is_signal(message, kInterface, nullptr) > 0;
}

std::optional<Packet> ReadPacket(sd_bus_message* message) {
  const char* const sender = sd_bus_message_get_sender(message);
  Packet packet;
  packet.sender = sender == nullptr ? 0 : PidOf(sender);
  if (packet.sender == 0) {
    return std::nullopt;
  }
  if (sd_bus_message_is_signal(message, kInterface, kSignalMember) > 0) {
    packet.kind = Packet::Kind::kSignal;
    return ReadSignal(message, packet) ? std::optional(packet) : std::nullopt;
  }
  if (sd_bus_message_is_signal(message, kInterface, kEventMember) > 0) {
    packet.kind = Packet::Kind::kEvent;
    return ReadEvent(message, packet) ? std::optional(packet) : std::nullopt;
  }
  return std::nullopt;
}

bool LooksLikeOwnerChange(sd_bus_message* message) {
  const char* const sender = sd_bus_message_get_sender(message);
  return sender != nullptr && std::string_view(sender) == kBusDriver &&
         sd_bus_message_is_signal(message, kBusDriver, "NameOwnerChanged") > 0;
}

std::optional<OwnerChange> ReadOwnerChange(sd_bus_message* message) {
  const char* name = nullptr;
  const char* from = nullptr;
  const char* to = nullptr;
  if (sd_bus_message_has_signature(message, "sss") <= 0 ||
      sd_bus_message_read(message, "sss", &name, &from, &to) <= 0) {
    return std::nullopt;
  }
  const std::string_view process = ProcessNameOf(name);
  if (process.empty()) {
    return std::nullopt;
  }
  return OwnerChange{process, PidOf(from), PidOf(to)};
}

}  // namespace devhost
