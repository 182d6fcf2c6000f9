// SPDX-License-Identifier: Apache-2.0
#include "core/show.h"

#include <utility>

namespace cfm_agent {
namespace {

constexpr std::uint32_t kRemoteOk = 4;

struct Context {
  const ShowCommand& filter;
  const StatusTable& table;
  ServerState server;
  const InterfaceOfPort& interface_of_port;
};

bool Wanted(const std::optional<std::string>& filter, const std::string& name) {
  return !filter || *filter == name;
}

bool Wanted(const ShowCommand& filter, const MepKey& mep) {
  return Wanted(filter.md, mep.md) && Wanted(filter.ma, mep.ma) &&
         (filter.mep_id == 0 || filter.mep_id == mep.id);
}

Gap GapOf(const Context& context, const StatusTable::Entry* entry, const Interface& port) {
  switch (context.server) {
    case ServerState::Absent:
      return Gap::ServerAbsent;
    case ServerState::Found:
      return Gap::ServerNotInStep;
    case ServerState::InStep:
      break;
  }
  if (entry != nullptr && entry->removed) {
    return Gap::Removed;
  }
  if (!port.present) {
    return Gap::InterfaceMissing;
  }
  return entry == nullptr || !entry->reported ? Gap::NeverReported : Gap::None;
}

// Whether a MEP of the association's list is elsewhere: one of this element's own endpoints is no
// remote MEP to the others.
bool IsRemote(const cfm::hierarchy_ma& ma, std::uint16_t id) { return ma.meps.count(id) == 0; }

void CountRemotes(const StatusTable::Entry& entry, const cfm::hierarchy_ma& ma,
                  ShownEndpoint& shown) {
  for (const std::uint16_t id : ma.cfg.mep_ids) {
    const auto remote = entry.remotes.find(id);
    const bool is_ok = remote != entry.remotes.end() && remote->second.fsm_state == kRemoteOk;
    shown.remotes_expected += IsRemote(ma, id) ? 1 : 0;
    shown.remotes_ok += IsRemote(ma, id) && is_ok ? 1 : 0;
  }
}

// Why a remote MEP of the list is not reported, for an endpoint with this gap of its own.
Gap RemoteGap(const StatusTable::Entry& entry, std::uint16_t remote, Gap gap) {
  if (entry.removed_remotes.count(remote) > 0) {
    return Gap::Removed;
  }
  return gap == Gap::None ? Gap::NeverReported : gap;
}

// The remote MEPs of an endpoint with this gap, listed or reported.
std::vector<ShownRemote> RemotesOf(const StatusTable::Entry& entry, const cfm::hierarchy_ma& ma,
                                   ServerState server, Gap gap) {
  const bool in_step = server == ServerState::InStep;
  std::vector<ShownRemote> remotes;
  for (const std::uint16_t id : ma.cfg.mep_ids) {
    const auto remote = entry.remotes.find(id);
    if (remote != entry.remotes.end()) {
      remotes.push_back({id, remote->second, in_step ? Gap::None : gap});
    } else if (IsRemote(ma, id)) {
      remotes.push_back({id, std::nullopt, in_step ? RemoteGap(entry, id, gap) : gap});
    }
  }
  for (const auto& [id, status] : entry.remotes) {
    if (ma.cfg.mep_ids.count(id) == 0) {
      remotes.push_back({id, status, in_step ? Gap::NotListed : gap});
    }
  }
  return remotes;
}

ShownEndpoint EndpointOf(const Context& context, const cfm::hierarchy_ma& ma,
                         const cfm::hierarchy_mep& mep) {
  static const StatusTable::Entry kNothing;
  const StatusTable::Entry* entry = context.table.Find({mep.md_name, mep.ma_name, mep.cfg.mep_id});
  const StatusTable::Entry& known = entry == nullptr ? kNothing : *entry;
  ShownEndpoint shown;
  shown.mep_id = mep.cfg.mep_id;
  shown.port = context.interface_of_port(mep.cfg.port);
  shown.direction = mep.cfg.direction;
  shown.active = mep.cfg.admin_state;
  shown.ccm_enabled = mep.cfg.ccm_enabled;
  shown.gap = GapOf(context, entry, shown.port);
  if (known.reported) {
    shown.status = known.status;
  }
  CountRemotes(known, ma, shown);
  if (context.filter.mep_id != 0) {
    shown.remotes = RemotesOf(known, ma, context.server, shown.gap);
  }
  return shown;
}

std::vector<ShownAssociation> AssociationsOf(const Context& context, const cfm::hierarchy_md& md) {
  const std::uint16_t only = context.filter.mep_id;
  std::vector<ShownAssociation> associations;
  for (const auto& [name, ma] : md.mas) {
    if (!Wanted(context.filter.ma, name)) {
      continue;
    }
    ShownAssociation shown = {name, ma.cfg.ccm_interval, {}};
    for (const auto& [id, mep] : ma.meps) {
      if (only == 0 || only == id) {
        shown.endpoints.push_back(EndpointOf(context, ma, mep));
      }
    }
    if (only == 0 || !shown.endpoints.empty()) {
      associations.push_back(std::move(shown));
    }
  }
  return associations;
}

bool IsConfigured(const Config& config, const MepKey& mep) {
  const auto md = config.hierarchy.mds.find(mep.md);
  return md != config.hierarchy.mds.end() && md->second.mas.count(mep.ma) > 0 &&
         md->second.mas.at(mep.ma).meps.count(mep.id) > 0;
}

}  // namespace

ShowAnswer Show(const ShowCommand& filter, const Config& config, const StatusTable& table,
                ServerState server, const InterfaceOfPort& interface_of_port) {
  const Context context{filter, table, server, interface_of_port};
  ShowAnswer answer;
  answer.server = server;
  for (const auto& [name, md] : config.hierarchy.mds) {
    if (!Wanted(filter.md, name)) {
      continue;
    }
    ShownDomain shown = {name, md.cfg.level, AssociationsOf(context, md)};
    if (!filter.ma || !shown.associations.empty()) {
      answer.domains.push_back(std::move(shown));
    }
  }
  for (const auto& [mep, entry] : table.entries()) {
    if (entry.reported && Wanted(filter, mep) && !IsConfigured(config, mep)) {
      answer.unconfigured.push_back({mep, entry.status});
    }
  }
  answer.found = !answer.domains.empty() || !answer.unconfigured.empty() || !filter.md;
  return answer;
}

}  // namespace cfm_agent
