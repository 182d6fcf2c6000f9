/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Between the messages of the wire and the server's own records.
 *
 * An absent field reads as zero, false or empty. Nothing is checked here.
 */
#ifndef CFM_MGR_CONVERT_H
#define CFM_MGR_CONVERT_H

#include <cfm/client_server.pb.h>

#include "model.h"

namespace cfm_mgr {

/** @name Settings of a create request
 * @{ */
DomainSettings FromMessage(const client_server::OpCreateMaintenanceDomain& message);
AssociationSettings FromMessage(const client_server::OpCreateMaintenanceAssociation& message);
Mep FromMessage(const client_server::OpCreateMaintenanceEndpoint& message);
ProbeSettings FromMessage(const client_server::OpCreateDelayMeasurementProbe& message);
Session FromMessage(const client_server::OpCreateDelayMeasurementSession& message);
/** @} */

/** @name Settings of an update request
 * Those that the message does not carry stay as they are.
 * @{ */
void Update(DomainSettings& domain, const client_server::OpUpdateMaintenanceDomain& message);
void Update(AssociationSettings& association,
            const client_server::OpUpdateMaintenanceAssociation& message);
void Update(Mep& mep, const client_server::OpUpdateMaintenanceEndpoint& message);
/** @} */

/** The whole tree, each list in ascending order. */
client_server::OpCacheSync ToCacheSync(const Tree& tree);

}  // namespace cfm_mgr

#endif
