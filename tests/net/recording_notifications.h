/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_NET_RECORDING_NOTIFICATIONS_H
#define CFM_TESTS_NET_RECORDING_NOTIFICATIONS_H

#include <cstdint>
#include <vector>

#include "engine/notifications.h"

namespace cfm_mgr::net {

/** Keeps what an engine tells. */
class RecordingNotifications : public engine::Notifications {
 public:
  std::vector<std::uint32_t> alarms;  ///< The defect priorities.
  std::vector<engine::LinktraceReply> linktrace_replies;
  std::vector<engine::LoopbackResult> loopback_results;
  std::vector<engine::DelayResult> delay_results;
  int linktraces_ended = 0;
  int loopback_replies = 0;
  int delay_replies = 0;

  void OnLocalMepChanged(const MepKey& /*mep*/) override {}
  void OnRemoteMepChanged(const MepKey& /*mep*/, std::uint32_t /*remote_mep_id*/) override {}
  void OnFaultAlarm(const MepKey& /*mep*/, std::uint32_t defect_priority) override {
    alarms.push_back(defect_priority);
  }
  void OnLoopbackReply(std::uint32_t /*request_id*/, const engine::Mac& /*source*/,
                       std::uint32_t /*transaction_id*/) override {
    ++loopback_replies;
  }
  void OnLoopbackEnded(std::uint32_t /*request_id*/,
                       const engine::LoopbackResult& result) override {
    loopback_results.push_back(result);
  }
  void OnLinktraceReply(const MepKey& /*mep*/, const engine::LinktraceReply& reply) override {
    linktrace_replies.push_back(reply);
  }
  void OnLinktraceEnded(const MepKey& /*mep*/, std::uint32_t /*transaction_id*/) override {
    ++linktraces_ended;
  }
  void OnDelayReply(std::uint32_t /*request_id*/, const engine::Mac& /*source*/) override {
    ++delay_replies;
  }
  void OnDelayEnded(std::uint32_t /*request_id*/, const engine::DelayResult& result) override {
    delay_results.push_back(result);
  }
  void OnSessionEnded(const engine::SessionResult& /*result*/) override {}
};

}  // namespace cfm_mgr::net

#endif
