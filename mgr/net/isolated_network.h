/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_ISOLATED_NETWORK_H
#define CFM_MGR_NET_ISOLATED_NETWORK_H

#include "net/network.h"
#include "net/packet/link_monitor.h"

namespace cfm_mgr::net {

/**
 * The interfaces of this machine as ports, with their true addresses and states, but no frame
 * leaves or enters: for a server that only keeps a configuration. It needs no privilege.
 */
class IsolatedNetwork : public Network, private engine::Surroundings {
 public:
  /**
   * @param notifications Of the engine; outlives the network.
   * @param now The present.
   * @throws std::system_error when the kernel does not tell its interfaces
   */
  IsolatedNetwork(engine::Notifications& notifications, std::uint64_t seed, engine::Time now);

  engine::Engine& engine() override { return engine_; }
  void Advance(engine::Time now) override;
  std::optional<engine::Time> NextDeadline() const override { return engine_.NextDeadline(); }
  int Descriptor() const override { return monitor_.descriptor(); }

 private:
  void Transmit(engine::PortId, engine::Side, const engine::Frame&) override {}
  engine::EgressPorts FindEgress(engine::PortId, std::uint16_t, const engine::Mac&) override {
    return {};
  }

  LinkMonitor monitor_;
  engine::Engine engine_;
};

}  // namespace cfm_mgr::net

#endif
