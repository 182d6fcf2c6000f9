// The one way from received bytes to a message.
#ifndef CFM_SRC_RECEIVE_H
#define CFM_SRC_RECEIVE_H

#include <string>

namespace cfm {

template <typename Message>
struct Received {
  Message message;
  bool whole;  // the bytes were one complete message
};

/// Copies and parses a payload. What does not parse still leaves the fields read so far. A null
/// payload is an empty one.
template <typename Message>
Received<Message> Receive(const void* data, unsigned length) {
  Received<Message> received{};
  std::string bytes;
  if (data != nullptr) {
    bytes.assign(static_cast<const char*>(data), length);
  }
  received.whole = received.message.ParseFromString(bytes);
  return received;
}

}  // namespace cfm

#endif
