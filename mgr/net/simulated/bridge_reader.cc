// SPDX-License-Identifier: Apache-2.0
#include "net/simulated/bridge_reader.h"

#include <array>
#include <map>

#include "core/hierarchy_reader.h"
#include "core/text.h"
#include "net/frame_codec.h"
#include "net/simulated/description_values.h"
#include "net/simulated/domains.h"
#include "net/simulated/named.h"

namespace cfm_mgr::net {
namespace {

using cfm_agent::Field;
using cfm_agent::Presence;
using cfm_agent::Unique;
using cfm_agent::Value;

// Ports without an interface get identifiers that no kernel gives away.
constexpr engine::PortId kFirstFreeId = 0x40000000;
constexpr engine::PortId kMaxId = 0x3fffffff;

struct PortDraft {
  const BridgeContext& context;
  bool is_local = false;
  PortDescription port;
  bool has_name = false;
  bool has_mac = false;
};

struct BridgeDraft {
  const BridgeContext& context;
  std::size_t number = 0;  // of the bridge, from 1
  bool is_local = false;
  bool has_name = false;
  bool ports_are_known = true;
  BridgeDescription bridge;
};

void ReadInterface(const Value& value, PortDraft& draft) {
  const auto name = cfm_agent::ReadText(value, "a network interface");
  if (!name) return;
  if (!draft.is_local) {
    value.Wrong("only ports of the local bridge stand for interfaces; leave it out");
    return;
  }
  draft.port.id = draft.context.index_of_interface(*name);
  if (draft.port.id == 0) {
    value.Wrong(cfm_agent::Quoted(*name) + " is no interface of this machine; use one, such as lo" +
                ", or leave it out for a port that clients cannot use");
  }
}

void ReadIfindex(const Value& value, PortDraft& draft) {
  const auto index = cfm_agent::ReadNumber(value, 1, kMaxId);
  if (!index) return;
  if (!draft.is_local) {
    value.Wrong("only ports of the local bridge stand for interfaces; leave it out");
  } else if (draft.port.id != 0) {
    value.Wrong("the port has an interface already; use either interface or ifindex");
  } else {
    draft.port.id = static_cast<engine::PortId>(*index);
  }
}

void ReadVids(const Value& list, PortDraft& draft) {
  cfm_agent::CheckList(list, "VIDs");
  for (std::size_t i = 0; i < list.Size(); ++i) {
    const auto vid = cfm_agent::ReadNumber(list.Item(i), 0, kMaxVid);
    if (vid) draft.port.vids.insert(static_cast<std::uint16_t>(*vid));
  }
}

using PortField = Field<PortDraft>;

constexpr std::array kPortFields = {
    PortField{"name", Presence::Required,
              [](const Value& value, PortDraft& draft) {
                const auto name = ReadName(value);
                draft.has_name = name.has_value();
                draft.port.name = name.value_or("");
              }},
    PortField{"mac", Presence::Optional,
              [](const Value& value, PortDraft& draft) {
                const auto mac = ReadMac(value);
                draft.has_mac = mac.has_value();
                draft.port.mac = mac.value_or(engine::Mac{});
              }},
    PortField{"interface", Presence::Optional, ReadInterface},
    PortField{"ifindex", Presence::Optional, ReadIfindex},
    PortField{"vids", Presence::Optional, ReadVids},
};

// A locally administered address that tells bridge and port.
engine::Mac MacOf(std::size_t bridge, std::size_t port) {
  return {0x02,
          0x00,
          static_cast<std::uint8_t>(bridge >> 8U),
          static_cast<std::uint8_t>(bridge & 0xFFU),
          static_cast<std::uint8_t>(port >> 8U),
          static_cast<std::uint8_t>(port & 0xFFU)};
}

void ReadPorts(const Value& list, BridgeDraft& draft) {
  draft.ports_are_known = cfm_agent::CheckList(list, "ports");
  Unique<std::string> names;
  std::map<engine::PortId, std::string> ids;
  for (std::size_t i = 0; i < list.Size(); ++i) {
    const Value item = list.Item(i);
    PortDraft port{draft.context, draft.is_local, {}, false, false};
    cfm_agent::ReadFields(item, kPortFields, "a port", port);
    if (!port.has_name || !names.Add(port.port.name, *item.Member("name"))) {
      draft.ports_are_known = false;
      continue;
    }
    if (port.port.id == 0) port.port.id = kFirstFreeId + static_cast<engine::PortId>(i + 1);
    const auto [other, added] = ids.emplace(port.port.id, port.port.name);
    if (!added) {
      item.Wrong("has the interface of port " + cfm_agent::Quoted(other->second) +
                 "; use each interface once");
    }
    if (!port.has_mac) port.port.mac = MacOf(draft.number, i + 1);
    draft.bridge.ports.push_back(std::move(port.port));
  }
}

engine::PortId IdOf(const std::vector<PortDescription>& ports, const std::string& name) {
  const PortDescription* port = FindNamed(ports, name);
  return port == nullptr ? 0 : port->id;
}

// Calls `visit` for each item of a member that is a list.
template <class Visit>
void ForEachItem(const Value& map, std::string_view key, const Visit& visit) {
  const auto list = map.Member(key);
  for (std::size_t i = 0; list && i < list->Size(); ++i) visit(list->Item(i));
}

void CheckEndpointPorts(const Value& domain, const BridgeDescription& bridge) {
  ForEachItem(domain, "associations", [&bridge](const Value& association) {
    ForEachItem(association, "endpoints", [&bridge](const Value& endpoint) {
      const auto port = endpoint.Member("port");
      if (!port || !port->Is(cfm_agent::YamlNode::Kind::Scalar)) return;
      if (IdOf(bridge.ports, port->node().text) == 0) {
        port->Wrong(port->Shown() + " is no port of bridge " + cfm_agent::Quoted(bridge.name) +
                    "; use " + NamesOf(bridge.ports));
      }
    });
  });
}

void ReadBridgeDomains(const Value& list, BridgeDraft& draft) {
  if (draft.is_local) {
    list.Wrong("the clients of cfm-mgr configure the local bridge; leave it out");
    return;
  }
  // Any handle will do for an unknown port, which is noted below.
  const auto port_of_name = [&draft](const std::string& name) {
    const engine::PortId id = IdOf(draft.bridge.ports, name);
    return id == 0 ? kFirstFreeId : id;
  };
  draft.bridge.domains = ToDomains(cfm_agent::ReadDomains(list, port_of_name).hierarchy);
  for (std::size_t i = 0; draft.ports_are_known && i < list.Size(); ++i) {
    CheckEndpointPorts(list.Item(i), draft.bridge);
  }
}

using BridgeField = Field<BridgeDraft>;

constexpr std::array kBridgeFields = {
    BridgeField{"name", Presence::Required,
                [](const Value& value, BridgeDraft& draft) {
                  const auto name = ReadName(value);
                  draft.has_name = name.has_value();
                  draft.bridge.name = name.value_or("");
                  draft.is_local = name && *name == draft.context.local;
                }},
    BridgeField{"ports", Presence::Required, ReadPorts},
    // After the ports, on which endpoints sit.
    BridgeField{"domains", Presence::Optional, ReadBridgeDomains},
};

}  // namespace

std::vector<BridgeDescription> ReadBridges(const Value& list, const BridgeContext& context) {
  std::vector<BridgeDescription> bridges;
  cfm_agent::CheckList(list, "bridges");
  Unique<std::string> names;
  for (std::size_t i = 0; i < list.Size(); ++i) {
    const Value item = list.Item(i);
    BridgeDraft draft{context, i + 1, false, false, true, {}};
    cfm_agent::ReadFields(item, kBridgeFields, "a bridge", draft);
    if (draft.has_name && names.Add(draft.bridge.name, *item.Member("name"))) {
      bridges.push_back(std::move(draft.bridge));
    }
  }
  return bridges;
}

}  // namespace cfm_mgr::net
