// SPDX-License-Identifier: Apache-2.0
// Any bytes for any of the callbacks. The first byte of an input chooses the callback and the state
// of the client, the rest is the payload.
#include "byte_reader.h"
#include "deliveries.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cfm_fuzz::ByteReader input(data, size);
  const std::size_t callbacks = cfm_fuzz::Callbacks().size();
  const std::size_t choice = input.Next();
  const std::size_t state = choice / callbacks;
  const cfm_fuzz::Receiver receiver{state % 2 == 0, state % 4 < 2};
  cfm_fuzz::CheckDeliveries(
      receiver, {{&cfm_fuzz::Callbacks()[choice % callbacks], std::string(input.Take(size))}});
  return 0;
}
