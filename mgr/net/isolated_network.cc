// SPDX-License-Identifier: Apache-2.0
#include "net/isolated_network.h"

namespace cfm_mgr::net {

IsolatedNetwork::IsolatedNetwork(engine::Notifications& notifications, std::uint64_t seed,
                                 engine::Time now)
    : engine_(*this, notifications, seed) {
  for (const auto& [index, link] : monitor_.links()) {
    engine_.SetPort(now, index, ToPortInfo(link));
  }
}

void IsolatedNetwork::Advance(engine::Time now) {
  for (const LinkUpdate& update : monitor_.Update()) {
    if (update.link) {
      engine_.SetPort(now, update.index, ToPortInfo(*update.link));
    } else {
      engine_.RemovePort(now, update.index);
    }
  }
  engine_.Advance(now);
}

}  // namespace cfm_mgr::net
