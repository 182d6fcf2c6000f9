// SPDX-License-Identifier: Apache-2.0
#include "engine_events.h"

#include <cfm/identifiers.h>

#include <string>
#include <utility>

#include "naming.h"
#include "test_messages.h"

namespace cfm_mgr {

StatusChanges EngineEvents::TakeChanges() { return std::exchange(changes_, {}); }

template <class Message>
void EngineEvents::Publish(const vorx_event_descriptor* event, const Message& message) {
  environment_.Publish(*event, message.SerializeAsString());
}

void EngineEvents::OnLocalMepChanged(const MepKey& mep) { changes_.locals.insert(mep); }

void EngineEvents::OnRemoteMepChanged(const MepKey& mep, std::uint32_t remote_mep_id) {
  changes_.remotes[mep].insert(remote_mep_id);
}

void EngineEvents::OnFaultAlarm(const MepKey& mep, std::uint32_t defect_priority) {
  environment_.Log(Subject(mep) + ": fault alarm: defect of priority " +
                   std::to_string(defect_priority));
}

void EngineEvents::OnLoopbackReply(std::uint32_t request_id, const engine::Mac& source,
                                   std::uint32_t transaction_id) {
  Publish(CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX, LoopbackReply(request_id, source, transaction_id));
}

void EngineEvents::OnLoopbackEnded(std::uint32_t request_id, const engine::LoopbackResult& result) {
  Publish(CFM_MGR_SRV_EVENT_LOOPBACK_ENDED, LoopbackEnded(request_id, result));
}

void EngineEvents::OnLinktraceReply(const MepKey& mep, const engine::LinktraceReply& reply) {
  Publish(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, LinktraceReply(mep, reply));
}

void EngineEvents::OnLinktraceEnded(const MepKey& mep, std::uint32_t transaction_id) {
  Publish(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, LinktraceEnded(mep, transaction_id));
}

void EngineEvents::OnDelayReply(std::uint32_t request_id, const engine::Mac& source) {
  Publish(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX, DelayReply(request_id, source));
}

void EngineEvents::OnDelayEnded(std::uint32_t request_id, const engine::DelayResult& result) {
  Publish(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_ENDED, DelayEnded(request_id, result));
}

void EngineEvents::OnSessionEnded(const engine::SessionResult& result) {
  Publish(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_SESSION_ENDED, SessionEnded(result));
}

}  // namespace cfm_mgr
