// SPDX-License-Identifier: Apache-2.0
#include "core/show_text.h"

#include "core/mep.h"
#include "core/status_text.h"
#include "core/status_words.h"
#include "core/table.h"
#include "core/text.h"

namespace cfm_agent {
namespace {

using Side = Column::Side;
using Lines = std::vector<std::string>;
using Row = std::vector<Span>;

constexpr const char* kNothing = "-";

void AddCells(Row& row, Row more) {
  for (Span& cell : more) {
    row.push_back(std::move(cell));
  }
}

Span ServerSpan(ServerState server) {
  switch (server) {
    case ServerState::Absent:
      return {"server: absent", Tone::Bad};
    case ServerState::Found:
      return {"server: found, not in step yet", Tone::Doubtful};
    case ServerState::InStep:
      return {"server: in step", Tone::Good};
  }
  return {};
}

Span DefectsCell(const cfm::local_mep_status& status) {
  const auto defects = DefectsOf(status);
  const std::string highest = WordFor(kDefectPriorities, status.highest_defect_priority);
  std::string text = DefectNames(status);
  if (status.highest_defect_priority != 0 && (defects.empty() || defects.front() != highest)) {
    text = (text.empty() ? "none" : text) + " (highest: " + highest + ')';
  }
  return text.empty() ? Span{"none", Tone::Good} : Span{text, Tone::Bad};
}

// Port status, interface, defects and remarks.
Row StatusCells(const cfm::local_mep_status& status) {
  return {PortSpan(status.port_state),
          InterfaceSpan(status.intf_status),
          DefectsCell(status),
          {Join(RemarksOn(status), {}), Tone::Doubtful}};
}

Span GapCell(Gap gap, const Interface& port) {
  if (gap == Gap::None) {
    return {};
  }
  return {gap == Gap::InterfaceMissing ? "interface " + AsWord(port.name) + " missing"
                                       : WordFor(kGaps, gap),
          Tone::Bad};
}

Span RemotesCell(const ShownEndpoint& endpoint) {
  if (!endpoint.status || endpoint.remotes_expected == 0) {
    return {kNothing};
  }
  return {std::to_string(endpoint.remotes_ok) + " of " + std::to_string(endpoint.remotes_expected) +
              " ok",
          endpoint.remotes_ok == endpoint.remotes_expected ? Tone::Good : Tone::Bad};
}

Row EndpointRow(const ShownAssociation& association, const ShownEndpoint& endpoint) {
  Row row = {{AsWord(association.name)},
             {WordFor(kCcmIntervals, association.ccm_interval)},
             {std::to_string(endpoint.mep_id)},
             {AsWord(endpoint.port.name)},
             {WordFor(kDirections, endpoint.direction)},
             {endpoint.active ? "active" : "inactive"},
             {endpoint.ccm_enabled ? "on" : "off"},
             RemotesCell(endpoint)};
  AddCells(row, endpoint.status ? StatusCells(*endpoint.status)
                                : Row{{kNothing}, {kNothing}, {kNothing}, {}});
  row.push_back(GapCell(endpoint.gap, endpoint.port));
  return row;
}

Table EndpointTable(const ShownDomain& domain) {
  Table table({{"ASSOCIATION"},
               {"INTERVAL", Side::Right},
               {"MEP", Side::Right},
               {"PORT"},
               {"DIRECTION"},
               {"ADMIN"},
               {"CCM"},
               {"REMOTE MEPS"},
               {"PORT STATUS"},
               {"INTERFACE"},
               {"DEFECTS"},
               {"REMARKS"},
               {"GAP"}});
  for (const ShownAssociation& association : domain.associations) {
    for (const ShownEndpoint& endpoint : association.endpoints) {
      table.Add(EndpointRow(association, endpoint));
    }
    if (association.endpoints.empty()) {
      table.Add({{AsWord(association.name)},
                 {WordFor(kCcmIntervals, association.ccm_interval)},
                 {kNothing},
                 {"no endpoints"}});
    }
  }
  return table;
}

Table RemoteTable(const ShownEndpoint& endpoint) {
  Table table({{"MEP", Side::Right},
               {"STATE"},
               {"ADDRESS"},
               {"PORT STATUS"},
               {"INTERFACE"},
               {"SINCE UPTIME", Side::Right},
               {"SENDER ID"},
               {"REMARKS"},
               {"GAP"}});
  for (const ShownRemote& remote : *endpoint.remotes) {
    Row row = {{std::to_string(remote.mep_id)}};
    if (const auto& status = remote.status) {
      AddCells(row, {StateSpan(*status),
                     {status->mac.to_string()},
                     PortSpan(status->port_state),
                     InterfaceSpan(status->intf_status),
                     {std::to_string(status->last_change_uptime) + " ms"},
                     {status->sender_id.empty() ? "" : Quoted(status->sender_id)},
                     {status->rdi ? "sends RDI" : "", Tone::Doubtful}});
    } else {
      AddCells(row, {{kNothing}, {kNothing}, {kNothing}, {kNothing}, {kNothing}, {}, {}});
    }
    row.push_back(GapCell(remote.gap, endpoint.port));
    table.Add(std::move(row));
  }
  return table;
}

Lines DomainLines(const ShownDomain& domain, const Style& style) {
  const std::string level = ", level " + std::to_string(domain.level);
  Lines lines = {Paint("domain " + AsWord(domain.name), Tone::Heading, style) + level};
  const Table endpoints = EndpointTable(domain);
  if (!endpoints.empty()) {
    Append(lines, endpoints.Lines(2, style));
  }
  for (const ShownAssociation& association : domain.associations) {
    for (const ShownEndpoint& endpoint : association.endpoints) {
      if (endpoint.remotes && !endpoint.remotes->empty()) {
        lines.push_back("  remote MEPs of endpoint " + std::to_string(endpoint.mep_id));
        Append(lines, RemoteTable(endpoint).Lines(4, style));
      }
    }
  }
  return lines;
}

Lines StrangerLines(const std::vector<ShownStranger>& strangers, const Style& style) {
  Table table({{"DOMAIN"},
               {"ASSOCIATION"},
               {"MEP", Side::Right},
               {"PORT STATUS"},
               {"INTERFACE"},
               {"DEFECTS"},
               {"REMARKS"}});
  for (const ShownStranger& stranger : strangers) {
    Row row = {
        {AsWord(stranger.mep.md)}, {AsWord(stranger.mep.ma)}, {std::to_string(stranger.mep.id)}};
    AddCells(row, StatusCells(stranger.status));
    table.Add(std::move(row));
  }
  Lines lines = {Paint("reported by the server but not configured", Tone::Doubtful, style)};
  Append(lines, table.Lines(2, style));
  return lines;
}

}  // namespace

Lines TextOf(const ShowAnswer& answer, const Style& style) {
  const Span server = ServerSpan(answer.server);
  Lines lines = {Paint(server.text, server.tone, style)};
  for (const ShownDomain& domain : answer.domains) {
    Append(lines, DomainLines(domain, style));
  }
  if (!answer.unconfigured.empty()) {
    Append(lines, StrangerLines(answer.unconfigured, style));
  }
  if (answer.found && lines.size() == 1) {
    lines.emplace_back("nothing configured");
  }
  return lines;
}

}  // namespace cfm_agent
