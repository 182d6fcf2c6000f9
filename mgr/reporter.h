/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Publishes what becomes of endpoints.
 *
 * A removal is published when it happens. Everything new or changed waits until Flush(), so that a
 * burst of requests which first adds an endpoint and then names its neighbours is reported once, as
 * it ended. A remote MEP is reported removed if it had been reported, or could have been by an
 * earlier run of the server.
 */
#ifndef CFM_MGR_REPORTER_H
#define CFM_MGR_REPORTER_H

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "engine/engine.h"
#include "engine_events.h"
#include "environment.h"
#include "model.h"
#include "store.h"

namespace cfm_mgr {

class Reporter {
 public:
  /**
   * Takes everything in the tree as reported by an earlier run. The engine is to have what is in
   * the tree whenever something is published.
   */
  Reporter(const Tree& tree, const engine::Engine& engine, EngineEvents& events,
           Environment& environment);

  /** Takes note of one request's outcome, and publishes what it removed. */
  void Note(const Outcome& outcome);

  /** Publishes the status of what is new or changed, and the removal of remote MEPs. */
  void Flush();

  /** How many endpoints PublishAll() reported. */
  struct Published {
    std::size_t local = 0;
    std::size_t remote = 0;
  };

  /** Publishes the status of every local and remote MEP. */
  Published PublishAll();

 private:
  /** What has been reported of an association: its local MEPs, each with its remotes. */
  using View = std::map<std::uint32_t, std::vector<std::uint32_t>>;

  static View ViewOf(const Association& association);

  void Remove(const MepKey& key);
  void PublishLocal(const MepKey& key);
  void PublishRemote(const MepKey& key, std::uint32_t remote);
  void PublishRemotes(const MepKey& key, const std::vector<std::uint32_t>& remotes);
  void PublishRemotesRemoved(const MepKey& key, const std::vector<std::uint32_t>& remotes);
  /** Publishes what changed by itself, of all that is reported. */
  void PublishChanges();
  bool IsReported(const MepKey& key, std::uint32_t remote) const;

  /**
   * Brings what has been reported of an association up to date: the remotes that are gone and those
   * that were added, and everything of the endpoints that @p is_new tells by their identifiers.
   */
  template <class IsNew>
  const View& Report(const MaKey& key, const Association& association, const IsNew& is_new);

  const Tree& tree_;
  const engine::Engine& engine_;
  EngineEvents& events_;
  Environment& environment_;
  std::map<MaKey, View> reported_;
  StatusChanges changes_;  ///< Those that Flush() has not published yet.
  /** The associations that Flush() is to look at, each with its endpoints of new settings. */
  std::map<MaKey, std::set<std::uint32_t>> touched_;
};

}  // namespace cfm_mgr

#endif
