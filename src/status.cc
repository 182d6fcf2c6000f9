// SPDX-License-Identifier: Apache-2.0
// Status and removal of endpoints.
//
// All four callbacks alike: nothing at all without a status handler; what does not parse is used as
// far as it was read; the record in the log comes before the call.
#include <cfm/client_server.pb.h>

#include "client_impl.h"
#include "core/numbers.h"
#include "core/status_records.h"
#include "log_points.h"
#include "receive.h"

namespace cfm {

using core::Low16;

void ClientImpl::HandleStatusLocalMep(vorx_t* /*handle*/, void* user, void* data, unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  if (self.status_handler == nullptr) {
    return;
  }
  const auto message = Receive<client_server::StatusLocalMaintenanceEndpoint>(data, length);
  const local_mep_status status = core::LocalMepStatus(message);
  const auto& mac = status.mac.octets;
  Log<log_point::kStatusLocalMep>(
      self.log_category, message.md_name().c_str(), message.ma_name().c_str(), message.mep_id(),
      mac[0], mac[1], mac[2], mac[3], mac[4], mac[5], message.rdi(), message.port_state(),
      message.intf_status(), message.block_state(), message.shutdown_state(),
      message.highest_defect_priority(), message.defect_mac_status(), message.defect_remote_ccm(),
      message.defect_error_ccm(), message.defect_xcon_ccm(), message.defect_rdi(),
      message.defect_ais());
  self.status_handler->OnStatusLocalMep(message.md_name(), message.ma_name(),
                                        Low16(message.mep_id()), status);
}

void ClientImpl::HandleStatusRemoteMep(vorx_t* /*handle*/, void* user, void* data,
                                       unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  if (self.status_handler == nullptr) {
    return;
  }
  const auto message = Receive<client_server::StatusRemoteMaintenanceEndpoint>(data, length);
  const remote_mep_status status = core::RemoteMepStatus(message);
  const auto& mac = status.mac.octets;
  Log<log_point::kStatusRemoteMep>(
      self.log_category, message.md_name().c_str(), message.ma_name().c_str(), message.mep_id(),
      message.remote_mep_id(), mac[0], mac[1], mac[2], mac[3], mac[4], mac[5], message.fsm_state(),
      message.rdi(), message.port_state(), message.intf_status(), message.sender_id().c_str(),
      static_cast<unsigned long long>(message.last_change_uptime()));
  self.status_handler->OnStatusRemoteMep(message.md_name(), message.ma_name(),
                                         Low16(message.mep_id()), Low16(message.remote_mep_id()),
                                         status);
}

void ClientImpl::HandleRemovedLocalMep(vorx_t* /*handle*/, void* user, void* data,
                                       unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  if (self.status_handler == nullptr) {
    return;
  }
  const auto message = Receive<client_server::RemovedLocalMaintenanceEndpoint>(data, length);
  Log<log_point::kRemovedLocalMep>(self.log_category, message.md_name().c_str(),
                                   message.ma_name().c_str(), message.mep_id());
  self.status_handler->OnRemovedLocalMep(message.md_name(), message.ma_name(),
                                         Low16(message.mep_id()));
}

void ClientImpl::HandleRemovedRemoteMep(vorx_t* /*handle*/, void* user, void* data,
                                        unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  if (self.status_handler == nullptr) {
    return;
  }
  const auto message = Receive<client_server::RemovedRemoteMaintenanceEndpoint>(data, length);
  Log<log_point::kRemovedRemoteMep>(self.log_category, message.md_name().c_str(),
                                    message.ma_name().c_str(), message.mep_id(),
                                    message.remote_mep_id());
  self.status_handler->OnRemovedRemoteMep(message.md_name(), message.ma_name(),
                                          Low16(message.mep_id()), Low16(message.remote_mep_id()));
}

}  // namespace cfm
