// SPDX-License-Identifier: Apache-2.0
#include "core/probe_reader.h"

#include "core/endpoint_reader.h"
#include "core/text.h"

#include <limits>

namespace cfm_agent {
namespace {

constexpr std::uint64_t kMaxU16 = std::numeric_limits<std::uint16_t>::max();
// Of a session that does not say otherwise.
constexpr std::uint16_t kSessionInterval = 100;
constexpr std::uint16_t kSessionSize = 64;

struct SessionDraft {
  std::optional<std::uint64_t> id;
  cfm::session_cfg cfg;
};

struct ProbeDraft {
  std::optional<std::uint64_t> id;
  std::optional<std::string> domain;
  std::optional<std::string> association;
  std::optional<std::uint64_t> mep_id;
  std::optional<std::uint64_t> remote_mep_id;
  cfm::probe_cfg cfg;
};

using SessionField = Field<SessionDraft>;
using ProbeField = Field<ProbeDraft>;

constexpr std::array kSessionFields = {
    SessionField{"id", Presence::Required,
                 [](const Value& value, SessionDraft& session) {
                   session.id = ReadNumber(value, 1, kMaxU16);
                 }},
    SessionField{"count", Presence::Required,
                 [](const Value& value, SessionDraft& session) {
                   Assign(session.cfg.count, ReadNumber(value, 0, kMaxU16));
                 }},
    SessionField{"interval", Presence::Optional,
                 [](const Value& value, SessionDraft& session) {
                   Assign(session.cfg.interval, ReadNumber(value, 0, kMaxU16));
                 }},
    SessionField{"size", Presence::Optional,
                 [](const Value& value, SessionDraft& session) {
                   Assign(session.cfg.size, ReadNumber(value, 0, kMaxU16));
                 }},
    SessionField{"pcp", Presence::Optional,
                 [](const Value& value, SessionDraft& session) {
                   Assign(session.cfg.pcp, ReadNumber(value, 0, 7));
                 }},
};

void ReadSessions(const Value& list, ProbeDraft& probe) {
  CheckList(list, "sessions");
  Unique<std::uint64_t> unique;
  for (std::size_t i = 0; i < list.Size(); ++i) {
    const Value item = list.Item(i);
    SessionDraft session;
    session.cfg.interval = kSessionInterval;
    session.cfg.size = kSessionSize;
    ReadFields(item, kSessionFields, "a session", session);
    if (session.id && unique.Add(*session.id, *item.Member("id"))) {
      probe.cfg.sessions[static_cast<std::uint16_t>(*session.id)] = session.cfg;
    }
  }
}

constexpr std::array kProbeFields = {
    ProbeField{"id", Presence::Required,
               [](const Value& value, ProbeDraft& probe) {
                 probe.id = ReadNumber(value, 1, kMaxU16);
                 Assign(probe.cfg.id, probe.id);
               }},
    ProbeField{"interval", Presence::Required,
               [](const Value& value, ProbeDraft& probe) {
                 Assign(probe.cfg.interval, ReadNumber(value, 0, kMaxU16));
               }},
    ProbeField{"domain", Presence::Required,
               [](const Value& value, ProbeDraft& probe) {
                 probe.domain = ReadText(value, "a domain's name");
                 Assign(probe.cfg.md, probe.domain);
               }},
    ProbeField{"association", Presence::Required,
               [](const Value& value, ProbeDraft& probe) {
                 probe.association = ReadText(value, "an association's name");
                 Assign(probe.cfg.ma, probe.association);
               }},
    ProbeField{"mep-id", Presence::Required,
               [](const Value& value, ProbeDraft& probe) {
                 probe.mep_id = ReadNumber(value, 1, kMaxMepId);
                 Assign(probe.cfg.lmep, probe.mep_id);
               }},
    ProbeField{"remote-mep-id", Presence::Required,
               [](const Value& value, ProbeDraft& probe) {
                 probe.remote_mep_id = ReadNumber(value, 1, kMaxMepId);
                 Assign(probe.cfg.rmep, probe.remote_mep_id);
               }},
    ProbeField{"sessions", Presence::Optional, ReadSessions},
};

// Notes that a name is none of those that there are.
template <typename Named>
void NoteUnknownName(const Value& value, std::string_view what, const Named& named) {
  constexpr std::size_t kMostShown = 5;
  constexpr std::size_t kMostCompared = 200;
  std::vector<std::string_view> names;
  names.reserve(named.size());
  for (const auto& entry : named) {
    names.push_back(entry.first);
  }
  std::string text = value.Shown() + " is not the name of " + std::string(what) + "; ";
  const auto guess =
      names.size() <= kMostCompared ? ClosestWord(value.node().text, names) : std::nullopt;
  if (guess) {
    value.Wrong(text + "did you mean " + Quoted(*guess) + "?");
    return;
  }
  std::vector<std::string> quoted;
  for (std::size_t i = 0; i < names.size() && i < kMostShown; ++i) {
    quoted.push_back(Quoted(names[i]));
  }
  if (names.size() > kMostShown) {
    quoted.emplace_back("another of the " + std::to_string(names.size()));
  }
  text +=
      quoted.empty() ? "there is none" : "use " + JoinAlternatives({quoted.begin(), quoted.end()});
  value.Wrong(text);
}

void CheckEndpoints(const Value& value, const ProbeDraft& probe, const cfm::hierarchy_ma& ma) {
  const auto& mep_ids = ma.cfg.mep_ids;
  if (probe.mep_id && ma.meps.count(probe.cfg.lmep) == 0) {
    value.Member("mep-id")->Wrong(std::to_string(*probe.mep_id) +
                                  " is not an endpoint of the association; use the mep-id of one");
  }
  if (!probe.remote_mep_id) {
    return;
  }
  const Value remote = *value.Member("remote-mep-id");
  if (probe.mep_id == probe.remote_mep_id) {
    remote.Wrong(remote.Shown() + " is the local endpoint itself; use another of the " +
                 "association's mep-ids");
  } else if (mep_ids.count(probe.cfg.rmep) == 0) {
    remote.Wrong(remote.Shown() + " is not in the association's mep-ids; use one of those");
  }
}

void CheckReferences(const Value& value, const ProbeDraft& probe, const HierarchyDraft& draft) {
  if (!probe.domain) {
    return;
  }
  const auto& mds = draft.hierarchy.mds;
  const auto md = mds.find(*probe.domain);
  if (md == mds.end()) {
    if (!draft.unclear) {
      NoteUnknownName(*value.Member("domain"), "a domain in this file", mds);
    }
    return;
  }
  if (!probe.association) {
    return;
  }
  const auto ma = md->second.mas.find(*probe.association);
  if (ma == md->second.mas.end()) {
    if (draft.unclear_mds.count(md->first) == 0) {
      NoteUnknownName(*value.Member("association"), "an association of that domain",
                      md->second.mas);
    }
    return;
  }
  if (draft.unclear_mas.count({md->first, ma->first}) == 0) {
    CheckEndpoints(value, probe, ma->second);
  }
}

}  // namespace

cfm::probe ReadProbes(const Value& probes, const HierarchyDraft& hierarchy) {
  cfm::probe result;
  CheckList(probes, "probes");
  Unique<std::uint64_t> unique;
  for (std::size_t i = 0; i < probes.Size(); ++i) {
    const Value item = probes.Item(i);
    ProbeDraft probe;
    ReadFields(item, kProbeFields, "a probe", probe);
    CheckReferences(item, probe, hierarchy);
    if (probe.id && unique.Add(*probe.id, *item.Member("id"))) {
      result.probes[probe.cfg.id] = std::move(probe.cfg);
    }
  }
  return result;
}

}  // namespace cfm_agent
