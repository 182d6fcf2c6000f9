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

Reporter::Reporter(const Tree& tree, Environment& environment)
    : tree_(tree), environment_(environment) {
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
  const std::vector<std::uint32_t> gone = Difference(reported.remotes, now.remotes);
  const std::vector<std::uint32_t> added = Difference(now.remotes, reported.remotes);
  for (const auto& [mep_id, mep] : association.meps) {
    const MepKey mep_key{key, mep_id};
    if (reported.locals.count(mep_id) != 0) PublishRemotesRemoved(mep_key, gone);
    if (is_new(mep_id)) {
      PublishLocal(mep_key, mep);
      PublishRemotes(mep_key, mep, now.remotes);
    } else {
      PublishRemotes(mep_key, mep, added);
    }
  }
  reported = std::move(now);
  return reported;
}

void Reporter::Flush() {
  for (const auto& [key, reset_meps] : std::exchange(touched_, {})) {
    if (const Association* association = FindAssociation(tree_, key)) {
      Report(key, *association,
             [&reset = reset_meps](std::uint32_t mep_id) { return reset.count(mep_id) != 0; });
    } else {
      reported_.erase(key);
    }
  }
  interfaces_.clear();
}

Reporter::Published Reporter::PublishAll() {
  for (const auto& entry : std::exchange(touched_, {})) {
    if (FindAssociation(tree_, entry.first) == nullptr) reported_.erase(entry.first);
  }
  Published published;
  ForEachAssociation(tree_, [this, &published](const std::string& md_name,
                                               const std::string& ma_name,
                                               const Association& association) {
    const View& view = Report({md_name, ma_name}, association, [](std::uint32_t) { return true; });
    published.local += view.locals.size();
    published.remote += view.locals.size() * view.remotes.size();
  });
  interfaces_.clear();
  return published;
}

Reporter::View Reporter::ViewOf(const Association& association) {
  View view;
  for (const auto& entry : association.meps) view.locals.insert(view.locals.end(), entry.first);
  view.remotes = RemotesOf(association);
  return view;
}

void Reporter::Remove(const MepKey& key) {
  const auto view = reported_.find(key.ma);
  if (view != reported_.end() && view->second.locals.erase(key.mep_id) != 0) {
    PublishRemotesRemoved(key, view->second.remotes);
  }
  environment_.Publish(*CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, LocalRemoved(key).SerializeAsString());
  touched_[key.ma];
}

void Reporter::PublishLocal(const MepKey& key, const Mep& mep) {
  const auto [interface, missing] = interfaces_.try_emplace(mep.ifindex);
  if (missing) interface->second = environment_.FindInterface(mep.ifindex);
  environment_.Publish(*CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP,
                       LocalStatus(key, interface->second).SerializeAsString());
}

void Reporter::PublishRemotes(const MepKey& key, const Mep& mep,
                              const std::vector<std::uint32_t>& remotes) {
  for (const std::uint32_t remote : remotes) {
    environment_.Publish(*CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP,
                         RemoteStatus(key, mep, remote).SerializeAsString());
  }
}

void Reporter::PublishRemotesRemoved(const MepKey& key, const std::vector<std::uint32_t>& remotes) {
  for (const std::uint32_t remote : remotes) {
    environment_.Publish(*CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP,
                         RemoteRemoved(key, remote).SerializeAsString());
  }
}

}  // namespace cfm_mgr
