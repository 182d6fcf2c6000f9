// SPDX-License-Identifier: Apache-2.0
#include "core/status_records.h"

#include "core/mac.h"
#include "core/numbers.h"

namespace cfm::core {

local_mep_status LocalMepStatus(const client_server::StatusLocalMaintenanceEndpoint& message) {
  local_mep_status status;
  status.mac = MacFromBytes(message.mac_address());
  status.rdi = message.rdi();
  status.intf_status = Low8(message.intf_status());
  status.port_state = message.port_state();
  status.block_state = message.block_state();
  status.shutdown_state = message.shutdown_state();
  status.highest_defect_priority = message.highest_defect_priority();
  status.defect_rdi = message.defect_rdi();
  status.defect_mac_status = message.defect_mac_status();
  status.defect_remote_ccm = message.defect_remote_ccm();
  status.defect_error_ccm = message.defect_error_ccm();
  status.defect_xcon_ccm = message.defect_xcon_ccm();
  status.defect_ais = message.defect_ais();
  return status;
}

remote_mep_status RemoteMepStatus(const client_server::StatusRemoteMaintenanceEndpoint& message) {
  remote_mep_status status;
  status.fsm_state = message.fsm_state();
  status.last_change_uptime = message.last_change_uptime();
  status.mac = MacFromBytes(message.mac_address());
  status.rdi = message.rdi();
  status.port_state = message.port_state();
  status.intf_status = Low8(message.intf_status());
  status.sender_id = message.sender_id();
  return status;
}

}  // namespace cfm::core
