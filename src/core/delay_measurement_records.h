/* SPDX-License-Identifier: Apache-2.0 */
// The results of a probe's session as the record that the handler gets.
#ifndef CFM_SRC_CORE_DELAY_MEASUREMENT_RECORDS_H
#define CFM_SRC_CORE_DELAY_MEASUREMENT_RECORDS_H

#include <cfm/client_server.pb.h>
#include <cfm/delay_measurement.h>

namespace cfm::core {

DelayMeasurementSessionResult SessionResult(
    const client_server::OpDelayMeasurementSessionEnded& message);

}  // namespace cfm::core

#endif
