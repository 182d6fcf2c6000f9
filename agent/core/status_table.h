/* SPDX-License-Identifier: Apache-2.0 */
// What the server has reported of endpoints.
#ifndef CFM_AGENT_CORE_STATUS_TABLE_H
#define CFM_AGENT_CORE_STATUS_TABLE_H

#include <cfm/status.h>

#include <cstdint>
#include <map>
#include <set>

#include "core/mep.h"

namespace cfm_agent {

enum class ServerState : std::uint8_t {
  Absent,
  Found,   // asked what it holds
  InStep,  // has said what it holds, and was sent the difference
};

class StatusTable {
 public:
  // Each tells whether it is news.
  bool Local(const MepKey& mep, const cfm::local_mep_status& status);
  bool Remote(const MepKey& mep, std::uint16_t remote, const cfm::remote_mep_status& status);
  void LocalRemoved(const MepKey& mep);
  void RemoteRemoved(const MepKey& mep, std::uint16_t remote);
  // A server that comes back reports everything anew.
  void Forget();

  struct Entry {
    bool removed = false;   // by the server, and not reported since
    bool reported = false;  // `status` holds
    cfm::local_mep_status status;
    std::map<std::uint16_t, cfm::remote_mep_status> remotes;
    std::set<std::uint16_t> removed_remotes;  // by the server, and not reported since
  };

  const std::map<MepKey, Entry>& entries() const { return entries_; }
  const Entry* Find(const MepKey& mep) const;

 private:
  std::map<MepKey, Entry> entries_;
};

}  // namespace cfm_agent

#endif
