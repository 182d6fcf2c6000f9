// SPDX-License-Identifier: Apache-2.0
#include "counting_host.h"

#include <cfm/identifiers.h>
#include <sepan/sepan.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace cfm_bench {
namespace {

// zlog reads a file, so there has to be one for a moment.
zlog_category_t* SetUpZlog() {
  std::string path = "/tmp/cfm-bench-zlog-XXXXXX";
  const int file = mkstemp(path.data());
  if (file < 0) {
    std::perror("a configuration file for zlog");
    std::exit(1);
  }
  close(file);
  std::ofstream(path) << "[global]\nbuffer max = 0\n[rules]\ncfm-mgr.DEBUG \"/dev/null\"\n";
  const int failed = zlog_init(path.c_str());
  unlink(path.c_str());
  zlog_category_t* const category = failed != 0 ? nullptr : zlog_get_category("cfm-mgr");
  if (category == nullptr) {
    std::fputs("zlog cannot be set up\n", stderr);
    std::exit(1);
  }
  return category;
}

}  // namespace

CountingHost::CountingHost() : category_(SetUpZlog()) {}

CountingHost& CountingHost::Instance() {
  static CountingHost host;
  return host;
}

void CountingHost::ServerFound() {
  const vorx_pid_t pid = 77;
  found(&handle_, &pid, user);
}

// The library does not write to a payload; the interface of the middleware has it mutable.
void CountingHost::Signal(const vorx_sig_descriptor* signal, const std::string& payload) {
  const vorx_pid_t sender = 77;
  signals[signal->number](&handle_, user, &sender, const_cast<char*>(payload.data()),
                          static_cast<unsigned>(payload.size()));
}

ClientInStep::ClientInStep()
    : client_(CountingHost::Instance().handle()), user_(CountingHost::Instance().user) {
  CountingHost::Instance().ServerFound();
  CacheReply({});
}

void ClientInStep::CacheReply(const std::string& payload) {
  CountingHost::Instance().user = user_;
  CountingHost::Instance().Signal(CFM_MGR_S2C_SIG_CACHE_REPLY, payload);
}

std::vector<std::unique_ptr<ClientInStep>> NewClients(std::size_t count) {
  std::vector<std::unique_ptr<ClientInStep>> clients(count);
  for (auto& client : clients) {
    client = std::make_unique<ClientInStep>();
  }
  return clients;
}

}  // namespace cfm_bench

using cfm_bench::CountingHost;

vorx_subscription_t* vorx_proc_subscribe(vorx_t*, const char*, vorx_proc_found_cb found,
                                         vorx_proc_lost_cb, void* user) {
  CountingHost::Instance().found = found;
  CountingHost::Instance().user = user;
  return nullptr;
}

void vorx_proc_unsubscribe(vorx_subscription_t**) {}

zlog_category_t* vorx_trace_init(vorx_t*, const char*) {
  return CountingHost::Instance().category();
}

vorx_registration_t* vorx_sig_register_sized(vorx_t*, const vorx_sig_descriptor* signal,
                                             vorx_sig_cb callback, void*) {
  CountingHost::Instance().signals[signal->number] = callback;
  return nullptr;
}

void vorx_sig_deregister(vorx_registration_t**) {}

vorx_eventreg_t* vorx_event_register_sized(vorx_t*, const vorx_event_descriptor* event,
                                           vorx_event_cb callback, void*) {
  CountingHost::Instance().events[event->number & 0xffU] = callback;
  return nullptr;
}

void vorx_event_deregister(vorx_eventreg_t**) {}

int vorx_sig_send(vorx_t*, const vorx_pid_t*, const vorx_sig_descriptor*, const void*,
                  unsigned int length) {
  ++CountingHost::Instance().sent.messages;
  CountingHost::Instance().sent.bytes += length;
  return 0;
}

void vorx_print_backtrace() {}

void vorx_gen_fault(int, const char*, const char*, int, const char* text) {
  std::fputs(text, stderr);
}

int sepan_to_ifindex(sepan_port_t port, uint32_t* ifindex) {
  *ifindex = port + 100;
  return 0;
}

int sepan_to_intfname(sepan_port_t port, char* buffer, size_t size) {
  constexpr char kNames[8][8] = {"port-0", "port-1", "port-2", "port-3",
                                 "port-4", "port-5", "port-6", "port-7"};
  std::memcpy(buffer, kNames[port % 8], size < 8 ? size : 8);
  return 0;
}

sepan_interface_t sepan_from_ifindex(uint32_t ifindex) { return {ifindex - 100}; }
