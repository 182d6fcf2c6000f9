/* SPDX-License-Identifier: Apache-2.0 */
// What happens to a client, step by step, and what the client does in each step.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_SCRIPT_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_SCRIPT_H

#include <cfm/client_server.pb.h>
#include <cfm/hierarchy.h>
#include <cfm/probe.h>
#include <vorx/vorx.h>

#include <cstddef>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "rules.h"
#include "trace.h"

namespace cfm_test {

struct ServerFound {
  vorx_pid_t pid = 77;
};

struct ServerLost {};

struct CacheReply {
  client_server::OpCacheSync cache;
  std::size_t cut = 0;  // this many octets are missing at the end of the payload

  std::string Payload() const;
};

using Step = std::variant<ServerFound, ServerLost, CacheReply, cfm::hierarchy, cfm::probe>;
using Script = std::vector<Step>;

/// What is done in each step.
using Traces = std::vector<Trace>;
using Player = std::function<Traces(const Script&)>;

/// Plays the script to a new client of the library.
Traces PlayToLibrary(const Script& script);

/// Plays the script to a new model and counts the rules that it came to.
Traces PlayToModel(const Script& script, RuleCounts& rules);

/// The steps and what they hold, line by line; what is zero, false or empty is left out.
std::string Describe(const Script& script);

}  // namespace cfm_test

#endif
