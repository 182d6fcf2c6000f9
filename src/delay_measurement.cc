// SPDX-License-Identifier: Apache-2.0
// On-demand delay measurement: trigger, refusal, progress and results; and the end of a probe's
// session.
//
// The first four reports: parsed and logged with or without a delay-measurement handler, the record
// coming before the call. The end of a session is the status handler's and is never logged. What
// does not parse is used as far as it was read.
#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>

#include "client_impl.h"
#include "core/delay_measurement_records.h"
#include "core/mac.h"
#include "core/numbers.h"
#include "core/test_requests.h"
#include "log_points.h"
#include "receive.h"
#include "send_trigger.h"

namespace cfm {

using core::Low16;

void ClientImpl::DelayMeasurementTrigger(const delay_measurement_trigger& trigger) const {
  SendTrigger<log_point::kDelaySerializing, log_point::kDelaySending, log_point::kDelaySent>(
      CFM_MGR_C2S_SIG_DM_TRIGGER, core::DelayMeasurementRequest(trigger));
}

void ClientImpl::HandleDelayMeasurementTriggerError(vorx_t* /*handle*/, void* user,
                                                    const vorx_pid_t* /*sender*/, void* data,
                                                    unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  const auto message = Receive<client_server::OpDelayMeasurementTriggerError>(data, length);
  Log<log_point::kDelayTriggerError>(self.log_category, message.error_code());
  if (self.delay_measurement_handler != nullptr) {
    self.delay_measurement_handler->OnDelayMeasurementTriggerError(
        message.request_id(), message.error_code(), message.md_name(), message.ma_name(),
        Low16(message.mep_id()), Low16(message.remote_mep_id()));
  }
}

void ClientImpl::HandleDelayMeasurementStarted(vorx_t* /*handle*/, void* user, void* data,
                                               unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  const auto message = Receive<client_server::OpDelayMeasurementStarted>(data, length);
  const st_mac target = core::MacFromBytes(message.mac_address());
  Log<log_point::kDelayStarted>(self.log_category, core::MacText(target).data());
  if (self.delay_measurement_handler != nullptr) {
    self.delay_measurement_handler->OnDelayMeasurementStarted(message.request_id(), target);
  }
}

void ClientImpl::HandleDelayMeasurementReplyRx(vorx_t* /*handle*/, void* user, void* data,
                                               unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  const auto message = Receive<client_server::OpDelayMeasurementReplyRx>(data, length);
  const st_mac mac = core::MacFromBytes(message.mac_address());
  Log<log_point::kDelayReply>(self.log_category, core::MacText(mac).data());
  if (self.delay_measurement_handler != nullptr) {
    self.delay_measurement_handler->OnDelayMeasurementReplyRx(message.request_id(), mac);
  }
}

void ClientImpl::HandleDelayMeasurementEnded(vorx_t* /*handle*/, void* user, void* data,
                                             unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  const auto message = Receive<client_server::OpDelayMeasurementEnded>(data, length);
  Log<log_point::kDelayEnded>(self.log_category,
                              static_cast<unsigned long long>(message.rx_count()),
                              static_cast<unsigned long long>(message.tx_count()));
  if (self.delay_measurement_handler != nullptr) {
    self.delay_measurement_handler->OnDelayMeasurementEnded(
        message.request_id(), message.rx_count(), message.tx_count(), message.result_1(),
        message.result_2(), message.result_3(), message.result_4(), message.result_5(),
        message.result_6(), message.extra_count());
  }
}

// Parsed with or without a handler; never logged.
void ClientImpl::HandleDelayMeasurementSessionEnded(vorx_t* /*handle*/, void* user, void* data,
                                                    unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  const auto message = Receive<client_server::OpDelayMeasurementSessionEnded>(data, length);
  if (self.status_handler != nullptr) {
    self.status_handler->OnDelayMeasurementSessionEnded(core::SessionResult(message));
  }
}

}  // namespace cfm
