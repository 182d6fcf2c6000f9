// SPDX-License-Identifier: Apache-2.0
#include "core/association_reader.h"

#include <algorithm>
#include <limits>

#include "core/endpoint_reader.h"
#include "core/names.h"

namespace cfm_agent {
namespace {

template <typename Integer>
constexpr std::uint64_t kMax = std::numeric_limits<Integer>::max();

using AisField = Field<cfm::st_ais_cfg>;
using AssociationField = Field<AssociationDraft>;

// Calls `add` for each number of a list, no number twice. Whether all of them could be read.
template <typename Add>
bool ReadNumbers(const Value& list, std::string_view what, std::uint64_t min, std::uint64_t max,
                 Add add) {
  bool all = CheckList(list, what);
  Unique<std::uint64_t> unique;
  for (std::size_t i = 0; i < list.Size(); ++i) {
    const Value item = list.Item(i);
    const auto number = ReadNumber(item, min, max);
    if (!number) {
      all = false;
    } else if (unique.Add(*number, item)) {
      add(static_cast<std::uint16_t>(*number));
    }
  }
  return all;
}

constexpr std::array kAisFields = {
    AisField{
        "enabled", Presence::Required,
        [](const Value& value, cfm::st_ais_cfg& ais) { Assign(ais.enabled, ReadBool(value)); }},
    AisField{"octet-a", Presence::Optional,
             [](const Value& value, cfm::st_ais_cfg& ais) {
               Assign(ais.octet_a, ReadNumber(value, 0, kMax<std::uint8_t>));
             }},
    AisField{"word-b", Presence::Optional,
             [](const Value& value, cfm::st_ais_cfg& ais) {
               Assign(ais.word_b, ReadNumber(value, 0, kMax<std::uint32_t>));
             }},
    AisField{"id-set", Presence::Optional,
             [](const Value& value, cfm::st_ais_cfg& ais) {
               ReadNumbers(value, "numbers", 0, kMax<std::uint16_t>,
                           [&ais](std::uint16_t id) { ais.id_set.insert(id); });
             }},
    AisField{"octet-c", Presence::Optional,
             [](const Value& value, cfm::st_ais_cfg& ais) {
               Assign(ais.octet_c, ReadNumber(value, 0, kMax<std::uint8_t>));
             }},
    AisField{"flag-d", Presence::Optional,
             [](const Value& value, cfm::st_ais_cfg& ais) { Assign(ais.flag_d, ReadBool(value)); }},
};

// What an endpoint says must fit what its association says.
void CheckEndpoint(const Value& value, const EndpointDraft& endpoint,
                   const AssociationDraft& draft) {
  const auto& cfg = draft.ma.cfg;
  if (draft.mep_list_is_known && endpoint.mep_id && cfg.mep_ids.count(*endpoint.mep_id) == 0) {
    value.Member("mep-id")->Wrong(std::to_string(*endpoint.mep_id) +
                                  " is not in the association's mep-ids; add it there");
  }
  const std::uint16_t vid = endpoint.cfg.primary_vid;
  if (draft.vids_are_known && vid != 0 &&
      std::find(cfg.vids.begin(), cfg.vids.end(), vid) == cfg.vids.end()) {
    value.Member("primary-vid")
        ->Wrong(std::to_string(vid) + " is not in the association's vids; use one of them, or 0 " +
                "for the first");
  }
}

void ReadEndpoints(const Value& list, AssociationDraft& draft) {
  CheckList(list, "endpoints");
  Unique<std::uint16_t> unique;
  for (std::size_t i = 0; i < list.Size(); ++i) {
    const Value item = list.Item(i);
    const EndpointDraft endpoint = ReadEndpoint(item, draft.port_of_name);
    if (!endpoint.mep_id) {
      draft.endpoints_are_known = false;
    } else if (unique.Add(*endpoint.mep_id, *item.Member("mep-id"))) {
      draft.ma.meps[*endpoint.mep_id].cfg = endpoint.cfg;
    }
    CheckEndpoint(item, endpoint, draft);
  }
}

constexpr std::array kFields = {
    AssociationField{"name", Presence::Required,
                     [](const Value& value, AssociationDraft& draft) {
                       draft.name = ReadText(value, "an association's name");
                     }},
    AssociationField{"name-format", Presence::Optional,
                     [](const Value& value, AssociationDraft& draft) {
                       const auto format = ReadWord(value, kMaNameFormats);
                       Assign(draft.ma.cfg.format, format);
                       draft.format_is_known = format.has_value();
                     }},
    AssociationField{"vids", Presence::Optional,
                     [](const Value& value, AssociationDraft& draft) {
                       draft.vids_are_known = ReadNumbers(
                           value, "VIDs", 1, kMaxVid,
                           [&draft](std::uint16_t vid) { draft.ma.cfg.vids.push_back(vid); });
                     }},
    AssociationField{"ccm-interval", Presence::Optional,
                     [](const Value& value, AssociationDraft& draft) {
                       Assign(draft.ma.cfg.ccm_interval, ReadWord(value, kCcmIntervals));
                     }},
    AssociationField{"mep-ids", Presence::Optional,
                     [](const Value& value, AssociationDraft& draft) {
                       draft.mep_list_is_known = ReadNumbers(
                           value, "MEP identifiers", 1, kMaxMepId,
                           [&draft](std::uint16_t mep_id) { draft.ma.cfg.mep_ids.insert(mep_id); });
                     }},
    AssociationField{"sender-id", Presence::Optional,
                     [](const Value& value, AssociationDraft& draft) {
                       Assign(draft.ma.cfg.sender_id, ReadWord(value, kMaSenderIds));
                     }},
    AssociationField{"mhf-creation", Presence::Optional,
                     [](const Value& value, AssociationDraft& draft) {
                       Assign(draft.ma.cfg.mhf_creation, ReadWord(value, kMaMhfCreations));
                     }},
    AssociationField{"ais", Presence::Optional,
                     [](const Value& value, AssociationDraft& draft) {
                       ReadFields(value, kAisFields, "an AIS configuration", draft.ma.cfg.ais);
                     }},
    // Last: endpoints are held against the lists above.
    AssociationField{"endpoints", Presence::Optional, ReadEndpoints},
};

void CheckName(const Value& association, const AssociationDraft& draft) {
  if (!draft.name || !draft.format_is_known) {
    return;
  }
  if (const auto wrong = CheckMaName(*draft.name, draft.ma.cfg.format)) {
    association.Member("name")->Wrong(*wrong);
  }
}

}  // namespace

AssociationDraft ReadAssociation(const Value& association, const PortOfName& port_of_name) {
  AssociationDraft draft(port_of_name);
  auto& cfg = draft.ma.cfg;
  cfg.format = cfm::MaNameFormat::CharString;
  cfg.ccm_interval = cfm::CcmInterval::Interval1s;
  cfg.sender_id = cfm::SenderIdTlvContent::Defer;
  cfg.mhf_creation = cfm::MhfCreationMode::Defer;
  ReadFields(association, kFields, "an association", draft);
  CheckName(association, draft);
  return draft;
}

}  // namespace cfm_agent
