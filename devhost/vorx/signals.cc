// SPDX-License-Identifier: Apache-2.0
#include "signals.h"

#include <cerrno>

#include "names.h"

namespace devhost {

vorx_registration* Signals::Add(const vorx_sig_descriptor& descriptor, vorx_sig_cb callback,
                                void* user) {
  auto registration = std::make_shared<vorx_registration>();
  registration->key = {descriptor.block, descriptor.number};
  registration->callback = callback;
  registration->user = user;
  vorx_registration* const address = registration.get();
  table_.Add(std::move(registration));
  return address;
}

int Signals::Send(vorx_pid_t destination, const vorx_sig_descriptor& descriptor, Payload payload) {
  if (const int absent = CheckPresent(destination); absent < 0) {
    return absent;
  }
  int result = 0;
  MessagePtr message = MakeSignal(bus_.raw(), destination, descriptor,
                                  peers_.NextSequence(destination), payload, result);
  if (message == nullptr) {
    return result;
  }
  result = bus_.Send(std::move(message), payload.size);
  if (result >= 0) {
    peers_.CountSent(destination);
  }
  return result;
}

int Signals::CheckPresent(vorx_pid_t pid) {
  if (pid <= 0) {
    return -ESRCH;
  }
  if (!bus_.IsConnected()) {
    return -ENOTCONN;
  }
  if (peers_.StateOf(pid) == Peers::State::kUnknown) {
    MessagePtr reply;
    const int result =
        bus_.CallAndWait(MakeBusCall(bus_.raw(), "NameHasOwner", UniqueNameOf(pid).c_str()), reply);
    int has_owner = 0;
    if (result < 0) {
      return result;
    }
    if (sd_bus_message_read(reply.get(), "b", &has_owner) > 0 && has_owner != 0) {
      peers_.Seen(pid);
    } else {
      peers_.Gone(pid);
    }
  }
  return peers_.StateOf(pid) == Peers::State::kGone ? -ESRCH : 0;
}

void Signals::Deliver(const Packet& packet) {
  const DescriptorView descriptor(packet.name, packet.number);
  if (!table_.Has(descriptor)) {
    const std::string text = ToText(descriptor);
    diagnostics_.SayCounted("unwanted " + text, "signal " + text + " of process " +
                                                    std::to_string(packet.sender) +
                                                    " ignored: nothing is registered for it");
    return;
  }
  // The callback's type asks for a pointer to bytes that may be changed. The message's own buffer
  // is plain memory of this process.
  auto* const data = const_cast<void*>(packet.payload.data);  // NOLINT
  table_.ForEach(descriptor, [&](const vorx_registration& registration) {
    const vorx_pid_t sender = packet.sender;
    registration.callback(handle_, registration.user, &sender, data,
                          static_cast<unsigned int>(packet.payload.size));
  });
}

}  // namespace devhost
