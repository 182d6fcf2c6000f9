// SPDX-License-Identifier: Apache-2.0
#include "reporter.h"

#include <cfm/identifiers.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "reports.h"

namespace cfm_mgr {
namespace {

/** The elements of @p from that are not in @p without. */
std::vector<std::uint32_t> Difference(const std::vector<std::uint32_t>& from,
                                      const std::vector<std::uint32_t>& without) {
  std::vector<std::uint32_t> difference;
  std::set_difference(from.begin(), from.end(), without.begin(), without.end(),
                      std::back_inserter(difference));
  return difference;
}

}  // namespace

Reporter::Reporter(const Tree& tree, const engine::Engine& engine, EngineEvents& events,
                   Environment& environment)
    : tree_(tree), engine_(engine), events_(events), environment_(environment) {
  ForEachAssociation(tree_, [this](const std::string& md_name, const std::string& ma_name,
                                   const Association& association) {
    reported_[{md_name, ma_name}] = ViewOf(association);
  });
}

void Reporter::Note(const Outcome& outcome) {
  for (const MepKey& key : outcome.removed) Remove(key);
  if (outcome.reset_ma) touched_[*outcome.reset_ma];
  if (outcome.reset_mep) touched_[outcome.reset_mep->ma].insert(outcome.reset_mep->mep_id);
}

template <class IsNew>
const Reporter::View& Reporter::Report(const MaKey& key, const Association& association,
                                       const IsNew& is_new) {
  View& reported = reported_[key];
  View now = ViewOf(association);
  for (const auto& [mep_id, remotes] : now) {
    const MepKey mep{key, mep_id};
    const std::vector<std::uint32_t> before = std::exchange(reported[mep_id], {});
    PublishRemotesRemoved(mep, Difference(before, remotes));
    if (is_new(mep_id)) {
      PublishLocal(mep);
      PublishRemotes(mep, remotes);
    } else {
      PublishRemotes(mep, Difference(remotes, before));
    }
  }
  reported = std::move(now);
  return reported;
}

void Reporter::Flush() {
  changes_ = events_.TakeChanges();
  for (const auto& [key, reset_meps] : std::exchange(touched_, {})) {
    if (const Association* association = FindAssociation(tree_, key)) {
      Report(key, *association,
             [&reset = reset_meps](std::uint32_t mep_id) { return reset.count(mep_id) != 0; });
    } else {
      reported_.erase(key);
    }
  }
  PublishChanges();
}

Reporter::Published Reporter::PublishAll() {
  for (const auto& entry : std::exchange(touched_, {})) {
    if (FindAssociation(tree_, entry.first) == nullptr) reported_.erase(entry.first);
  }
  changes_ = events_.TakeChanges();
  Published published;
  ForEachAssociation(tree_, [this, &published](const std::string& md_name,
                                               const std::string& ma_name,
                                               const Association& association) {
    const View& view = Report({md_name, ma_name}, association, [](std::uint32_t) { return true; });
    published.local += view.size();
    for (const auto& entry : view) published.remote += entry.second.size();
  });
  changes_ = {};
  return published;
}

Reporter::View Reporter::ViewOf(const Association& association) {
  View view;
  for (const auto& entry : association.meps) {
    view[entry.first] = RemotesOf(association, entry.first);
  }
  return view;
}

void Reporter::Remove(const MepKey& key) {
  const auto view = reported_.find(key.ma);
  if (view != reported_.end()) {
    const auto local = view->second.find(key.mep_id);
    if (local != view->second.end()) {
      PublishRemotesRemoved(key, local->second);
      view->second.erase(local);
    }
  }
  environment_.Publish(*CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, LocalRemoved(key).SerializeAsString());
  touched_[key.ma];
}

void Reporter::PublishLocal(const MepKey& key) {
  changes_.locals.erase(key);
  const auto status = engine_.LocalStatus(key);
  if (!status) return;
  environment_.Publish(*CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP,
                       LocalStatus(key, *status).SerializeAsString());
}

void Reporter::PublishRemote(const MepKey& key, std::uint32_t remote) {
  const auto changed = changes_.remotes.find(key);
  if (changed != changes_.remotes.end()) changed->second.erase(remote);
  const auto status = engine_.RemoteStatus(key, remote);
  if (!status) return;
  environment_.Publish(*CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP,
                       RemoteStatus(key, remote, *status).SerializeAsString());
}

void Reporter::PublishRemotes(const MepKey& key, const std::vector<std::uint32_t>& remotes) {
  for (const std::uint32_t remote : remotes) PublishRemote(key, remote);
}

void Reporter::PublishRemotesRemoved(const MepKey& key, const std::vector<std::uint32_t>& remotes) {
  for (const std::uint32_t remote : remotes) {
    environment_.Publish(*CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP,
                         RemoteRemoved(key, remote).SerializeAsString());
  }
}

void Reporter::PublishChanges() {
  const StatusChanges changes = std::exchange(changes_, {});
  for (const MepKey& key : changes.locals) {
    if (FindMep(tree_, key) != nullptr) PublishLocal(key);
  }
  for (const auto& [key, remotes] : changes.remotes) {
    for (const std::uint32_t remote : remotes) {
      if (IsReported(key, remote)) PublishRemote(key, remote);
    }
  }
}

bool Reporter::IsReported(const MepKey& key, std::uint32_t remote) const {
  const auto view = reported_.find(key.ma);
  if (view == reported_.end()) return false;
  const auto local = view->second.find(key.mep_id);
  return local != view->second.end() &&
         std::binary_search(local->second.begin(), local->second.end(), remote);
}

}  // namespace cfm_mgr
