/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The server's store: what each configuration request does to the tree.
 *
 * - A create of an entity that is there already replaces its own settings and keeps what lies
 *   beneath it, a probe's sessions too: a client may send its creates again when it meets the
 *   server again, and a probe has no other way to be changed.
 * - A delete removes what lies beneath the entity with it.
 * - An update, a delete, or a create beneath an entity that is not there is refused.
 * - A MEP identifier need not be in its association's MEP list. Clients create a new endpoint
 *   before they update the list of its association, and delete it before they shorten the list;
 *   refusing the one or the other would lose it. The outcome says when it is missing.
 * - An endpoint's interface and a probe's endpoints need not exist: they may appear later.
 *
 * A request that is refused changes nothing. Each takes time proportional to the logarithm of the
 * configuration's size and to what it carries or removes.
 */
#ifndef CFM_MGR_STORE_H
#define CFM_MGR_STORE_H

#include <cfm/client_server.pb.h>

#include <optional>
#include <string>
#include <vector>

#include "model.h"

namespace cfm_mgr {

/** What became of one request. */
struct Outcome {
  std::string subject;  ///< The entity that the request names.
  std::string text;     ///< What was done, or why it was refused, in one line.
  bool refused = false;
  bool changed = false;  ///< The tree is not what it was.

  std::vector<MepKey> removed;      ///< Endpoints that went away, with their parent or alone.
  std::optional<MepKey> reset_mep;  ///< The endpoint that is new or has new settings.
  std::optional<MaKey> reset_ma;    ///< The association that is new, has new settings or went away.
  std::optional<std::string> reset_md;       ///< The same of a domain.
  std::optional<std::uint32_t> reset_probe;  ///< The same of a probe or one of its sessions.
};

/** The configuration, and the one way to change it. */
class Store {
 public:
  const Tree& tree() const { return tree_; }

  Outcome Apply(const client_server::OpCreateMaintenanceDomain& request);
  Outcome Apply(const client_server::OpUpdateMaintenanceDomain& request);
  Outcome Apply(const client_server::OpDeleteMaintenanceDomain& request);
  Outcome Apply(const client_server::OpCreateMaintenanceAssociation& request);
  Outcome Apply(const client_server::OpUpdateMaintenanceAssociation& request);
  Outcome Apply(const client_server::OpDeleteMaintenanceAssociation& request);
  Outcome Apply(const client_server::OpCreateMaintenanceEndpoint& request);
  Outcome Apply(const client_server::OpUpdateMaintenanceEndpoint& request);
  Outcome Apply(const client_server::OpDeleteMaintenanceEndpoint& request);
  Outcome Apply(const client_server::OpCreateDelayMeasurementProbe& request);
  Outcome Apply(const client_server::OpDeleteDelayMeasurementProbe& request);
  Outcome Apply(const client_server::OpCreateDelayMeasurementSession& request);
  Outcome Apply(const client_server::OpDeleteDelayMeasurementSession& request);

  /**
   * Applies every entry of a whole configuration.
   *
   * @return one line for each entry that was refused; the others are in the tree
   */
  std::vector<std::string> Load(const client_server::OpCacheSync& cache);

 private:
  Tree tree_;
};

}  // namespace cfm_mgr

#endif
