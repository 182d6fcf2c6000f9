// SPDX-License-Identifier: Apache-2.0
#include "reports.h"

#include <chrono>

namespace cfm_mgr {
namespace {

template <class Message>
Message For(const MepKey& key) {
  Message message;
  message.set_md_name(key.ma.md_name);
  message.set_ma_name(key.ma.ma_name);
  message.set_mep_id(key.mep_id);
  return message;
}

std::uint64_t Milliseconds(engine::Time time) {
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

}  // namespace

client_server::StatusLocalMaintenanceEndpoint LocalStatus(const MepKey& key,
                                                          const engine::LocalMepStatus& status) {
  auto message = For<client_server::StatusLocalMaintenanceEndpoint>(key);
  message.set_mac_address(status.mac.data(), status.mac.size());
  message.set_intf_status(status.interface_status);
  message.set_port_state(status.port_status);
  message.set_highest_defect_priority(status.highest_defect_priority);
  message.set_block_state(status.blocked ? 1 : 0);
  message.set_shutdown_state(status.shut_down ? 1 : 0);
  message.set_rdi(status.rdi);
  message.set_defect_mac_status(status.defect_mac_status);
  message.set_defect_remote_ccm(status.defect_remote_ccm);
  message.set_defect_error_ccm(status.defect_error_ccm);
  message.set_defect_xcon_ccm(status.defect_xcon_ccm);
  message.set_defect_rdi(status.defect_rdi);
  message.set_defect_ais(status.defect_ais);
  return message;
}

client_server::StatusRemoteMaintenanceEndpoint RemoteStatus(const MepKey& key,
                                                            std::uint32_t remote_mep_id,
                                                            const engine::RemoteMepStatus& status) {
  auto message = For<client_server::StatusRemoteMaintenanceEndpoint>(key);
  message.set_remote_mep_id(remote_mep_id);
  message.set_mac_address(status.mac.data(), status.mac.size());
  message.set_sender_id(status.sender_id);
  message.set_fsm_state(status.state);
  message.set_port_state(status.port_status);
  message.set_intf_status(status.interface_status);
  message.set_rdi(status.rdi);
  message.set_last_change_uptime(Milliseconds(status.last_change));
  return message;
}

client_server::RemovedLocalMaintenanceEndpoint LocalRemoved(const MepKey& key) {
  return For<client_server::RemovedLocalMaintenanceEndpoint>(key);
}

client_server::RemovedRemoteMaintenanceEndpoint RemoteRemoved(const MepKey& key,
                                                              std::uint32_t remote_mep_id) {
  auto removed = For<client_server::RemovedRemoteMaintenanceEndpoint>(key);
  removed.set_remote_mep_id(remote_mep_id);
  return removed;
}

client_server::OpReplyAllStats Statistics(const Tree& tree, const engine::Engine& engine) {
  client_server::OpReplyAllStats statistics;
  ForEachAssociation(tree, [&](const std::string& md_name, const std::string& ma_name,
                               const Association& association) {
    for (const auto& entry : association.meps) {
      const MepKey key{{md_name, ma_name}, entry.first};
      const auto counters = engine.Counters(key).value_or(engine::LocalMepCounters{});
      auto& local = *statistics.add_local_mep_stats();
      local = For<client_server::LocalMepStats>(key);
      local.set_ccm_rx_seq_errors(counters.ccm_sequence_errors);
      local.set_ccm_tx_seq_number(counters.ccm_sequence_number);
      local.set_ccm_tx_total(counters.ccms_sent);
      for (const std::uint32_t remote_mep_id : RemotesOf(association, entry.first)) {
        auto& remote = *statistics.add_remote_mep_stats();
        remote = For<client_server::RemoteMepStats>(key);
        remote.set_remote_mep_id(remote_mep_id);
        remote.set_last_ccm_seq_number(engine.LastSequenceNumber(key, remote_mep_id).value_or(0));
      }
    }
  });
  return statistics;
}

std::vector<MepKey> Covered(const Tree& tree, const client_server::OpStatsClear& scope) {
  std::vector<MepKey> covered;
  ForEachAssociation(tree, [&](const std::string& md_name, const std::string& ma_name,
                               const Association& association) {
    if (scope.has_md_name() && scope.md_name() != md_name) return;
    if (scope.has_ma_name() && scope.ma_name() != ma_name) return;
    for (const auto& entry : association.meps) {
      if (scope.has_mep_id() && scope.mep_id() != entry.first) continue;
      covered.push_back({{md_name, ma_name}, entry.first});
    }
  });
  return covered;
}

}  // namespace cfm_mgr
