/* SPDX-License-Identifier: Apache-2.0 */
// All that the agent has to tell, before it is put into words.
#ifndef CFM_AGENT_CORE_RECORD_H
#define CFM_AGENT_CORE_RECORD_H

#include <cfm/delay_measurement.h>
#include <cfm/status.h>

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "core/command.h"
#include "core/config.h"
#include "core/findings.h"
#include "core/mep.h"
#include "core/show.h"
#include "core/status_table.h"
#include "core/test_tracker.h"

namespace cfm_agent {

// News: what happens by itself.

struct ConfigurationNews {
  enum class What : std::uint8_t { Loaded, Reloaded, Restored, Unchanged };
  What what = What::Loaded;
  ConfigCounts counts;
};

struct ServerNews {
  ServerState state = ServerState::Absent;
};

struct LocalStatusNews {
  MepKey mep;
  cfm::local_mep_status status;
};

struct RemoteStatusNews {
  MepKey mep;
  std::uint16_t remote = 0;
  cfm::remote_mep_status status;
};

// The server has removed an endpoint, or one of its remote MEPs.
struct RemovalNews {
  MepKey mep;
  std::optional<std::uint16_t> remote;
};

struct SessionNews {
  cfm::DelayMeasurementSessionResult result;
};

// Something about the configuration that is in force now is hardly meant.
struct WarningNews {
  std::string text;
};

// The kernel has another interface of this name than before: what is on it is created anew.
struct InterfaceNews {
  std::string name;
};

// A signal has ended the agent.
struct StopNews {};

// What a test comes to.

struct TestStarted {
  Test test;
  cfm::st_mac target;
  std::optional<std::uint32_t> value;  // of a linktrace; the server's meaning
};

struct TestReply {
  Test test;
  cfm::st_mac from;
  std::optional<std::uint32_t> transaction;  // of a loopback
  std::optional<Hop> hop;                    // of a linktrace
};

struct TestResult {
  TestEnd end;
  Findings findings;
  bool stopped = false;  // the agent stopped before the end of the test
};

// The answers to commands that are no tests.

struct ClearAnswer {};

struct HelpAnswer {
  std::vector<CommandUsage> commands;
};

// A configuration file without mistakes.
struct CheckAnswer {
  std::string file;
  ConfigCounts counts;
  std::uint64_t warnings = 0;
};

// A mistake or failure; of a command, if it has a name.
struct Complaint {
  std::string text;
  std::string command;
};

using Record =
    std::variant<ConfigurationNews, ServerNews, LocalStatusNews, RemoteStatusNews, RemovalNews,
                 SessionNews, WarningNews, InterfaceNews, StopNews, TestStarted, TestReply,
                 TestResult, ShowAnswer, ClearAnswer, HelpAnswer, CheckAnswer, Complaint>;

// Whether nobody asked for it.
bool IsNews(const Record& record);

}  // namespace cfm_agent

#endif
