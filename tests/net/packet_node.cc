// SPDX-License-Identifier: Apache-2.0
#include "packet_node.h"

#include <poll.h>

#include <algorithm>

namespace cfm_mgr::net {

using engine::Time;
using std::chrono::milliseconds;
using std::chrono::seconds;

bool RunUntil(const std::vector<Node*>& nodes, const std::function<bool()>& condition) {
  const Time end = MonotonicNow() + seconds(20);
  while (!condition()) {
    const Time now = MonotonicNow();
    if (now > end) return false;
    Time next = now + milliseconds(50);
    std::vector<pollfd> descriptors;
    for (Node* node : nodes) {
      node->network.Advance(now);
      next = std::min(next, node->network.NextDeadline().value_or(next));
      descriptors.push_back({node->network.Descriptor(), POLLIN, 0});
    }
    const auto wait = std::max(Time{}, next - MonotonicNow());
    const timespec limit = {0, static_cast<long>(wait.count())};
    ppoll(descriptors.data(), descriptors.size(), &limit, nullptr);
  }
  return true;
}

}  // namespace cfm_mgr::net
