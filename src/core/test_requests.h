/* SPDX-License-Identifier: Apache-2.0 */
// The three on-demand test requests as messages.
#ifndef CFM_SRC_CORE_TEST_REQUESTS_H
#define CFM_SRC_CORE_TEST_REQUESTS_H

#include <cfm/client_server.pb.h>
#include <cfm/delay_measurement.h>
#include <cfm/linktrace.h>
#include <cfm/loopback.h>

namespace cfm::core {

client_server::OpLinktraceTriggerMsg LinktraceRequest(const linktrace_trigger& trigger);
client_server::OpLoopbackTriggerMsg LoopbackRequest(const loopback_trigger& trigger);
client_server::OpDelayMeasurementTriggerMsg DelayMeasurementRequest(
    const delay_measurement_trigger& trigger);

}  // namespace cfm::core

#endif
