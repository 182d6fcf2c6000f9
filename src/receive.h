/* SPDX-License-Identifier: Apache-2.0 */
// The one way from received bytes to a message.
#ifndef CFM_SRC_RECEIVE_H
#define CFM_SRC_RECEIVE_H

#include <string>

#include "core/reserve_entries.h"

namespace cfm {

/// Copies and parses a payload into an empty message. What does not parse still leaves the fields
/// read so far. A null payload is an empty one.
///
/// @return whether the bytes were one complete message
template <typename Message>
bool ParsePayload(const void* data, unsigned length, Message& message) {
  const auto bytes =
      data == nullptr ? std::string() : std::string(static_cast<const char*>(data), length);
  core::ReserveEntries(message, bytes);
  return message.ParseFromString(bytes);
}

/// The message that a payload holds, as far as it can be read.
template <typename Message>
Message Receive(const void* data, unsigned length) {
  Message message;
  ParsePayload(data, length, message);
  return message;
}

}  // namespace cfm

#endif
