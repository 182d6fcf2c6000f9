/* SPDX-License-Identifier: Apache-2.0 */
// Status reports as the records that handlers get.
#ifndef CFM_SRC_CORE_STATUS_RECORDS_H
#define CFM_SRC_CORE_STATUS_RECORDS_H

#include <cfm/client_server.pb.h>
#include <cfm/status.h>

namespace cfm::core {

local_mep_status LocalMepStatus(const client_server::StatusLocalMaintenanceEndpoint& message);
remote_mep_status RemoteMepStatus(const client_server::StatusRemoteMaintenanceEndpoint& message);

}  // namespace cfm::core

#endif
