// SPDX-License-Identifier: Apache-2.0
// Messages that differ in what they say rather than in single bytes: up to eight in turn, changed
// by a mutator that knows the schema.
#include <algorithm>

#include "deliveries.h"
#include "message_input.h"
#include "message_mutator.h"

using cfm_fuzz::DecodeMessages;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const cfm_fuzz::MessageInput input = DecodeMessages(data, size);
  std::vector<cfm_fuzz::Delivery> deliveries;
  for (const auto& [callback, payload] : input.messages) {
    deliveries.push_back({&cfm_fuzz::Callbacks()[callback], payload});
  }
  cfm_fuzz::CheckDeliveries({(input.state & 1U) == 0, (input.state & 2U) == 0}, deliveries);
  return 0;
}

namespace {

// What does not fit is cut off.
std::size_t Write(const cfm_fuzz::MessageInput& input, std::uint8_t* out, std::size_t max_size) {
  const std::string bytes = cfm_fuzz::EncodeMessages(input);
  const std::size_t size = std::min(bytes.size(), max_size);
  std::copy_n(bytes.begin(), size, out);
  return size;
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t max_size, unsigned seed) {
  cfm_fuzz::MessageInput input = DecodeMessages(data, size);
  cfm_fuzz::MessageMutator(seed).Change(input);
  return Write(input, data, max_size);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data1, std::size_t size1,
                                                 const std::uint8_t* data2, std::size_t size2,
                                                 std::uint8_t* out, std::size_t max_out_size,
                                                 unsigned seed) {
  cfm_fuzz::MessageInput input = DecodeMessages(data1, size1);
  cfm_fuzz::MessageMutator(seed).Cross(input, DecodeMessages(data2, size2));
  return Write(input, out, max_out_size);
}
