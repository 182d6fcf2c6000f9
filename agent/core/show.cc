#include <array>
#include <utility>

#include "core/columns.h"
#include "core/status_table.h"
#include "core/status_text.h"
#include "core/text.h"
#include "core/words.h"

namespace cfm_agent {
namespace {

using Row = std::vector<std::string>;

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

std::string ServerLine(ServerState server) {
  switch (server) {
    case ServerState::Absent:
      return "server: absent";
    case ServerState::Found:
      return "server: found, not in step yet";
    case ServerState::InStep:
      return "server: in step";
  }
  return "";
}

// Why nothing is reported, or why what is reported cannot be what is configured. Empty if neither.
std::string Gap(const Context& context, const StatusTable::Entry* entry,
                const Interface& interface) {
  switch (context.server) {
    case ServerState::Absent:
      return "server absent";
    case ServerState::Found:
      return "server not in step";
    case ServerState::InStep:
      break;
  }
  if (entry != nullptr && entry->removed) {
    return "removed by the server";
  }
  if (!interface.present) {
    return "interface " + AsWord(interface.name) + " missing";
  }
  return entry == nullptr || !entry->reported ? "never reported" : "";
}

std::string Configured(const cfm::st_maintenance_endpoint_cfg& cfg) {
  return WordFor(kDirections, static_cast<int>(cfg.direction)) +
         (cfg.admin_state ? ", active" : ", inactive") +
         (cfg.ccm_enabled ? ", CCM on" : ", CCM off");
}

// Whether a MEP of the association's list is elsewhere: one of this element's own endpoints is no
// remote MEP to the others.
bool IsRemote(const cfm::hierarchy_ma& ma, std::uint16_t id) { return ma.meps.count(id) == 0; }

// ", remote MEPs 2 of 3 ok"
std::string RemoteSummary(const StatusTable::Entry& entry, const cfm::hierarchy_ma& ma) {
  constexpr std::uint32_t kOk = 4;
  std::size_t ok = 0;
  std::size_t expected = 0;
  for (const std::uint16_t id : ma.cfg.mep_ids) {
    const auto remote = entry.remotes.find(id);
    expected += IsRemote(ma, id) ? 1 : 0;
    const bool is_ok = remote != entry.remotes.end() && remote->second.fsm_state == kOk;
    ok += IsRemote(ma, id) && is_ok ? 1 : 0;
  }
  return expected == 0
             ? ""
             : ", remote MEPs " + std::to_string(ok) + " of " + std::to_string(expected) + " ok";
}

Row EndpointRow(const Context& context, const cfm::hierarchy_ma& ma,
                const cfm::hierarchy_mep& mep) {
  const StatusTable::Entry* entry = context.table.Find({mep.md_name, mep.ma_name, mep.cfg.mep_id});
  const Interface interface = context.interface_of_port(mep.cfg.port);
  const bool reported = entry != nullptr && entry->reported;
  return {std::to_string(mep.cfg.mep_id), AsWord(interface.name), Configured(mep.cfg),
          reported ? DescribeState(entry->status) + RemoteSummary(*entry, ma) : "-",
          Gap(context, entry, interface)};
}

// Why a remote MEP of the list is not reported, for an endpoint with this gap of its own.
std::string RemoteGap(const StatusTable::Entry& entry, std::uint16_t remote,
                      const std::string& gap) {
  if (entry.removed_remotes.count(remote) > 0) {
    return "removed by the server";
  }
  return gap.empty() ? "never reported" : gap;
}

// The remote MEPs of one endpoint, listed or reported.
std::vector<Row> RemoteRows(const Context& context, const cfm::hierarchy_ma& ma,
                            const cfm::hierarchy_mep& mep) {
  const StatusTable::Entry* entry = context.table.Find({mep.md_name, mep.ma_name, mep.cfg.mep_id});
  const StatusTable::Entry nothing;
  const StatusTable::Entry& known = entry == nullptr ? nothing : *entry;
  const auto& remotes = known.remotes;
  const std::string gap = Gap(context, entry, context.interface_of_port(mep.cfg.port));
  const bool in_step = context.server == ServerState::InStep;
  std::vector<Row> rows = {{"REMOTE", "REPORTED", "GAP"}};
  for (const std::uint16_t id : ma.cfg.mep_ids) {
    const auto remote = remotes.find(id);
    if (remote != remotes.end()) {
      rows.push_back({std::to_string(id), Describe(remote->second), in_step ? "" : gap});
    } else if (IsRemote(ma, id)) {
      rows.push_back({std::to_string(id), "-", in_step ? RemoteGap(known, id, gap) : gap});
    }
  }
  for (const auto& [id, status] : remotes) {
    if (ma.cfg.mep_ids.count(id) == 0) {
      rows.push_back({std::to_string(id), Describe(status), in_step ? "not in the MEP list" : gap});
    }
  }
  return rows;
}

void Append(std::vector<std::string>& lines, std::vector<std::string> more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

void ShowAssociation(const Context& context, const std::string& name, const cfm::hierarchy_ma& ma,
                     std::vector<std::string>& lines) {
  std::vector<Row> rows = {{"MEP", "PORT", "CONFIGURED", "REPORTED", "GAP"}};
  for (const auto& [id, mep] : ma.meps) {
    if (context.filter.mep_id == 0 || context.filter.mep_id == id) {
      rows.push_back(EndpointRow(context, ma, mep));
    }
  }
  if (context.filter.mep_id != 0 && rows.size() == 1) {
    return;
  }
  lines.push_back("  association " + AsWord(name) + ", CCM interval " +
                  WordFor(kCcmIntervals, static_cast<int>(ma.cfg.ccm_interval)));
  if (rows.size() == 1) {
    lines.emplace_back("    no endpoints");
    return;
  }
  Append(lines, AlignColumns(rows, 4));
  if (context.filter.mep_id != 0) {
    const cfm::hierarchy_mep& mep = ma.meps.at(context.filter.mep_id);
    Append(lines, AlignColumns(RemoteRows(context, ma, mep), 6));
  }
}

void ShowUnconfigured(const Context& context, const Config& config,
                      std::vector<std::string>& lines) {
  bool headed = false;
  for (const auto& [mep, entry] : context.table.entries()) {
    const auto md = config.hierarchy.mds.find(mep.md);
    const bool configured = md != config.hierarchy.mds.end() && md->second.mas.count(mep.ma) > 0 &&
                            md->second.mas.at(mep.ma).meps.count(mep.id) > 0;
    if (configured || !entry.reported || !Wanted(context.filter, mep)) {
      continue;
    }
    if (!headed) {
      lines.emplace_back("reported by the server but not configured");
      headed = true;
    }
    lines.push_back("  " + Describe(mep) + ": " + DescribeState(entry.status));
  }
}

}  // namespace

Shown Show(const ShowCommand& filter, const Config& config, const StatusTable& table,
           ServerState server, const InterfaceOfPort& interface_of_port) {
  const Context context{filter, table, server, interface_of_port};
  std::vector<std::string> lines;
  for (const auto& [md_name, md] : config.hierarchy.mds) {
    std::vector<std::string> below;
    for (const auto& [ma_name, ma] : md.mas) {
      if (Wanted(filter.ma, ma_name)) {
        ShowAssociation(context, ma_name, ma, below);
      }
    }
    if (Wanted(filter.md, md_name) && (!filter.ma || !below.empty())) {
      lines.push_back("domain " + AsWord(md_name) + ", level " + std::to_string(md.cfg.level));
      Append(lines, std::move(below));
    }
  }
  ShowUnconfigured(context, config, lines);
  const bool found = !lines.empty() || !filter.md;
  if (lines.empty() && found) {
    lines.emplace_back("nothing configured");
  }
  lines.insert(lines.begin(), ServerLine(server));
  return {std::move(lines), found};
}

}  // namespace cfm_agent
