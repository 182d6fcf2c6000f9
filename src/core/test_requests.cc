// SPDX-License-Identifier: Apache-2.0
#include "core/test_requests.h"

namespace cfm::core {
namespace {

// What every test request begins with.
template <typename Message, typename Trigger>
void SetKey(Message& message, const Trigger& trigger) {
  message.set_md_name(trigger.md_name);
  message.set_ma_name(trigger.ma_name);
  message.set_request_id(trigger.request_id);
  message.set_mep_id(trigger.mep_id);
  message.set_remote_mep_id(trigger.remote_mep_id);
}

}  // namespace

client_server::OpLinktraceTriggerMsg LinktraceRequest(const linktrace_trigger& trigger) {
  client_server::OpLinktraceTriggerMsg message;
  SetKey(*message.mutable_key(), trigger);
  message.set_ttl(trigger.ttl);
  return message;
}

client_server::OpLoopbackTriggerMsg LoopbackRequest(const loopback_trigger& trigger) {
  client_server::OpLoopbackTriggerMsg message;
  SetKey(message, trigger);
  message.set_param_a(trigger.param_a);
  message.set_param_b(trigger.param_b);
  return message;
}

client_server::OpDelayMeasurementTriggerMsg DelayMeasurementRequest(
    const delay_measurement_trigger& trigger) {
  client_server::OpDelayMeasurementTriggerMsg message;
  SetKey(message, trigger);
  message.set_param_a(trigger.param_a);
  message.set_param_b(trigger.param_b);
  message.set_param_c(trigger.param_c);
  message.set_param_d(trigger.param_d);
  return message;
}

}  // namespace cfm::core
