// SPDX-License-Identifier: Apache-2.0
/* The least that a host process can be, in plain C: it knows a server and counts what is sent. */
#include <sepan/sepan.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <vorx/vorx.h>

#include "host.h"

struct vorx_subscription {
  int unused;
};
static struct vorx_subscription the_subscription;
static vorx_proc_found_cb found_callback;
static vorx_sig_cb reply_callback;
static void* client;
static unsigned sent[256];

void host_find_server(vorx_t* handle) {
  const vorx_pid_t pid = 1;
  found_callback(handle, &pid, client);
  reply_callback(handle, client, &pid, NULL, 0);
}

unsigned host_sent(unsigned char number) { return sent[number]; }

vorx_subscription_t* vorx_proc_subscribe(vorx_t* handle, const char* process_name,
                                         vorx_proc_found_cb found, vorx_proc_lost_cb lost,
                                         void* user) {
  (void)handle, (void)process_name, (void)lost;
  found_callback = found;
  client = user;
  return &the_subscription;
}

void vorx_proc_unsubscribe(vorx_subscription_t** subscription) { *subscription = NULL; }

zlog_category_t* vorx_trace_init(vorx_t* handle, const char* name) {
  (void)handle;
  return zlog_init_from_string("[formats]\nplain = \"%m%n\"\n[rules]\n*.* >stdout; plain\n") == 0
             ? zlog_get_category(name)
             : NULL;
}

vorx_registration_t* vorx_sig_register_sized(vorx_t* handle, const vorx_sig_descriptor* signal,
                                             vorx_sig_cb callback, void* user) {
  (void)handle, (void)user;
  if (signal->number == 1) {
    reply_callback = callback;
  }
  return NULL;
}

void vorx_sig_deregister(vorx_registration_t** registration) { *registration = NULL; }

vorx_eventreg_t* vorx_event_register_sized(vorx_t* handle, const vorx_event_descriptor* event,
                                           vorx_event_cb callback, void* user) {
  (void)handle, (void)event, (void)callback, (void)user;
  return NULL;
}

void vorx_event_deregister(vorx_eventreg_t** registration) { *registration = NULL; }

int vorx_sig_send(vorx_t* handle, const vorx_pid_t* destination, const vorx_sig_descriptor* signal,
                  const void* data, unsigned int length) {
  (void)handle, (void)destination, (void)data, (void)length;
  ++sent[signal->number];
  return 0;
}

void vorx_print_backtrace(void) {}

void vorx_gen_fault(int kind, const char* function, const char* file, int line, const char* text) {
  fprintf(stderr, "fault %d in %s, %s:%d: %s\n", kind, function, file, line, text);
}

int sepan_to_ifindex(sepan_port_t port, uint32_t* ifindex) {
  *ifindex = port;
  return 0;
}

int sepan_to_intfname(sepan_port_t port, char* buffer, size_t size) {
  snprintf(buffer, size, "port%u", (unsigned)port);
  return 0;
}

sepan_interface_t sepan_from_ifindex(uint32_t ifindex) {
  const sepan_interface_t interface = {ifindex};
  return interface;
}
