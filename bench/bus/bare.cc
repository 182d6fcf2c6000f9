// SPDX-License-Identifier: Apache-2.0
// The floor: one program that writes signals, one that reads them, with nothing around.

#include "bare.h"

#include <systemd/sd-bus.h>

#include <stdexcept>

#include "child_process.h"

namespace cfm_bench {
namespace {

using cfm_test::ChildProcess;

void Check(int result, const char* what) {
  if (result < 0) {
    throw std::runtime_error(std::string(what) + ": error " + std::to_string(-result));
  }
}

sd_bus* Connect(const std::string& address) {
  sd_bus* bus = nullptr;
  Check(sd_bus_new(&bus), "sd_bus_new");
  Check(sd_bus_set_address(bus, address.c_str()), "sd_bus_set_address");
  Check(sd_bus_set_bus_client(bus, 1), "sd_bus_set_bus_client");
  Check(sd_bus_start(bus), "sd_bus_start");
  return bus;
}

bool IsRequest(sd_bus_message* message) {
  const char* block = nullptr;
  std::uint8_t number = 0;
  std::uint64_t sequence = 0;
  const void* data = nullptr;
  std::size_t size = 0;
  return message != nullptr && sd_bus_message_is_signal(message, "vorx.Messaging", "Signal") > 0 &&
         sd_bus_message_read(message, "syt", &block, &number, &sequence) > 0 &&
         sd_bus_message_read_array(message, 'y', &data, &size) >= 0;
}

int Receive(const std::string& address, std::size_t count, Rendezvous& rendezvous) {
  sd_bus* const bus = Connect(address);
  const char* name = nullptr;
  Check(sd_bus_get_unique_name(bus, &name), "sd_bus_get_unique_name");
  rendezvous.Ready(name);
  for (std::size_t received = 0; received < count;) {
    sd_bus_message* message = nullptr;
    const int result = sd_bus_process(bus, &message);
    Check(result, "sd_bus_process");
    received += IsRequest(message) ? 1U : 0U;
    sd_bus_message_unref(message);
    if (result == 0) {
      Check(sd_bus_wait(bus, UINT64_MAX), "sd_bus_wait");
    }
  }
  rendezvous.End();
  Await("the end", [&] { return rendezvous.is_dismissed(); });
  return 0;
}

int Send(const std::string& address, const std::vector<Request>& requests, Rendezvous& rendezvous) {
  sd_bus* const bus = Connect(address);
  const char* own = nullptr;
  Check(sd_bus_get_unique_name(bus, &own), "sd_bus_get_unique_name");
  Await("the receiver", [&] { return rendezvous.is_ready(); });
  const std::string receiver = rendezvous.name();
  std::uint64_t sequence = 0;
  rendezvous.Start();
  for (const Request& request : requests) {
    sd_bus_message* message = nullptr;
    Check(sd_bus_message_new_signal(bus, &message, "/vorx", "vorx.Messaging", "Signal"), "new");
    Check(sd_bus_message_set_destination(message, receiver.c_str()), "destination");
    Check(sd_bus_message_append(message, "syt", request.block.c_str(), request.number, ++sequence),
          "append");
    Check(sd_bus_message_append_array(message, 'y', request.payload.data(), request.payload.size()),
          "append_array");
    Check(sd_bus_send(bus, message, nullptr), "send");
    sd_bus_message_unref(message);
    // What the socket did not take: sd-bus's own queue gets slow when it is long.
    std::uint64_t queued = 0;
    Check(sd_bus_get_n_queued_write(bus, &queued), "queued");
    if (queued > 0) {
      Check(sd_bus_flush(bus), "flush");
    }
  }
  Await("the end", [&] { return rendezvous.is_dismissed(); });
  return 0;
}

}  // namespace

Timing TimeBare(const cfm_test::PrivateBus& bus, const std::vector<Request>& requests) {
  Rendezvous rendezvous;
  const ChildProcess receiver([&] { return Receive(bus.address(), requests.size(), rendezvous); });
  const ChildProcess sender([&] { return Send(bus.address(), requests, rendezvous); });
  CpuLog log({bus.pid(), receiver.pid(), sender.pid()});
  Await("the last message", [&] {
    log.Sample();
    return rendezvous.has_ended();
  });
  rendezvous.Dismiss();
  return TimingOf(log, rendezvous.start(), rendezvous.end());
}

}  // namespace cfm_bench
