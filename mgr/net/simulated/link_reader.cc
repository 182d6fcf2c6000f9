// SPDX-License-Identifier: Apache-2.0
#include "net/simulated/link_reader.h"

#include <array>
#include <map>

#include "core/endpoint_reader.h"
#include "core/text.h"
#include "net/frame_codec.h"
#include "net/simulated/description_values.h"
#include "net/simulated/named.h"

namespace cfm_mgr::net {
namespace {

using Bridges = std::vector<BridgeDescription>;
using cfm_agent::Assign;
using cfm_agent::Field;
using cfm_agent::Presence;
using cfm_agent::Value;

// A name of a port that there is.
std::optional<PortName> ReadPort(const Value& value, const Bridges& bridges) {
  auto name = ReadPortName(value);
  if (!name) return std::nullopt;
  const BridgeDescription* bridge = FindNamed(bridges, name->bridge);
  if (bridge == nullptr) {
    value.Wrong("there is no bridge " + cfm_agent::Quoted(name->bridge) + "; use " +
                NamesOf(bridges));
    return std::nullopt;
  }
  if (FindNamed(bridge->ports, name->port) == nullptr) {
    value.Wrong("bridge " + cfm_agent::Quoted(name->bridge) + " has no port " +
                cfm_agent::Quoted(name->port) + "; use " + NamesOf(bridge->ports));
    return std::nullopt;
  }
  return name;
}

struct LinkDraft {
  const Bridges& bridges;
  bool ends_are_known = false;
  LinkDescription link;
};

void ReadEnds(const Value& list, LinkDraft& draft) {
  if (!cfm_agent::CheckList(list, "two ports")) return;
  if (list.Size() != 2) {
    list.Wrong("has " + cfm_agent::Count(list.Size(), "port") +
               "; use a list of two, such as [metro.trunk, far.west]");
    return;
  }
  draft.ends_are_known = true;
  for (const std::size_t end : {0U, 1U}) {
    const auto port = ReadPort(list.Item(end), draft.bridges);
    draft.ends_are_known = draft.ends_are_known && port.has_value();
    if (port) draft.link.ends[end] = *port;
  }
}

using ChangeField = Field<LinkChange>;

constexpr std::array kChangeFields = {
    ChangeField{"at", Presence::Required,
                [](const Value& value, LinkChange& change) { Assign(change.at, ReadTime(value)); }},
    ChangeField{"up", Presence::Required,
                [](const Value& value, LinkChange& change) {
                  Assign(change.up, cfm_agent::ReadBool(value));
                }},
};

void ReadChanges(const Value& list, LinkDraft& draft) {
  cfm_agent::CheckList(list, "changes");
  for (std::size_t i = 0; i < list.Size(); ++i) {
    const Value item = list.Item(i);
    LinkChange change;
    cfm_agent::ReadFields(item, kChangeFields, "a change of a link", change);
    if (!draft.link.changes.empty() && change.at <= draft.link.changes.back().at) {
      item.Wrong("is not later than the change before it; write them in the order of time");
    }
    draft.link.changes.push_back(change);
  }
}

using LinkField = Field<LinkDraft>;

constexpr std::array kLinkFields = {
    LinkField{"ends", Presence::Required, ReadEnds},
    LinkField{"delay", Presence::Optional,
              [](const Value& value, LinkDraft& draft) {
                Assign(draft.link.quality.delay, ReadTime(value));
              }},
    LinkField{"jitter", Presence::Optional,
              [](const Value& value, LinkDraft& draft) {
                Assign(draft.link.quality.jitter, ReadTime(value));
              }},
    LinkField{"loss", Presence::Optional,
              [](const Value& value, LinkDraft& draft) {
                Assign(draft.link.quality.loss, ReadShare(value));
              }},
    LinkField{"reorder", Presence::Optional,
              [](const Value& value, LinkDraft& draft) {
                Assign(draft.link.quality.reorder, ReadShare(value));
              }},
    LinkField{"reorder-by", Presence::Optional,
              [](const Value& value, LinkDraft& draft) {
                Assign(draft.link.quality.reorder_by, ReadTime(value));
              }},
    LinkField{"up", Presence::Optional,
              [](const Value& value, LinkDraft& draft) {
                Assign(draft.link.up, cfm_agent::ReadBool(value));
              }},
    LinkField{"changes", Presence::Optional, ReadChanges},
};

// Which bridges hang together.
class Islands {
 public:
  // False when they hang together already.
  bool Join(const std::string& a, const std::string& b) {
    const std::string from = Find(a);
    const std::string to = Find(b);
    if (from == to) return false;
    joined_[from] = to;
    return true;
  }

