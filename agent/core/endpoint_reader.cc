// SPDX-License-Identifier: Apache-2.0
#include "core/endpoint_reader.h"

#include "core/names.h"
#include "core/text.h"

namespace cfm_agent {
namespace {

// Bounds and defaults of the fault notification generator, in hundredths of a second.
constexpr std::uint16_t kFngTimeMin = 250;
constexpr std::uint16_t kFngTimeMax = 1000;
constexpr std::uint16_t kFngAlarmTime = 250;
constexpr std::uint16_t kFngResetTime = 1000;
// The highest priority that a port lets pass.
constexpr std::uint8_t kCcmPriority = 7;

using EndpointField = Field<EndpointDraft>;

void ReadPort(const Value& value, EndpointDraft& draft) {
  const auto name = ReadText(value, "a network interface");
  if (!name) {
    return;
  }
  if (const auto wrong = CheckInterfaceName(*name)) {
    value.Wrong(*wrong);
    return;
  }
  draft.cfg.port = draft.port_of_name(*name);
  if (draft.cfg.port == 0) {
    value.Wrong(Quoted(*name) + " gets no port from the host; use fewer interfaces");
  }
}

constexpr std::array kFields = {
    EndpointField{"mep-id", Presence::Required,
                  [](const Value& value, EndpointDraft& draft) {
                    Assign(draft.cfg.mep_id, ReadNumber(value, 1, kMaxMepId));
                    if (draft.cfg.mep_id != 0) {
                      draft.mep_id = draft.cfg.mep_id;
                    }
                  }},
    EndpointField{"direction", Presence::Required,
                  [](const Value& value, EndpointDraft& draft) {
                    Assign(draft.cfg.direction, ReadWord(value, kDirections));
                  }},
    EndpointField{"port", Presence::Required, ReadPort},
    EndpointField{"primary-vid", Presence::Optional,
                  [](const Value& value, EndpointDraft& draft) {
                    Assign(draft.cfg.primary_vid, ReadNumber(value, 0, kMaxVid));
                  }},
    EndpointField{"inner-vid", Presence::Optional,
                  [](const Value& value, EndpointDraft& draft) {
                    Assign(draft.cfg.inner_vid, ReadNumber(value, 0, kMaxVid));
                  }},
    EndpointField{"admin-state", Presence::Optional,
                  [](const Value& value, EndpointDraft& draft) {
                    Assign(draft.cfg.admin_state, ReadBool(value));
                  }},
    EndpointField{"ccm-enabled", Presence::Optional,
                  [](const Value& value, EndpointDraft& draft) {
                    Assign(draft.cfg.ccm_enabled, ReadBool(value));
                  }},
    EndpointField{"ccm-priority", Presence::Optional,
                  [](const Value& value, EndpointDraft& draft) {
                    Assign(draft.cfg.ccm_priority, ReadNumber(value, 0, 7));
                  }},
    EndpointField{"lowest-alarm-priority", Presence::Optional,
                  [](const Value& value, EndpointDraft& draft) {
                    Assign(draft.cfg.lowest_prio_defect, ReadWord(value, kLowestAlarmPriorities));
                  }},
    EndpointField{"fng-alarm-time", Presence::Optional,
                  [](const Value& value, EndpointDraft& draft) {
                    Assign(draft.cfg.fng_alarm_time,
                           ReadCentiseconds(value, kFngTimeMin, kFngTimeMax));
                  }},
    EndpointField{"fng-reset-time", Presence::Optional,
                  [](const Value& value, EndpointDraft& draft) {
                    Assign(draft.cfg.fng_reset_time,
                           ReadCentiseconds(value, kFngTimeMin, kFngTimeMax));
                  }},
    EndpointField{"fault-action", Presence::Optional,
                  [](const Value& value, EndpointDraft& draft) {
                    Assign(draft.cfg.fault_action, ReadWord(value, kFaultActions));
                  }},
    EndpointField{"aux-flag", Presence::Optional,
                  [](const Value& value, EndpointDraft& draft) {
                    Assign(draft.cfg.aux_flag, ReadBool(value));
                  }},
};

}  // namespace

EndpointDraft ReadEndpoint(const Value& endpoint, const PortOfName& port_of_name) {
  EndpointDraft draft(port_of_name);
  draft.cfg.ccm_priority = kCcmPriority;
  draft.cfg.lowest_prio_defect = cfm::Defects::MacRemoteErrorXcon;
  draft.cfg.fng_alarm_time = kFngAlarmTime;
  draft.cfg.fng_reset_time = kFngResetTime;
  ReadFields(endpoint, kFields, "an endpoint", draft);
  return draft;
}

}  // namespace cfm_agent
