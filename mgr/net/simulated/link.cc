// SPDX-License-Identifier: Apache-2.0
#include "net/simulated/link.h"

#include <algorithm>

namespace cfm_mgr::net {

std::optional<engine::Time> Link::Carry(engine::Time now, std::size_t from_end, Random& random) {
  if (!up_ || random.Happens(quality_.loss)) return std::nullopt;
  const engine::Time arrival = now + quality_.delay + random.UpTo(quality_.jitter);
  // Only frames that are held back can be overtaken.
  engine::Time& last = last_arrivals_[from_end];
  last = std::max(last, arrival);
  return random.Happens(quality_.reorder) ? last + quality_.reorder_by : last;
}

void Link::SetUp(bool up) {
  if (up_ && !up) ++cuts_;
  up_ = up;
}

}  // namespace cfm_mgr::net
