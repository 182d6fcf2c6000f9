/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_PROVISIONER_H
#define CFM_MGR_PROVISIONER_H

#include <cstdint>
#include <set>

#include "engine/engine.h"
#include "model.h"
#include "store.h"

namespace cfm_mgr {

/**
 * Keeps the engine's configuration as the store's.
 *
 * Changes are collected, so that an association that is built up endpoint by endpoint is given to
 * the engine once, as it ended.
 */
class Provisioner {
 public:
  /** Everything in the tree is to be given to the engine. Both outlive this object. */
  Provisioner(const Tree& tree, engine::Engine& engine);

  /** Takes note of what a request changed. */
  void Note(const Outcome& outcome);

  /** Whether Apply() has something to do. */
  bool pending() const { return !associations_.empty() || !probes_.empty(); }

  /** Gives the engine what changed. */
  void Apply(engine::Time now);

 private:
  const Tree& tree_;
  engine::Engine& engine_;
  std::set<MaKey> given_;         ///< The associations that the engine has.
  std::set<MaKey> associations_;  ///< Those that changed, came or went.
  std::set<std::uint32_t> probes_;
};

}  // namespace cfm_mgr

#endif
