// The server's reports as text.
#ifndef CFM_AGENT_CORE_STATUS_TEXT_H
#define CFM_AGENT_CORE_STATUS_TEXT_H

#include <cfm/delay_measurement.h>
#include <cfm/linktrace.h>
#include <cfm/statistics.h>
#include <cfm/status.h>

#include <string>

namespace cfm_agent {

// "port up, interface up, defects: missing CCMs, RDI (highest: missing CCMs)"
std::string DescribeState(const cfm::local_mep_status& status);
// "ok, port up, interface up"
std::string DescribeState(const cfm::remote_mep_status& status);

// As DescribeState(), with the address and all else there is to tell.
std::string Describe(const cfm::local_mep_status& status);
std::string Describe(const cfm::remote_mep_status& status);

std::string Describe(const cfm::local_mep_stats& stats);
std::string Describe(const cfm::remote_mep_stats& stats);

std::string Describe(const cfm::LinktraceReplyEntry& reply);
std::string Describe(const cfm::DelayMeasurementSessionResult& result);

// A number in the fewest decimals that give it back, whatever the locale.
std::string Decimal(double number);

}  // namespace cfm_agent

#endif
