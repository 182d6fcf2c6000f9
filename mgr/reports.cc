#include "reports.h"

#include <string>

namespace cfm_mgr {
namespace {

// Codes of the interface status, of the port status and of the remote MEP state machine.
constexpr std::uint32_t kInterfaceUp = 1;
constexpr std::uint32_t kInterfaceDown = 2;
constexpr std::uint32_t kInterfaceNotPresent = 6;
constexpr std::uint32_t kPortBlocked = 1;
constexpr std::uint32_t kPortUp = 2;
constexpr std::uint32_t kRemoteIdle = 1;
constexpr std::uint32_t kRemoteStart = 2;

constexpr std::size_t kMacSize = 6;

template <class Message>
Message For(const MepKey& key) {
  Message message;
  message.set_md_name(key.ma.md_name);
  message.set_ma_name(key.ma.ma_name);
  message.set_mep_id(key.mep_id);
  return message;
}

std::uint32_t InterfaceStatus(const Interface& interface) {
  if (!interface.present) return kInterfaceNotPresent;
  return interface.up ? kInterfaceUp : kInterfaceDown;
}

}  // namespace

std::vector<std::uint32_t> RemotesOf(const Association& association) {
  std::vector<std::uint32_t> remotes;
  for (const std::uint32_t mep_id : association.settings.mep_ids) {
    if (association.meps.count(mep_id) == 0) remotes.push_back(mep_id);
  }
  return remotes;
}

client_server::StatusLocalMaintenanceEndpoint LocalStatus(const MepKey& key,
                                                          const Interface& interface) {
  auto status = For<client_server::StatusLocalMaintenanceEndpoint>(key);
  status.set_mac_address(interface.mac.data(), interface.mac.size());
  status.set_intf_status(InterfaceStatus(interface));
  status.set_port_state(interface.up ? kPortUp : kPortBlocked);
  status.set_highest_defect_priority(0);
  status.set_block_state(0);
  status.set_shutdown_state(0);
  status.set_rdi(false);
  status.set_defect_mac_status(false);
  status.set_defect_remote_ccm(false);
  status.set_defect_error_ccm(false);
  status.set_defect_xcon_ccm(false);
  status.set_defect_rdi(false);
  status.set_defect_ais(false);
  return status;
}

client_server::StatusRemoteMaintenanceEndpoint RemoteStatus(const MepKey& key, const Mep& mep,
                                                            std::uint32_t remote_mep_id) {
  auto status = For<client_server::StatusRemoteMaintenanceEndpoint>(key);
  status.set_remote_mep_id(remote_mep_id);
  status.set_mac_address(std::string(kMacSize, '\0'));
  status.set_sender_id("");
  status.set_fsm_state(mep.admin_state ? kRemoteStart : kRemoteIdle);
  status.set_port_state(0);
  status.set_intf_status(0);
  status.set_rdi(false);
  status.set_last_change_uptime(0);
  return status;
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

client_server::OpReplyAllStats Statistics(const Tree& tree) {
  client_server::OpReplyAllStats statistics;
  ForEachAssociation(tree, [&statistics](const std::string& md_name, const std::string& ma_name,
                                         const Association& association) {
    const std::vector<std::uint32_t> remotes = RemotesOf(association);
    for (const auto& entry : association.meps) {
      const MepKey key{{md_name, ma_name}, entry.first};
      auto& local = *statistics.add_local_mep_stats();
      local = For<client_server::LocalMepStats>(key);
      local.set_ccm_rx_seq_errors(0);
      local.set_ccm_tx_seq_number(0);
      local.set_ccm_tx_total(0);
      for (const std::uint32_t remote_mep_id : remotes) {
        auto& remote = *statistics.add_remote_mep_stats();
        remote = For<client_server::RemoteMepStats>(key);
        remote.set_remote_mep_id(remote_mep_id);
        remote.set_last_ccm_seq_number(0);
      }
    }
  });
  return statistics;
}

std::size_t CountCovered(const Tree& tree, const client_server::OpStatsClear& scope) {
  std::size_t covered = 0;
  ForEachAssociation(tree, [&](const std::string& md_name, const std::string& ma_name,
                               const Association& association) {
    if (scope.has_md_name() && scope.md_name() != md_name) return;
    if (scope.has_ma_name() && scope.ma_name() != ma_name) return;
    covered +=
        scope.has_mep_id() ? association.meps.count(scope.mep_id()) : association.meps.size();
  });
  return covered;
}

}  // namespace cfm_mgr
