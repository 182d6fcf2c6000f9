/* SPDX-License-Identifier: Apache-2.0 */
// A host process for the library that is quick to set up: it digests what the library logs and
// sends, and hands over what the server would.
#ifndef CFM_FUZZ_HOST_H
#define CFM_FUZZ_HOST_H

#include <vorx/vorx.h>

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "callbacks.h"
#include "digest.h"

struct vorx {};

namespace cfm_fuzz {

class Host {
 public:
  Host();
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  static Host& Current();

  vorx_t* handle() { return &handle_; }

  void ServerFound(vorx_pid_t pid);
  void ServerLost();

  /// Hands over a payload in a block of exactly its size; an empty one as a null pointer. Whether
  /// the process goes on: false when the library ended it.
  bool Deliver(const Callback& callback, std::string_view payload);

  Digest digest;
  std::function<void(const vorx_sig_descriptor* signal, vorx_pid_t destination,
                     const std::string& payload)>
      on_send;

  // For the C functions that the library calls.
  struct Registration {
    const void* descriptor = nullptr;
    vorx_sig_cb signal = nullptr;
    vorx_event_cb event = nullptr;
    void* user = nullptr;
  };
  struct Subscription {
    vorx_proc_found_cb found = nullptr;
    vorx_proc_lost_cb lost = nullptr;
    void* user = nullptr;
  };
  Registration* Register(const Registration& registration);
  static void Deregister(Registration* registration);
  Subscription subscription;

 private:
  vorx handle_;
  std::array<Registration, 19> registrations_;
};

}  // namespace cfm_fuzz

#endif
