/* SPDX-License-Identifier: Apache-2.0 */
// The agent's configuration file as the client library takes it.
#ifndef CFM_AGENT_CORE_CONFIG_H
#define CFM_AGENT_CORE_CONFIG_H

#include <cfm/hierarchy.h>
#include <cfm/probe.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/mistake.h"

namespace cfm_agent {

struct Config {
  cfm::hierarchy hierarchy;
  cfm::probe probes;
};

// The port handle of a network interface, whether or not there is such an interface at the moment;
// 0 when the host has none to give.
using PortOfName = std::function<sepan_port_t(const std::string& name)>;

// A configuration, maybe with warnings, or else at least one mistake.
struct ReadResult {
  std::optional<Config> config;
  Mistakes mistakes;
  Warnings warnings;
};

// Reads the text of a configuration file. Notes every mistake in it or, if there is none, every
// warning, in the order of the file.
ReadResult ReadConfig(std::string_view text, const PortOfName& port_of_name);

struct ConfigCounts {
  std::size_t domains = 0;
  std::size_t associations = 0;
  std::size_t endpoints = 0;
  std::size_t probes = 0;
  std::size_t sessions = 0;
};

ConfigCounts CountsOf(const Config& config);

// "3 domains, 12 associations, 40 endpoints, 6 probes with 8 sessions"
std::string Summary(const ConfigCounts& counts);

}  // namespace cfm_agent

#endif
