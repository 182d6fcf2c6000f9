/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_MEP_TABLE_H
#define CFM_MGR_ENGINE_MEP_TABLE_H

#include <cstdint>
#include <map>
#include <memory>

#include "engine/context.h"
#include "engine/local_mep.h"
#include "engine/mep_index.h"

namespace cfm_mgr::engine {

/** An association as it was configured, and its MEPs in this bridge. */
struct AssociationEntry {
  DomainSettings domain;
  Association association;
  std::map<std::uint32_t, std::unique_ptr<LocalMep>> meps;
};

/** The ports, associations and MEPs of an engine. */
class MepTable {
 public:
  explicit MepTable(Context& context) : context_(context) {}

  /** @name Configuration, as Engine has it
   * @{ */
  void SetPort(Time now, PortId port, const PortInfo& info);
  void RemovePort(Time now, PortId port);
  void SetAssociation(Time now, const MaKey& key, const DomainSettings& domain,
                      const Association& association);
  void RemoveAssociation(Time now, const MaKey& key);
  /** @} */

  const std::map<PortId, PortInfo>& ports() const { return ports_; }
  /** Null when there is no such port. */
  const PortInfo* FindPort(PortId port) const;
  const std::map<MaKey, AssociationEntry>& associations() const { return associations_; }
  /** Null when there is no such MEP. */
  LocalMep* FindMep(const MepKey& key) const;
  const MepIndex& index() const { return index_; }

 private:
  void UpdatePort(Time now, PortId port);
  void SetMep(Time now, AssociationEntry& entry, MepSettings settings);
  void RemoveMep(Time now, LocalMep& mep);
  /** Changes a MEP by @p change and puts it into the index if it runs afterwards. */
  template <class Change>
  void Reindex(LocalMep& mep, Change&& change);

  Context& context_;
  std::map<PortId, PortInfo> ports_;
  std::map<MaKey, AssociationEntry> associations_;
  std::map<PortId, std::map<MepKey, LocalMep*>> meps_by_port_;
  MepIndex index_;
};

}  // namespace cfm_mgr::engine

#endif
