/* SPDX-License-Identifier: Apache-2.0 */
// Payloads handed to a client, as the targets for receiving do it.
#ifndef CFM_FUZZ_DELIVERIES_H
#define CFM_FUZZ_DELIVERIES_H

#include <string>
#include <vector>

#include "callbacks.h"

namespace cfm_fuzz {

struct Delivery {
  const Callback* callback = nullptr;
  std::string payload;
};

/// Who receives.
struct Receiver {
  bool in_step = false;  // with a server that holds nothing, before the first payload
  bool has_handlers = false;
};

/// Hands the payloads to a client that has a configuration, in turn. Requires that
///   - only a linktrace event that is not whole ends the process, and every one of those does;
///   - all others do the same as what protobuf could read of them, sent as a whole message;
///   - all but cache replies do the same when they come a second time;
///   - empty ones do the same after them as they do first.
void CheckDeliveries(Receiver receiver, const std::vector<Delivery>& deliveries);

}  // namespace cfm_fuzz

#endif
