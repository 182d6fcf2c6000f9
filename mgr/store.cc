// SPDX-License-Identifier: Apache-2.0
#include "store.h"

#include <algorithm>
#include <string>
#include <utility>

#include "convert.h"
#include "fields.h"
#include "naming.h"
#include "pdu/maid.h"

namespace cfm_mgr {
namespace {

/** Thrown while a request is judged, before it has changed anything; never leaves this file. */
struct Refusal {
  std::string reason;
};

/** Refuses the request unless there is no reason against it. */
void Demand(const std::string& reason) {
  if (!reason.empty()) throw Refusal{reason};
}

/** Runs @p body, which fills the outcome, unless the request names no possible entity. */
template <class Body>
Outcome Judge(const Naming& naming, const Body& body) {
  Outcome outcome;
  outcome.subject = naming.subject;
  try {
    Demand(naming.faults);
    body(outcome);
  } catch (const Refusal& refusal) {
    outcome.text = refusal.reason;
    outcome.refused = true;
  }
  return outcome;
}

void Done(Outcome& outcome, std::string text) {
  outcome.text = std::move(text);
  outcome.changed = true;
}

/** Gives @p current the settings @p next and tells what that changes. */
template <class Settings>
void Change(Outcome& outcome, const char* verb, Settings& current, const Settings& next) {
  const std::string changes = ShowChanges(current, next);
  outcome.text = std::string(verb) + ": " + (changes.empty() ? "no change" : changes);
  outcome.changed = !changes.empty();
  current = next;
}

/** The same for a create, whose entity may have been there already. */
template <class Settings>
void Put(Outcome& outcome, bool created, Settings& current, const Settings& next) {
  if (!created) return Change(outcome, "replaced", current, next);
  Done(outcome, "created");
  current = next;
}

/** The settings as the request changes them, if they may become so. */
template <class Settings, class Message>
Settings Updated(Settings settings, const Message& request) {
  Update(settings, request);
  Demand(FaultsOf(settings));
  return settings;
}

/** The settings of a create request, if they are allowed. */
template <class Message>
auto Checked(const Message& request) {
  auto settings = FromMessage(request);
  Demand(FaultsOf(settings));
  return settings;
}

/** The entry of this key, which the request cannot do without. */
template <class Map, class Explain>
typename Map::mapped_type& Existing(Map& map, const typename Map::key_type& key,
                                    const Explain& explain) {
  const auto entry = map.find(key);
  if (entry == map.end()) throw Refusal{explain()};
  return entry->second;
}

template <class Message>
Domain& DomainOf(Tree& tree, const Message& request) {
  return Existing(tree.domains, request.md_name(),
                  [&request] { return "no domain " + Quote(request.md_name()); });
}

template <class Message>
Association& AssociationOf(Tree& tree, const Message& request) {
  return Existing(DomainOf(tree, request).associations, request.ma_name(), [&request] {
    return "no association " + Quote(request.ma_name()) + " in domain " + Quote(request.md_name());
  });
}

template <class Message>
Mep& MepOf(Association& association, const Message& request) {
  return Existing(association.meps, request.mep_id(), [&request] {
    return "no endpoint " + std::to_string(request.mep_id()) + " in association " +
           Quote(request.ma_name()) + " of domain " + Quote(request.md_name());
  });
}

template <class Message>
Probe& ProbeOf(Tree& tree, const Message& request) {
  return Existing(tree.probes, request.probe_id(),
                  [&request] { return "no probe " + std::to_string(request.probe_id()); });
}

template <class Message>
MaKey MaKeyOf(const Message& request) {
  return {request.md_name(), request.ma_name()};
}

template <class Message>
MepKey MepKeyOf(const Message& request) {
  return {MaKeyOf(request), request.mep_id()};
}

void AddMeps(std::vector<MepKey>& keys, const MaKey& key, const Association& association) {
  for (const auto& entry : association.meps) keys.push_back({key, entry.first});
}

/** Refuses a domain's settings under which a name of it or of its associations cannot be. */
void DemandNames(const Tree& tree, const std::string& md_name, const DomainSettings& settings) {
  if (md_name.empty() && settings.format != kMdNameFormatNone) {
    throw Refusal{"md_name is empty: expected a name, or format 1 (none)"};
  }
  const auto there = tree.domains.find(md_name);
  if (there == tree.domains.end() || there->second.settings.format == settings.format) return;
  for (const auto& entry : there->second.associations) {
    const std::string fault =
        FaultOfMaid(md_name, settings.format, entry.first, entry.second.settings.format);
    if (!fault.empty()) throw Refusal{"association " + Quote(entry.first) + ": " + fault};
  }
}

}  // namespace

Outcome Store::Apply(const client_server::OpCreateMaintenanceDomain& request) {
  return Judge(NameMd(request), [this, &request](Outcome& outcome) {
    const DomainSettings settings = Checked(request);
    DemandNames(tree_, request.md_name(), settings);
    const auto [entry, created] = tree_.domains.try_emplace(request.md_name());
    Put(outcome, created, entry->second.settings, settings);
    if (outcome.changed) outcome.reset_md = request.md_name();
  });
}

Outcome Store::Apply(const client_server::OpUpdateMaintenanceDomain& request) {
  return Judge(NameMd(request), [this, &request](Outcome& outcome) {
    DomainSettings& settings = DomainOf(tree_, request).settings;
    Change(outcome, "updated", settings, Updated(settings, request));
    if (outcome.changed) outcome.reset_md = request.md_name();
  });
}

Outcome Store::Apply(const client_server::OpDeleteMaintenanceDomain& request) {
  return Judge(NameMd(request), [this, &request](Outcome& outcome) {
    const auto& associations = DomainOf(tree_, request).associations;
    for (const auto& [ma_name, association] : associations) {
      AddMeps(outcome.removed, {request.md_name(), ma_name}, association);
    }
    Done(outcome, "removed with " + Plural(associations.size(), "association") + " and " +
                      Plural(outcome.removed.size(), "endpoint"));
    tree_.domains.erase(request.md_name());
    outcome.reset_md = request.md_name();
  });
}

Outcome Store::Apply(const client_server::OpCreateMaintenanceAssociation& request) {
  return Judge(NameMa(request), [this, &request](Outcome& outcome) {
    const AssociationSettings settings = Checked(request);
    Domain& domain = DomainOf(tree_, request);
    Demand(
        FaultOfMaid(request.md_name(), domain.settings.format, request.ma_name(), settings.format));
    const auto [entry, created] = domain.associations.try_emplace(request.ma_name());
    Put(outcome, created, entry->second.settings, settings);
    if (!pdu::EncodeMaid(domain.settings.format, request.md_name(), settings.format,
                         request.ma_name())) {
      outcome.text += ", but the names are not as their formats ask: its endpoints stay inactive";
    }
    if (outcome.changed) outcome.reset_ma = MaKeyOf(request);
  });
}

Outcome Store::Apply(const client_server::OpUpdateMaintenanceAssociation& request) {
  return Judge(NameMa(request), [this, &request](Outcome& outcome) {
    AssociationSettings& settings = AssociationOf(tree_, request).settings;
    Change(outcome, "updated", settings, Updated(settings, request));
    if (outcome.changed) outcome.reset_ma = MaKeyOf(request);
  });
}

Outcome Store::Apply(const client_server::OpDeleteMaintenanceAssociation& request) {
  return Judge(NameMa(request), [this, &request](Outcome& outcome) {
    AddMeps(outcome.removed, MaKeyOf(request), AssociationOf(tree_, request));
    Done(outcome, "removed with " + Plural(outcome.removed.size(), "endpoint"));
    DomainOf(tree_, request).associations.erase(request.ma_name());
    outcome.reset_ma = MaKeyOf(request);
  });
}

Outcome Store::Apply(const client_server::OpCreateMaintenanceEndpoint& request) {
  return Judge(NameMep(request), [this, &request](Outcome& outcome) {
    const Mep settings = Checked(request);
    Association& association = AssociationOf(tree_, request);
    const auto [entry, created] = association.meps.try_emplace(request.mep_id());
    Put(outcome, created, entry->second, settings);
    const auto& mep_ids = association.settings.mep_ids;
    if (!std::binary_search(mep_ids.begin(), mep_ids.end(), request.mep_id())) {
      outcome.text += ", not in the association's MEP list";
    }
    if (outcome.changed) outcome.reset_mep = MepKeyOf(request);
  });
}

Outcome Store::Apply(const client_server::OpUpdateMaintenanceEndpoint& request) {
  return Judge(NameMep(request), [this, &request](Outcome& outcome) {
    Mep& settings = MepOf(AssociationOf(tree_, request), request);
    Change(outcome, "updated", settings, Updated(settings, request));
    if (outcome.changed) outcome.reset_mep = MepKeyOf(request);
  });
}

Outcome Store::Apply(const client_server::OpDeleteMaintenanceEndpoint& request) {
  return Judge(NameMep(request), [this, &request](Outcome& outcome) {
    Association& association = AssociationOf(tree_, request);
    MepOf(association, request);
    association.meps.erase(request.mep_id());
    Done(outcome, "removed");
    outcome.removed.push_back(MepKeyOf(request));
  });
}

Outcome Store::Apply(const client_server::OpCreateDelayMeasurementProbe& request) {
  return Judge(NameProbe(request), [this, &request](Outcome& outcome) {
    Demand(NameMa(request).faults);
    const ProbeSettings settings = Checked(request);
    const auto [entry, created] = tree_.probes.try_emplace(request.probe_id());
    Put(outcome, created, entry->second.settings, settings);
    if (outcome.changed) outcome.reset_probe = request.probe_id();
  });
}

Outcome Store::Apply(const client_server::OpDeleteDelayMeasurementProbe& request) {
  return Judge(NameProbe(request), [this, &request](Outcome& outcome) {
    Done(outcome, "removed with " + Plural(ProbeOf(tree_, request).sessions.size(), "session"));
    tree_.probes.erase(request.probe_id());
    outcome.reset_probe = request.probe_id();
  });
}

Outcome Store::Apply(const client_server::OpCreateDelayMeasurementSession& request) {
  return Judge(NameSession(request), [this, &request](Outcome& outcome) {
    const Session settings = Checked(request);
    const auto [entry, created] =
        ProbeOf(tree_, request).sessions.try_emplace(request.session_id());
    Put(outcome, created, entry->second, settings);
    if (outcome.changed) outcome.reset_probe = request.probe_id();
  });
}

Outcome Store::Apply(const client_server::OpDeleteDelayMeasurementSession& request) {
  return Judge(NameSession(request), [this, &request](Outcome& outcome) {
    if (ProbeOf(tree_, request).sessions.erase(request.session_id()) == 0) {
      throw Refusal{"no session " + std::to_string(request.session_id()) + " of probe " +
                    std::to_string(request.probe_id())};
    }
    Done(outcome, "removed");
    outcome.reset_probe = request.probe_id();
  });
}

std::vector<std::string> Store::Load(const client_server::OpCacheSync& cache) {
  std::vector<std::string> refused;
  const auto apply_all = [this, &refused](const auto& entries) {
    for (const auto& entry : entries) {
      const Outcome outcome = Apply(entry);
      if (outcome.refused) refused.push_back(outcome.subject + ": " + outcome.text);
    }
  };
  apply_all(cache.mds());
  apply_all(cache.mas());
  apply_all(cache.meps());
  apply_all(cache.probes());
  apply_all(cache.sessions());
  return refused;
}

}  // namespace cfm_mgr
