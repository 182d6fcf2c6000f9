// SPDX-License-Identifier: Apache-2.0
#include "message_input.h"

#include <algorithm>

#include "byte_reader.h"

namespace cfm_fuzz {

MessageInput DecodeMessages(const std::uint8_t* data, std::size_t size) {
  ByteReader bytes(data, size);
  MessageInput input;
  input.state = bytes.Next();
  while (!bytes.AtEnd() && input.messages.size() < MessageInput::kMostMessages) {
    const std::size_t callback = bytes.Next() % Callbacks().size();
    const std::size_t length = std::min<std::size_t>(bytes.NextTwo(), MessageInput::kMostOctets);
    input.messages.push_back({callback, std::string(bytes.Take(length))});
  }
  return input;
}

std::string EncodeMessages(const MessageInput& input) {
  std::string bytes(1, static_cast<char>(input.state));
  for (const auto& [callback, payload] : input.messages) {
    const std::size_t length = std::min(payload.size(), MessageInput::kMostOctets);
    bytes += static_cast<char>(callback);
    bytes += static_cast<char>(length & 0xffU);
    bytes += static_cast<char>(length >> 8U);
    bytes.append(payload, 0, length);
  }
  return bytes;
}

}  // namespace cfm_fuzz
