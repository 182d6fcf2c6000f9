// SPDX-License-Identifier: Apache-2.0
#include "recording_host.h"

#include <cfm/identifiers.h>
#include <zlog.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <stdexcept>

#include "wire_text.h"

namespace cfm_test {
namespace {

RecordingHost* current = nullptr;

}  // namespace

RecordingHost::RecordingHost() { current = this; }

RecordingHost::~RecordingHost() { current = nullptr; }

RecordingHost& RecordingHost::Current() {
  if (current == nullptr) {
    throw std::logic_error("the library called a host that does not exist");
  }
  return *current;
}

std::vector<std::string> RecordingHost::Take() { return std::exchange(record_, {}); }

std::vector<std::string> RecordingHost::Take(std::string_view prefix) {
  std::vector<std::string> result;
  for (const std::string& entry : Take()) {
    if (entry.compare(0, prefix.size(), prefix) == 0) {
      result.push_back(entry.substr(prefix.size()));
    }
  }
  return result;
}

void RecordingHost::ServerFound(vorx_pid_t pid) {
  const Running running(Running::Code::Library);
  subscription.found(&handle_, &pid, subscription.user);
}

void RecordingHost::ServerLost() {
  const Running running(Running::Code::Library);
  subscription.lost(&handle_, subscription.user);
}

const RecordingHost::Callback* RecordingHost::FindCallback(const std::string& name) const {
  for (const auto& callback : callbacks_) {
    if (callback->name == name) {
      return callback.get();
    }
  }
  throw std::logic_error("nothing is registered for " + name);
}

// The payload is copied to a block of exactly its size, so that a read past its end is noticed.
void RecordingHost::Signal(const vorx_sig_descriptor* signal, std::string payload) {
  std::vector<char> bytes(payload.begin(), payload.end());
  const Callback* const callback = FindCallback(NameOf(signal));
  const vorx_pid_t sender = 4711;
  const Running running(Running::Code::Library);
  callback->signal(&handle_, callback->user, &sender, bytes.data(),
                   static_cast<unsigned>(bytes.size()));
}

void RecordingHost::Event(const vorx_event_descriptor* event, std::string payload) {
  std::vector<char> bytes(payload.begin(), payload.end());
  const Callback* const callback = FindCallback(NameOf(event));
  const Running running(Running::Code::Library);
  callback->event(&handle_, callback->user, bytes.data(), static_cast<unsigned>(bytes.size()));
}

void RecordingHost::SignalNull(const vorx_sig_descriptor* signal) {
  const Callback* const callback = FindCallback(NameOf(signal));
  const vorx_pid_t sender = 4711;
  const Running running(Running::Code::Library);
  callback->signal(&handle_, callback->user, &sender, nullptr, 0);
}

void RecordingHost::EventNull(const vorx_event_descriptor* event) {
  const Callback* const callback = FindCallback(NameOf(event));
  const Running running(Running::Code::Library);
  callback->event(&handle_, callback->user, nullptr, 0);
}

void RecordingHost::GetInStep(const client_server::OpCacheSync& cache) {
  ServerFound();
  Signal(CFM_MGR_S2C_SIG_CACHE_REPLY, cache.SerializeAsString());
  Take();
}

RecordingHost::Callback* RecordingHost::Register(Callback callback) {
  Note("register " + callback.name);
  if (!registration_works(callback.name)) {
    return nullptr;
  }
  callbacks_.push_back(std::make_unique<Callback>(std::move(callback)));
  return callbacks_.back().get();
}

void RecordingHost::Deregister(const void* callback) {
  const auto found = std::find_if(callbacks_.begin(), callbacks_.end(),
                                  [&](const auto& known) { return known.get() == callback; });
  if (found == callbacks_.end()) {
    Note("deregister of what is not registered");
    return;
  }
  Note("deregister " + (*found)->name);
  callbacks_.erase(found);
}

}  // namespace cfm_test

using cfm_test::RecordingHost;
using cfm_test::Running;

namespace {

// The handle that the client was made with has to come back in every call.
std::string Checked(const vorx_t* handle, std::string entry) {
  return handle == RecordingHost::Current().handle() ? entry : entry + " (wrong handle)";
}

}  // namespace

