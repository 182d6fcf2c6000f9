// SPDX-License-Identifier: Apache-2.0
#include "core/hierarchy_reader.h"

#include "core/association_reader.h"
#include "core/endpoint_reader.h"
#include "core/names.h"

namespace cfm_agent {
namespace {

struct DomainDraft {
  explicit DomainDraft(const PortOfName& ports) : port_of_name(ports) {}

  const PortOfName& port_of_name;
  std::optional<std::string> name;
  bool format_is_known = true;
  bool associations_are_known = true;
  cfm::hierarchy_md md;
  std::set<std::string> unclear_mas;
};

using DomainField = Field<DomainDraft>;

void Keep(DomainDraft& domain, AssociationDraft association) {
  if (!association.endpoints_are_known || !association.mep_list_is_known) {
    domain.unclear_mas.insert(*association.name);
  }
  domain.md.mas.emplace(*association.name, std::move(association.ma));
}

void ReadAssociations(const Value& list, DomainDraft& domain) {
  domain.associations_are_known = CheckList(list, "associations");
  Unique<std::string> unique;
  for (std::size_t i = 0; i < list.Size(); ++i) {
    const Value item = list.Item(i);
    AssociationDraft association = ReadAssociation(item, domain.port_of_name);
    if (!association.name || !unique.Add(*association.name, *item.Member("name"))) {
      domain.associations_are_known = false;
      continue;
    }
    Keep(domain, std::move(association));
  }
}

constexpr std::array kFields = {
    DomainField{"name", Presence::Required,
                [](const Value& value, DomainDraft& domain) {
                  domain.name = ReadText(value, "a domain's name");
                }},
    DomainField{"name-format", Presence::Optional,
                [](const Value& value, DomainDraft& domain) {
                  const auto format = ReadWord(value, kMdNameFormats);
                  Assign(domain.md.cfg.format, format);
                  domain.format_is_known = format.has_value();
                }},
    DomainField{"level", Presence::Required,
                [](const Value& value, DomainDraft& domain) {
                  Assign(domain.md.cfg.level, ReadNumber(value, 0, 7));
                }},
    DomainField{"sender-id", Presence::Optional,
                [](const Value& value, DomainDraft& domain) {
                  Assign(domain.md.cfg.sender_id, ReadWord(value, kMdSenderIds));
                }},
    DomainField{"mhf-creation", Presence::Optional,
                [](const Value& value, DomainDraft& domain) {
                  Assign(domain.md.cfg.mhf_creation, ReadWord(value, kMdMhfCreations));
                }},
    DomainField{"associations", Presence::Optional, ReadAssociations},
};

// A domain's name by itself, and beside the names of its associations.
void CheckNames(const Value& value, const DomainDraft& domain) {
  if (!domain.name || !domain.format_is_known) {
    return;
  }
  const auto format = domain.md.cfg.format;
  if (const auto wrong = CheckMdName(*domain.name, format)) {
    value.Member("name")->Wrong(*wrong);
    return;
  }
  const auto list = value.Member("associations");
  for (std::size_t i = 0; list && i < list->Size(); ++i) {
    const Value item = list->Item(i);
    const auto name = item.Member("name");
    const auto kept = name ? domain.md.mas.find(name->node().text) : domain.md.mas.end();
    if (kept == domain.md.mas.end() || CheckMaName(kept->first, kept->second.cfg.format)) {
      continue;
    }
    if (const auto wrong = CheckMaid(*domain.name, format, kept->first, kept->second.cfg.format)) {
      name->Wrong(*wrong);
    }
  }
}

DomainDraft ReadDomain(const Value& value, const PortOfName& port_of_name) {
  DomainDraft domain(port_of_name);
  auto& cfg = domain.md.cfg;
  cfg.format = cfm::MdNameFormat::CharString;
  cfg.sender_id = cfm::SenderIdTlvContent::None;
  cfg.mhf_creation = cfm::MhfCreationMode::None;
  ReadFields(value, kFields, "a domain", domain);
  CheckNames(value, domain);
  return domain;
}

// Adds a domain, and gives all it holds the names of their owners.
void Keep(HierarchyDraft& draft, DomainDraft domain) {
  const std::string& name = *domain.name;
  for (auto& [ma_name, ma] : domain.md.mas) {
    ma.md_name = name;
    for (auto& [mep_id, mep] : ma.meps) {
      mep.md_name = name;
      mep.ma_name = ma_name;
    }
  }
  for (const std::string& ma_name : domain.unclear_mas) {
    draft.unclear_mas.emplace(name, ma_name);
  }
  if (!domain.associations_are_known) {
    draft.unclear_mds.insert(name);
  }
  draft.hierarchy.mds.emplace(name, std::move(domain.md));
}

}  // namespace

HierarchyDraft ReadDomains(const Value& domains, const PortOfName& port_of_name) {
  HierarchyDraft draft;
  draft.unclear = !CheckList(domains, "domains");
  Unique<std::string> unique;
  for (std::size_t i = 0; i < domains.Size(); ++i) {
    const Value item = domains.Item(i);
    DomainDraft domain = ReadDomain(item, port_of_name);
    if (!domain.name || !unique.Add(*domain.name, *item.Member("name"))) {
      draft.unclear = true;
      continue;
    }
    Keep(draft, std::move(domain));
  }
  return draft;
}

}  // namespace cfm_agent
