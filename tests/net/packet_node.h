/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_NET_PACKET_NODE_H
#define CFM_TESTS_NET_PACKET_NODE_H

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "net/packet/packet_network.h"
#include "recording_notifications.h"
#include "sample_network.h"
#include "wire_fixture.h"

namespace cfm_mgr::net {

constexpr std::int32_t kHundredMilliseconds = 3;

/** A server's share of the work: one network and what its engine tells. */
struct Node {
  explicit Node(const std::set<std::string>& interfaces)
      : network({interfaces, [this](const std::string& line) { log.push_back(line); }},
                notifications, 1) {}

  void AddMep(std::uint32_t mep_id, const std::string& interface, std::int32_t direction = kDown,
              std::int32_t interval = kHundredMilliseconds) {
    Association association = SampleAssociation(mep_id, IndexOf(interface), direction);
    association.settings.ccm_interval = interval;
    const engine::Time now = MonotonicNow();
    network.Advance(now);
    network.engine().SetAssociation(now, SampleMa(), SampleDomain(), association);
  }

  std::uint32_t StateOf(std::uint32_t local, std::uint32_t remote) {
    const auto status = network.engine().RemoteStatus(SampleMep(local), remote);
    return status ? status->state : 0;
  }

  engine::LocalMepStatus StatusOf(std::uint32_t local) {
    return network.engine().LocalStatus(SampleMep(local)).value_or(engine::LocalMepStatus{});
  }

  std::vector<std::string> log;
  RecordingNotifications notifications;
  PacketNetwork network;
};

/** Runs nodes as servers do until a condition holds; false when it does not within some seconds. */
bool RunUntil(const std::vector<Node*>& nodes, const std::function<bool()>& condition);

}  // namespace cfm_mgr::net

#endif
