// SPDX-License-Identifier: Apache-2.0
#include <cfm/client.h>

#include "client_impl.h"

namespace cfm {

Client::Client(vorx_t* token) : impl(std::make_unique<ClientImpl>(token)) {}

Client::~Client() = default;

void Client::RegisterStatusHandler(ReceivedStatusHandlerIntf* handler) {
  impl->RegisterStatusHandler(handler);
}

void Client::RegisterStatisticsHandler(ReceivedStatisticsHandlerIntf* handler) {
  impl->RegisterStatisticsHandler(handler);
}

void Client::RegisterLinktraceHandler(ReceivedLinktraceHandlerIntf* handler) {
  impl->RegisterLinktraceHandler(handler);
}

void Client::RegisterLoopbackHandler(ReceivedLoopbackHandlerIntf* handler) {
  impl->RegisterLoopbackHandler(handler);
}

void Client::RegisterDelayMeasurementHandler(ReceivedDelayMeasurementHandlerIntf* handler) {
  impl->RegisterDelayMeasurementHandler(handler);
}

void Client::UpdateConfig(const hierarchy& config) { impl->UpdateConfig(config); }

void Client::UpdateConfigProbe(const probe& config) { impl->UpdateConfigProbe(config); }

void Client::RequestStatistics() const { impl->RequestStatistics(); }

void Client::ClearStatistics(const char* md_name, const char* ma_name, std::uint16_t mep_id) const {
  impl->ClearStatistics(md_name, ma_name, mep_id);
}

void Client::LinktraceTrigger(const linktrace_trigger& trigger) { impl->LinktraceTrigger(trigger); }

void Client::LoopbackTrigger(const loopback_trigger& trigger) { impl->LoopbackTrigger(trigger); }

void Client::DelayMeasurementTrigger(const delay_measurement_trigger& trigger) {
  impl->DelayMeasurementTrigger(trigger);
}

}  // namespace cfm
