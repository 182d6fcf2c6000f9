/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_MGR_QUIET_NETWORK_H
#define CFM_TESTS_MGR_QUIET_NETWORK_H

#include <memory>
#include <optional>

#include "net/network.h"

namespace cfm_mgr_test {

/** Ports without links: what is sent is lost, and nothing comes in. */
class QuietNetwork : public cfm_mgr::net::Network, private cfm_mgr::engine::Surroundings {
 public:
  explicit QuietNetwork(cfm_mgr::engine::Notifications& notifications)
      : engine_(*this, notifications, 1) {}

  cfm_mgr::engine::Engine& engine() override { return engine_; }
  void Advance(cfm_mgr::engine::Time now) override { engine_.Advance(now); }
  std::optional<cfm_mgr::engine::Time> NextDeadline() const override {
    return engine_.NextDeadline();
  }
  int Descriptor() const override { return -1; }

 private:
  void Transmit(cfm_mgr::engine::PortId, cfm_mgr::engine::Side,
                const cfm_mgr::engine::Frame&) override {}
  cfm_mgr::engine::EgressPorts FindEgress(cfm_mgr::engine::PortId, std::uint16_t,
                                          const cfm_mgr::engine::Mac&) override {
    return {};
  }

  cfm_mgr::engine::Engine engine_;
};

/** For servers whose network does not matter. */
inline std::unique_ptr<cfm_mgr::net::Network> MakeQuietNetwork(
    cfm_mgr::engine::Notifications& notifications) {
  return std::make_unique<QuietNetwork>(notifications);
}

}  // namespace cfm_mgr_test

#endif
