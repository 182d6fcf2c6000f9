/* SPDX-License-Identifier: Apache-2.0 */
// For networks of which only the frames matter.
#ifndef CFM_FUZZ_IGNORED_NOTIFICATIONS_H
#define CFM_FUZZ_IGNORED_NOTIFICATIONS_H

#include <cstdint>

#include "engine/notifications.h"

namespace cfm_fuzz {

class IgnoredNotifications : public cfm_mgr::engine::Notifications {
 public:
  using Mac = cfm_mgr::engine::Mac;
  using MepKey = cfm_mgr::MepKey;

  void OnLocalMepChanged(const MepKey& /*mep*/) override {}
  void OnRemoteMepChanged(const MepKey& /*mep*/, std::uint32_t /*remote*/) override {}
  void OnFaultAlarm(const MepKey& /*mep*/, std::uint32_t /*priority*/) override {}
  void OnLoopbackReply(std::uint32_t /*request*/, const Mac& /*source*/,
                       std::uint32_t /*transaction*/) override {}
  void OnLoopbackEnded(std::uint32_t /*request*/,
                       const cfm_mgr::engine::LoopbackResult& /*result*/) override {}
  void OnLinktraceReply(const MepKey& /*mep*/,
                        const cfm_mgr::engine::LinktraceReply& /*reply*/) override {}
  void OnLinktraceEnded(const MepKey& /*mep*/, std::uint32_t /*transaction*/) override {}
  void OnDelayReply(std::uint32_t /*request*/, const Mac& /*source*/) override {}
  void OnDelayEnded(std::uint32_t /*request*/,
                    const cfm_mgr::engine::DelayResult& /*result*/) override {}
  void OnSessionEnded(const cfm_mgr::engine::SessionResult& /*result*/) override {}
};

}  // namespace cfm_fuzz

#endif
