/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * What the engine tells: results of tests are published at once, changes of status are noted for
 * the reporter.
 */
#ifndef CFM_MGR_ENGINE_EVENTS_H
#define CFM_MGR_ENGINE_EVENTS_H

#include <cstdint>
#include <map>
#include <set>

#include "engine/notifications.h"
#include "environment.h"
#include "model.h"

namespace cfm_mgr {

/** Endpoints whose status changed. */
struct StatusChanges {
  std::set<MepKey> locals;
  std::map<MepKey, std::set<std::uint32_t>> remotes;
};

class EngineEvents : public engine::Notifications {
 public:
  explicit EngineEvents(Environment& environment) : environment_(environment) {}

  bool HasChanges() const { return !changes_.locals.empty() || !changes_.remotes.empty(); }

  /** What changed since the last call. */
  StatusChanges TakeChanges();

  void OnLocalMepChanged(const MepKey& mep) override;
  void OnRemoteMepChanged(const MepKey& mep, std::uint32_t remote_mep_id) override;
  void OnFaultAlarm(const MepKey& mep, std::uint32_t defect_priority) override;

  void OnLoopbackReply(std::uint32_t request_id, const engine::Mac& source,
                       std::uint32_t transaction_id) override;
  void OnLoopbackEnded(std::uint32_t request_id, const engine::LoopbackResult& result) override;
  void OnLinktraceReply(const MepKey& mep, const engine::LinktraceReply& reply) override;
  void OnLinktraceEnded(const MepKey& mep, std::uint32_t transaction_id) override;
  void OnDelayReply(std::uint32_t request_id, const engine::Mac& source) override;
  void OnDelayEnded(std::uint32_t request_id, const engine::DelayResult& result) override;
  void OnSessionEnded(const engine::SessionResult& result) override;

 private:
  template <class Message>
  void Publish(const vorx_event_descriptor* event, const Message& message);

  Environment& environment_;
  StatusChanges changes_;
};

}  // namespace cfm_mgr

#endif
