/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Tests between the messages of the wire and the engine: what the parameters and result fields
 * mean that the client library passes through. The documentation has them in one table; they are
 * part of what clients rely on.
 */
#ifndef CFM_MGR_TEST_MESSAGES_H
#define CFM_MGR_TEST_MESSAGES_H

#include <cfm/client_server.pb.h>

#include <cstdint>

#include "engine/engine.h"

namespace cfm_mgr {

/** @name Triggers
 * @{ */
engine::LoopbackRequest FromMessage(const client_server::OpLoopbackTriggerMsg& trigger);
engine::LinktraceRequest FromMessage(const client_server::OpLinktraceTriggerMsg& trigger);
engine::DelayRequest FromMessage(const client_server::OpDelayMeasurementTriggerMsg& trigger);
/** @} */

/** @name Starts
 * @{ */
client_server::OpLoopbackStarted Started(const engine::LoopbackRequest& request,
                                         const engine::StartedTest& test);
client_server::OpLinktraceStarted Started(const engine::LinktraceRequest& request,
                                          const engine::StartedTest& test);
client_server::OpDelayMeasurementStarted Started(const engine::DelayRequest& request,
                                                 const engine::StartedTest& test);
/** @} */

/** @name Results
 * @{ */
client_server::OpLoopbackReplyRx LoopbackReply(std::uint32_t request_id, const engine::Mac& source,
                                               std::uint32_t transaction_id);
client_server::OpLoopbackEnded LoopbackEnded(std::uint32_t request_id,
                                             const engine::LoopbackResult& result);
client_server::OpLinktraceReplyRx LinktraceReply(const MepKey& mep,
                                                 const engine::LinktraceReply& reply);
client_server::OpLinktraceEnded LinktraceEnded(const MepKey& mep, std::uint32_t transaction_id);
client_server::OpDelayMeasurementReplyRx DelayReply(std::uint32_t request_id,
                                                    const engine::Mac& source);
client_server::OpDelayMeasurementEnded DelayEnded(std::uint32_t request_id,
                                                  const engine::DelayResult& result);
client_server::OpDelayMeasurementSessionEnded SessionEnded(const engine::SessionResult& result);
/** @} */

}  // namespace cfm_mgr

#endif
