/* SPDX-License-Identifier: Apache-2.0 */
// The nineteen ways into the library from the server's side.
#ifndef CFM_FUZZ_CALLBACKS_H
#define CFM_FUZZ_CALLBACKS_H

#include <vorx/vorx.h>

#include <array>
#include <string>

namespace cfm_fuzz {

/// What protobuf makes of a payload.
struct Reread {
  bool whole = false;        // it is one complete message
  std::string bytes;         // what was read of it, as a message
  bool bytes_whole = false;  // not when what was read ends inside of a field that nobody knows
};

struct Callback {
  const vorx_sig_descriptor* signal = nullptr;  // one of the two is set
  const vorx_event_descriptor* event = nullptr;
  const char* message = nullptr;  // name of the message it carries
  bool has_to_be_whole = false;   // the process ends over a payload that is not
  Reread (*reread)(const std::string& payload) = nullptr;
};

/// In an order that corpora rely on. The first is the cache reply.
const std::array<Callback, 19>& Callbacks();

}  // namespace cfm_fuzz

#endif
