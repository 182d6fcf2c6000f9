/* SPDX-License-Identifier: Apache-2.0 */
// How an input of the target receive_messages is laid out: a byte for the state of the client, then
// for each message the number of its callback, the length of its payload in two bytes, low byte
// first, and the payload.
#ifndef CFM_FUZZ_MESSAGE_INPUT_H
#define CFM_FUZZ_MESSAGE_INPUT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "callbacks.h"

namespace cfm_fuzz {

struct MessageInput {
  struct Message {
    std::size_t callback = 0;  // index of Callbacks()
    std::string payload;
  };

  static constexpr std::size_t kMostMessages = 8;
  static constexpr std::size_t kMostOctets = 4096;  // of one payload

  std::uint8_t state = 0;
  std::vector<Message> messages;
};

/// Any bytes are an input; what goes beyond the bounds is left out.
MessageInput DecodeMessages(const std::uint8_t* data, std::size_t size);
std::string EncodeMessages(const MessageInput& input);

}  // namespace cfm_fuzz

#endif
