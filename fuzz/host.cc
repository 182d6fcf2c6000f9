// SPDX-License-Identifier: Apache-2.0
#include "host.h"

#include <sepan/sepan.h>
#include <zlog.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <vector>

#include "require.h"

namespace cfm_fuzz {
namespace {

Host* current = nullptr;

// Thrown where the library would end the process.
struct ProcessEnds {};

}  // namespace

Host::Host() {
  Require(current == nullptr, "there is one host at a time");
  current = this;
}

Host::~Host() { current = nullptr; }

Host& Host::Current() {
  Require(current != nullptr, "the library calls its host only while there is one");
  return *current;
}

void Host::ServerFound(vorx_pid_t pid) { subscription.found(&handle_, &pid, subscription.user); }

void Host::ServerLost() { subscription.lost(&handle_, subscription.user); }

bool Host::Deliver(const Callback& callback, std::string_view payload) {
  const void* const descriptor = callback.signal != nullptr
                                     ? static_cast<const void*>(callback.signal)
                                     : static_cast<const void*>(callback.event);
  const auto found =
      std::find_if(registrations_.begin(), registrations_.end(),
                   [&](const auto& known) { return known.descriptor == descriptor; });
  Require(found != registrations_.end(), "the library registers for all that the server sends");
  std::vector<char> block(payload.begin(), payload.end());
  const auto length = static_cast<unsigned>(block.size());
  const vorx_pid_t sender = 4711;
  try {
    if (callback.signal != nullptr) {
      found->signal(&handle_, found->user, &sender, block.data(), length);
    } else {
      found->event(&handle_, found->user, block.data(), length);
    }
  } catch (const ProcessEnds&) {
    return false;
  }
  return true;
}

Host::Registration* Host::Register(const Registration& registration) {
  const auto free = std::find_if(registrations_.begin(), registrations_.end(),
                                 [](const auto& known) { return known.descriptor == nullptr; });
  Require(free != registrations_.end(), "the library registers nineteen callbacks at most");
  *free = registration;
  return &*free;
}

void Host::Deregister(Registration* registration) {
  Require(registration->descriptor != nullptr, "the library deregisters what is registered");
  *registration = {};
}

}  // namespace cfm_fuzz

using cfm_fuzz::Host;

// Opaque to the library.
struct vorx_subscription {};

extern "C" {

vorx_subscription_t* vorx_proc_subscribe(vorx_t* /*handle*/, const char* /*process_name*/,
                                         vorx_proc_found_cb found, vorx_proc_lost_cb lost,
                                         void* user) {
  Host::Current().subscription = {found, lost, user};
  return new vorx_subscription;
}

void vorx_proc_unsubscribe(vorx_subscription_t** subscription) {
  delete *subscription;
  *subscription = nullptr;
}

zlog_category_t* vorx_trace_init(vorx_t* /*handle*/, const char* /*name*/) {
  return reinterpret_cast<zlog_category_t*>(&Host::Current());
}

vorx_registration_t* vorx_sig_register_sized(vorx_t* /*handle*/, const vorx_sig_descriptor* signal,
                                             vorx_sig_cb callback, void* user) {
  return reinterpret_cast<vorx_registration_t*>(
      Host::Current().Register({signal, callback, nullptr, user}));
}

void vorx_sig_deregister(vorx_registration_t** registration) {
  Host::Deregister(reinterpret_cast<Host::Registration*>(*registration));
  *registration = nullptr;
}

vorx_eventreg_t* vorx_event_register_sized(vorx_t* /*handle*/, const vorx_event_descriptor* event,
                                           vorx_event_cb callback, void* user) {
  return reinterpret_cast<vorx_eventreg_t*>(
      Host::Current().Register({event, nullptr, callback, user}));
}

void vorx_event_deregister(vorx_eventreg_t** registration) {
  Host::Deregister(reinterpret_cast<Host::Registration*>(*registration));
  *registration = nullptr;
}

int vorx_sig_send(vorx_t* /*handle*/, const vorx_pid_t* destination,
                  const vorx_sig_descriptor* signal, const void* data, unsigned int length) {
  Host& host = Host::Current();
  std::string payload;
  if (data != nullptr) {
    payload.assign(static_cast<const char*>(data), length);
  }
  host.digest.AddAll(*destination, signal->number, payload);
  if (host.on_send) {
    host.on_send(signal, *destination, payload);
  }
  return 0;
}

void vorx_print_backtrace(void) {}

// The library expects not to come back from a fault, so the call is left with an exception.
void vorx_gen_fault(int /*kind*/, const char* function, const char* file, int line,
                    const char* text) {
  Host::Current().digest.AddAll(std::string_view(function), std::string_view(file), line,
                                std::string_view(text, 350));
  throw cfm_fuzz::ProcessEnds();
}

// Port 0 has no interface. Port 7's name fills the buffer without a terminating zero.
int sepan_to_ifindex(sepan_port_t port, uint32_t* ifindex) {
  if (port == 0) {
    return -1;
  }
  *ifindex = port + 1000;
  return 0;
}

int sepan_to_intfname(sepan_port_t port, char* buffer, size_t size) {
  if (port == 0) {
    return -1;
  }
  if (port == 7) {
    std::memset(buffer, 'x', size);
  } else {
    static_cast<void>(std::snprintf(buffer, size, "eth%u", port));
  }
  return 0;
}

sepan_interface_t sepan_from_ifindex(uint32_t ifindex) { return {ifindex - 1000}; }

int zlog_level_enabled(zlog_category_t* /*category*/, const int /*level*/) { return 1; }

void zlog(zlog_category_t* /*category*/, const char* file, size_t filelen, const char* func,
          size_t funclen, long line, int level, const char* format, ...) {
  std::vector<char> text(512);
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const auto length =
      static_cast<std::size_t>(std::vsnprintf(text.data(), text.size(), format, arguments));
  va_end(arguments);
  if (length >= text.size()) {
    text.resize(length + 1);
    static_cast<void>(std::vsnprintf(text.data(), text.size(), format, again));
  }
  va_end(again);
  Host::Current().digest.AddAll(std::string_view(file, filelen), std::string_view(func, funclen),
                                line, level, std::string_view(text.data(), length));
}

}  // extern "C"
