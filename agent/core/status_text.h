/* SPDX-License-Identifier: Apache-2.0 */
// The server's reports as text.
#ifndef CFM_AGENT_CORE_STATUS_TEXT_H
#define CFM_AGENT_CORE_STATUS_TEXT_H

#include <cfm/delay_measurement.h>
#include <cfm/status.h>

#include <string>
#include <vector>

#include "core/style.h"

namespace cfm_agent {

// "02:00:5e:00:01:01, port up, interface up, defects: missing CCMs, RDI (highest: missing CCMs)"
std::string Describe(const cfm::local_mep_status& status, const Style& style = {});
// "02:00:5e:00:05:11, ok, port up, interface up, since uptime 5230 ms"
std::string Describe(const cfm::remote_mep_status& status, const Style& style = {});

// "probe 1 session 2 run 3: complete, 10 sent, ...", with the reference server's meanings.
std::string Describe(const cfm::DelayMeasurementSessionResult& result, const Style& style = {});

// The names of the defects there are, the highest first.
std::string DefectNames(const cfm::local_mep_status& status);
// "no defect", or the defects there are.
Span DefectsSpan(const cfm::local_mep_status& status);
// "ok", "failed", ...
Span StateSpan(const cfm::remote_mep_status& status);
// "up", "blocked", ... of a port, and of an interface.
Span PortSpan(std::uint32_t port_status);
Span InterfaceSpan(std::uint32_t interface_status);
// What there is to tell of an endpoint beyond that: "sends RDI", ...
std::vector<Span> RemarksOn(const cfm::local_mep_status& status);

// A number in the fewest decimals that give it back, whatever the locale.
std::string Decimal(double number);
// A number with this many decimals.
std::string Fixed(double number, int decimals);

}  // namespace cfm_agent

#endif
