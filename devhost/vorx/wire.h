/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_WIRE_H
#define DEVHOST_VORX_WIRE_H

#include <systemd/sd-bus.h>
#include <vorx/vorx.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace devhost {

struct MessageUnref {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using MessagePtr = std::unique_ptr<sd_bus_message, MessageUnref>;

/** The bus itself, as the sender of messages. */
inline constexpr const char* kBusDriver = "org.freedesktop.DBus";

/** The bytes that one signal or event carries: not owned, and null only when there are none. */
struct Payload {
  const void* data = nullptr;
  std::size_t size = 0;
};

/** The most that one array of a D-Bus message may hold. */
inline constexpr std::size_t kMaxPayload = std::size_t{64} << 20U;

/** A signal or an event that arrived. Points into the message that it was read from. */
struct Packet {
  enum class Kind { kSignal, kEvent };

  Kind kind = Kind::kSignal;
  vorx_pid_t sender = 0;
  std::string_view name; /**< Signal block or event group. */
  std::uint32_t number = 0;
  /** Counts a sender's signals to one process, or its events of one descriptor, from 1. */
  std::uint64_t sequence = 0;
  Payload payload;
};

/** A process name changed hands at the bus. */
struct OwnerChange {
  std::string_view process;
  vorx_pid_t from = 0; /**< 0: nobody had it. */
  vorx_pid_t to = 0;   /**< 0: nobody has it now. */
};

/** Null, with @p error set to a negative error number, when the message cannot be made. */
MessagePtr MakeSignal(sd_bus* bus, vorx_pid_t destination, const vorx_sig_descriptor& descriptor,
                      std::uint64_t sequence, Payload payload, int& error);
MessagePtr MakeEvent(sd_bus* bus, const vorx_event_descriptor& descriptor, std::uint64_t sequence,
                     Payload payload, int& error);

/** A call to the bus itself with string arguments; null when it cannot be made. */
MessagePtr MakeBusCall(sd_bus* bus, const char* method, const char* argument);

/** The match rule that has the bus pass on the events of a descriptor. */
std::string EventMatchRule(std::string_view group, std::uint32_t number);

/** The match rule that has the bus tell who joins and leaves. */
std::string PresenceMatchRule();

/** Whether the message has one of the names that packets travel under. */
bool LooksLikePacket(sd_bus_message* message);
/** Nothing when the message is no well-formed packet. */
std::optional<Packet> ReadPacket(sd_bus_message* message);

bool LooksLikeOwnerChange(sd_bus_message* message);
/** Nothing when the message is malformed or about a name that is no process's. */
std::optional<OwnerChange> ReadOwnerChange(sd_bus_message* message);

}  // namespace devhost

#endif