 private:
  std::string Find(std::string name) const {
    for (auto next = joined_.find(name); next != joined_.end(); next = joined_.find(name)) {
      name = next->second;
    }
    return name;
  }

  std::map<std::string, std::string> joined_;
};

void CheckPorts(const Value& value, const LinkDescription& link, std::map<PortName, int>& used) {
  for (const PortName& end : link.ends) {
    const auto [other, added] = used.emplace(end, value.mark().line);
    if (!added) {
      value.Wrong("port " + cfm_agent::Quoted(end.bridge + "." + end.port) +
                  " has a link already, on line " + std::to_string(other->second) +
                  "; use another port");
    }
  }
}

struct CrossDraft {
  const Bridges& bridges;
  bool ports_are_known = true;
  CrossConnection cross;
};

void ReadCrossPort(const Value& value, CrossDraft& draft, PortName& name) {
  const auto port = ReadPort(value, draft.bridges);
  draft.ports_are_known = draft.ports_are_known && port.has_value();
  Assign(name, port);
}

using CrossField = Field<CrossDraft>;

constexpr std::array kCrossFields = {
    CrossField{"from", Presence::Required,
               [](const Value& value, CrossDraft& draft) {
                 ReadCrossPort(value, draft, draft.cross.from);
               }},
    CrossField{
        "to", Presence::Required,
        [](const Value& value, CrossDraft& draft) { ReadCrossPort(value, draft, draft.cross.to); }},
    CrossField{"vid", Presence::Optional,
               [](const Value& value, CrossDraft& draft) {
                 Assign(draft.cross.vid, cfm_agent::ReadNumber(value, 0, kMaxVid));
               }},
    CrossField{"to-vid", Presence::Optional,
               [](const Value& value, CrossDraft& draft) {
                 Assign(draft.cross.to_vid, cfm_agent::ReadNumber(value, 1, kMaxVid));
               }},
};

}  // namespace

std::vector<LinkDescription> ReadLinks(const Value& list, const Bridges& bridges) {
  std::vector<LinkDescription> links;
  cfm_agent::CheckList(list, "links");
  std::map<PortName, int> used;
  Islands islands;
  for (std::size_t i = 0; i < list.Size(); ++i) {
    const Value item = list.Item(i);
    LinkDraft draft{bridges, false, {}};
    cfm_agent::ReadFields(item, kLinkFields, "a link", draft);
    if (!draft.ends_are_known) continue;
    CheckPorts(item, draft.link, used);
    if (!islands.Join(draft.link.ends[0].bridge, draft.link.ends[1].bridge)) {
      item.Wrong("closes a loop, in which frames would go round for ever; leave it out");
    }
    links.push_back(std::move(draft.link));
  }
  return links;
}

std::vector<CrossConnection> ReadCrossConnections(const Value& list, const Bridges& bridges) {
  std::vector<CrossConnection> crosses;
  cfm_agent::CheckList(list, "cross-connections");
  for (std::size_t i = 0; i < list.Size(); ++i) {
    CrossDraft draft{bridges, true, {}};
    cfm_agent::ReadFields(list.Item(i), kCrossFields, "a cross-connection", draft);
    if (draft.ports_are_known) crosses.push_back(draft.cross);
  }
  return crosses;
}

}  // namespace cfm_mgr::net