extern "C" {

vorx_subscription_t* vorx_proc_subscribe(vorx_t* handle, const char* process_name,
                                         vorx_proc_found_cb found, vorx_proc_lost_cb lost,
                                         void* user) {
  const Running running(Running::Code::Host);
  RecordingHost& host = RecordingHost::Current();
  host.Note(Checked(handle, std::string("subscribe ") + process_name));
  host.subscription = {found, lost, user};
  host.on_subscribe();
  return host.subscription_works ? reinterpret_cast<vorx_subscription_t*>(&host.subscription)
                                 : nullptr;
}

void vorx_proc_unsubscribe(vorx_subscription_t** subscription) {
  const Running running(Running::Code::Host);
  RecordingHost::Current().Note(*subscription == nullptr ? "unsubscribe nothing" : "unsubscribe");
  *subscription = nullptr;
}

zlog_category_t* vorx_trace_init(vorx_t* handle, const char* name) {
  const Running running(Running::Code::Host);
  RecordingHost& host = RecordingHost::Current();
  host.Note(Checked(handle, std::string("trace ") + name));
  return host.trace_works ? reinterpret_cast<zlog_category_t*>(&host) : nullptr;
}

vorx_registration_t* vorx_sig_register_sized(vorx_t* handle, const vorx_sig_descriptor* signal,
                                             vorx_sig_cb callback, void* user) {
  const Running running(Running::Code::Host);
  return reinterpret_cast<vorx_registration_t*>(RecordingHost::Current().Register(
      {Checked(handle, cfm_test::NameOf(signal)), callback, nullptr, user}));
}

void vorx_sig_deregister(vorx_registration_t** registration) {
  const Running running(Running::Code::Host);
  RecordingHost::Current().Deregister(*registration);
  *registration = nullptr;
}

vorx_eventreg_t* vorx_event_register_sized(vorx_t* handle, const vorx_event_descriptor* event,
                                           vorx_event_cb callback, void* user) {
  const Running running(Running::Code::Host);
  return reinterpret_cast<vorx_eventreg_t*>(RecordingHost::Current().Register(
      {Checked(handle, cfm_test::NameOf(event)), nullptr, callback, user}));
}

void vorx_event_deregister(vorx_eventreg_t** registration) {
  const Running running(Running::Code::Host);
  RecordingHost::Current().Deregister(*registration);
  *registration = nullptr;
}

int vorx_sig_send(vorx_t* handle, const vorx_pid_t* destination, const vorx_sig_descriptor* signal,
                  const void* data, unsigned int length) {
  const Running running(Running::Code::Host);
  const std::string name = cfm_test::NameOf(signal);
  if (const auto& on_send = RecordingHost::Current().on_send; on_send) {
    on_send(name, data == nullptr ? "" : std::string(static_cast<const char*>(data), length));
    return -1;
  }
  std::string entry = "send " + std::to_string(*destination) + " " + name;
  if (data == nullptr && length == 0) {
    entry += " no payload";
  } else {
    const std::string fields = cfm_test::Schema::Get().Text(
        cfm_test::MessageOf(name), {static_cast<const char*>(data), length});
    entry += fields.empty() ? "" : " " + fields;
  }
  RecordingHost::Current().Note(Checked(handle, entry));
  return -1;  // never looked at
}

void vorx_print_backtrace(void) {
  const Running running(Running::Code::Host);
  RecordingHost::Current().Note("backtrace");
}

// Fatal errors end the process, so the whole record goes where the parent process sees it.
void vorx_gen_fault(int kind, const char* function, const char* file, int line, const char* text) {
  const Running running(Running::Code::Host);
  RecordingHost& host = RecordingHost::Current();
  constexpr std::size_t buffer_size = 350;
  const std::size_t length = std::strlen(text);
  const bool padded = std::all_of(text + length, text + buffer_size, [](char c) { return c == 0; });
  host.Note("fault " + std::to_string(kind) + " " + function + " " + file + ":" +
            std::to_string(line) + " [" + text + "]" + (padded ? "" : " not zero-filled"));
  for (const std::string& entry : host.Take()) {
    std::cerr << entry << " | ";
  }
  std::cerr << "end" << std::endl;
}

int sepan_to_ifindex(sepan_port_t port, uint32_t* ifindex) {
  const Running running(Running::Code::Host);
  if (RecordingHost::Current().interfaces.count(port) == 0) {
    return -1;
  }
  *ifindex = port + 1000;
  return 0;
}

int sepan_to_intfname(sepan_port_t port, char* buffer, size_t size) {
  const Running running(Running::Code::Host);
  RecordingHost::Current().on_port_name();
  const auto& interfaces = RecordingHost::Current().interfaces;
  const auto found = interfaces.find(port);
  if (found == interfaces.end()) {
    return -1;
  }
  // Like strncpy: a name that fills the buffer is not terminated.
  std::strncpy(buffer, found->second.c_str(), size);
  return 0;
}

sepan_interface_t sepan_from_ifindex(uint32_t ifindex) { return {ifindex - 1000}; }

int zlog_level_enabled(zlog_category_t* category, const int level) {
  const Running running(Running::Code::Host);
  if (category != reinterpret_cast<zlog_category_t*>(&RecordingHost::Current())) {
    RecordingHost::Current().Note("level asked of the wrong category");
  }
  return level != 11 || RecordingHost::Current().dump_level_enabled ? 1 : 0;
}

void zlog(zlog_category_t* category, const char* file, size_t filelen, const char* func,
          size_t funclen, long line, int level, const char* format, ...) {
  const Running running(Running::Code::Host);
  RecordingHost& host = RecordingHost::Current();
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  std::vector<char> text(static_cast<std::size_t>(std::vsnprintf(nullptr, 0, format, arguments)) +
                         1);
  va_end(arguments);
  std::vsnprintf(text.data(), text.size(), format, again);
  va_end(again);

  std::string entry = "log " + std::to_string(level) + " " + std::string(func, funclen) + ":" +
                      std::to_string(line) + " " + text.data();
  if (category != reinterpret_cast<zlog_category_t*>(&host)) {
    entry += " (wrong category)";
  }
  if (std::string(file, filelen) != "client_impl.cc" || std::strlen(file) != filelen ||
      std::strlen(func) != funclen) {
    entry += " (wrong file or lengths)";
  }
  if (level != 11 || host.dump_level_enabled) {
    host.Note(entry);
  }
}

}  // extern "C"
