/**
 * @file
 * What the server reports about endpoints, as messages.
 *
 * The remote MEPs of a local MEP are the identifiers of its association's MEP list that are not
 * local MEPs of the association. The server sends no CCMs yet and receives none: counters are
 * zero, no defect is present, and a remote MEP has no address and is not known to work.
 */
#ifndef CFM_MGR_REPORTS_H
#define CFM_MGR_REPORTS_H

#include <cfm/client_server.pb.h>

#include <cstdint>
#include <vector>

#include "environment.h"
#include "model.h"

namespace cfm_mgr {

/** The remote MEPs of each local MEP of an association, ascending. */
std::vector<std::uint32_t> RemotesOf(const Association& association);

/** Status of a local MEP: its interface's address and state; an absent one's address is zero. */
client_server::StatusLocalMaintenanceEndpoint LocalStatus(const MepKey& key,
                                                          const Interface& interface);

/** Status of a remote MEP: idle while the local MEP is not active, else start. */
client_server::StatusRemoteMaintenanceEndpoint RemoteStatus(const MepKey& key, const Mep& mep,
                                                            std::uint32_t remote_mep_id);

client_server::RemovedLocalMaintenanceEndpoint LocalRemoved(const MepKey& key);

client_server::RemovedRemoteMaintenanceEndpoint RemoteRemoved(const MepKey& key,
                                                              std::uint32_t remote_mep_id);

/** One entry for each local MEP, and one for each of its remote MEPs. */
client_server::OpReplyAllStats Statistics(const Tree& tree);

/** How many local MEPs a clear request covers; an absent field does not restrict it. */
std::size_t CountCovered(const Tree& tree, const client_server::OpStatsClear& scope);

}  // namespace cfm_mgr

#endif
