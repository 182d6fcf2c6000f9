/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * What the server reports about endpoints, as messages.
 */
#ifndef CFM_MGR_REPORTS_H
#define CFM_MGR_REPORTS_H

#include <cfm/client_server.pb.h>

#include <cstdint>
#include <vector>

#include "engine/engine.h"
#include "model.h"

namespace cfm_mgr {

/** Status of a local MEP, codes as in the IEEE 802.1ag MIB; a blocked or shut down port is 1. */
client_server::StatusLocalMaintenanceEndpoint LocalStatus(const MepKey& key,
                                                          const engine::LocalMepStatus& status);

/** Status of a remote MEP. The time of its last change is in milliseconds of uptime. */
client_server::StatusRemoteMaintenanceEndpoint RemoteStatus(const MepKey& key,
                                                            std::uint32_t remote_mep_id,
                                                            const engine::RemoteMepStatus& status);

client_server::RemovedLocalMaintenanceEndpoint LocalRemoved(const MepKey& key);

client_server::RemovedRemoteMaintenanceEndpoint RemoteRemoved(const MepKey& key,
                                                              std::uint32_t remote_mep_id);

/** One entry for each local MEP, and one for each of its remote MEPs. */
client_server::OpReplyAllStats Statistics(const Tree& tree, const engine::Engine& engine);

/** The local MEPs that a clear request covers; an absent field does not restrict it. */
std::vector<MepKey> Covered(const Tree& tree, const client_server::OpStatsClear& scope);

}  // namespace cfm_mgr

#endif
