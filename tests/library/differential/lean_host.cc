// SPDX-License-Identifier: Apache-2.0
#include "lean_host.h"

#include <cfm/identifiers.h>
#include <zlog.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <utility>
#include <vector>

namespace cfm_test {
namespace {

LeanHost* current = nullptr;

// Something to point at where the library keeps pointers that it only hands back.
int token = 0;

template <typename Opaque>
Opaque* Token() {
  return reinterpret_cast<Opaque*>(&token);
}

constexpr std::uint32_t kIfindexOffset = 1000;

}  // namespace

LeanHost::LeanHost() { current = this; }

LeanHost::~LeanHost() { current = nullptr; }

LeanHost& LeanHost::Current() {
  if (current == nullptr) {
    throw std::logic_error("the library called a host that does not exist");
  }
  return *current;
}

vorx_t* LeanHost::handle() { return reinterpret_cast<vorx_t*>(this); }

Trace LeanHost::Take() { return std::exchange(trace, {}); }

void LeanHost::ServerFound(vorx_pid_t pid) { found(handle(), &pid, user); }

void LeanHost::ServerLost() { lost(handle(), user); }

// The payload is copied to a block of exactly its size, so that a read past its end is noticed.
void LeanHost::CacheReply(std::string payload) {
  std::vector<char> bytes(payload.begin(), payload.end());
  const vorx_pid_t sender = 4711;
  cache_reply(handle(), user, &sender, bytes.data(), static_cast<unsigned>(bytes.size()));
}

}  // namespace cfm_test

using cfm_test::LeanHost;
using cfm_test::Token;

extern "C" {

vorx_subscription_t* vorx_proc_subscribe(vorx_t*, const char*, vorx_proc_found_cb found,
                                         vorx_proc_lost_cb lost, void* user) {
  LeanHost& host = LeanHost::Current();
  host.found = found;
  host.lost = lost;
  host.user = user;
  return Token<vorx_subscription_t>();
}

void vorx_proc_unsubscribe(vorx_subscription_t** subscription) { *subscription = nullptr; }

zlog_category_t* vorx_trace_init(vorx_t*, const char*) { return Token<zlog_category_t>(); }

vorx_registration_t* vorx_sig_register_sized(vorx_t*, const vorx_sig_descriptor* signal,
                                             vorx_sig_cb callback, void*) {
  if (signal == CFM_MGR_S2C_SIG_CACHE_REPLY) {
    LeanHost::Current().cache_reply = callback;
  }
  return Token<vorx_registration_t>();
}

void vorx_sig_deregister(vorx_registration_t** registration) { *registration = nullptr; }

vorx_eventreg_t* vorx_event_register_sized(vorx_t*, const vorx_event_descriptor*, vorx_event_cb,
                                           void*) {
  return Token<vorx_eventreg_t>();
}

void vorx_event_deregister(vorx_eventreg_t** registration) { *registration = nullptr; }

int vorx_sig_send(vorx_t*, const vorx_pid_t* destination, const vorx_sig_descriptor* signal,
                  const void* data, unsigned int length) {
  const bool has_payload = data != nullptr || length != 0;
  LeanHost::Current().trace.push_back(
      {signal, *destination, has_payload,
       has_payload ? std::string(static_cast<const char*>(data), length) : std::string()});
  return -1;  // never looked at
}

void vorx_print_backtrace(void) {}

void vorx_gen_fault(int, const char*, const char*, int, const char*) { std::abort(); }

int sepan_to_ifindex(sepan_port_t port, uint32_t* ifindex) {
  if (port == cfm_test::kUnmappedPort) {
    return -1;
  }
  if (port == cfm_test::kMiswrittenPort) {
    *ifindex = cfm_test::kMiswritten;
    return -1;
  }
  *ifindex = port + cfm_test::kIfindexOffset;
  return 0;
}

int sepan_to_intfname(sepan_port_t port, char* buffer, size_t size) {
  if (port == cfm_test::kUnmappedPort) {
    return -1;
  }
  std::strncpy(buffer, ("eth" + std::to_string(port)).c_str(), size);
  return 0;
}

sepan_interface_t sepan_from_ifindex(uint32_t ifindex) {
  return {ifindex - cfm_test::kIfindexOffset};
}

int zlog_level_enabled(zlog_category_t*, const int) { return 1; }

void zlog(zlog_category_t*, const char*, size_t, const char*, size_t, long, int, const char* format,
          ...) {
  std::string text(200, '\0');
  for (bool fits = false; !fits;) {
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    fits = static_cast<std::size_t>(length) < text.size();
    text.resize(static_cast<std::size_t>(length) + (fits ? 0 : 1));
  }
  LeanHost::Current().trace.push_back({nullptr, 0, false, std::move(text)});
}

}  // extern "C"
