/* SPDX-License-Identifier: Apache-2.0 */
// The running agent: keeps client library, configuration file, bus and commands together.
#ifndef CFM_AGENT_SHELL_AGENT_H
#define CFM_AGENT_SHELL_AGENT_H

#include <cfm/client.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/config_keeper.h"
#include "core/handlers.h"
#include "core/interface_table.h"
#include "core/monitor.h"
#include "core/script.h"
#include "core/settle_timer.h"
#include "shell/bus.h"
#include "shell/commander.h"
#include "shell/console.h"
#include "shell/file_watch.h"
#include "shell/input.h"
#include "shell/link_watch.h"
#include "shell/options.h"
#include "shell/server_watch.h"
#include "shell/signals.h"

namespace cfm_agent {

// Where commands come from.
enum class CommandSource {
  None,
  Given,   // from the command line: one after the other, then the agent ends
  Pipe,    // the same, from an input
  Prompt,  // each at once, from a person at a terminal
};

class Agent {
 public:
  // Joins the bus and hands in the configuration that `keeper` holds. Nothing comes from the bus
  // before Run(). `input` is null unless commands come from one. Throws BusError and
  // std::system_error.
  Agent(const Options& options, CommandSource source, ConfigKeeper& keeper, Console& console,
        Input* input);

  // A command to run, of a Given source.
  void Add(Command command) { script_.Add(std::move(command)); }

  // Serves the bus, the file, the commands and the process's signals until a signal or the end of
  // the commands ends it. Whatever ends it, each test has been said to have ended. Throws BusError
  // and std::system_error.
  ExitStatus Run();

 private:
  void RegisterHandlers();
  void HandIn();
  void TellConfiguration(ConfigurationNews::What what) const;
  // The same, endpoints on these ports being created anew.
  void HandIn(const std::set<sepan_port_t>& moved);
  void OnInStep();
  void Serve();
  // Tells which commands a signal kept from running.
  void Abandon();
  // Says of the tests that run that they will not be followed.
  void GiveUp();
  void ShowProgress();
  void Wait();
  // Acts on the signals that have come; false when one of them ends the agent.
  bool TakeSignals();
  void TakeFileActivity(TimePoint now);
  void TakeInterfaces();
  void TakeInput();
  void TakeLine(const std::string& line);
  void RunScript(TimePoint now);
  bool Finished() const;
  ExitStatus Status() const;
  void Reload(ConfigKeeper::Outcome outcome, bool asked);

  CommandSource source_;
  ConfigKeeper& keeper_;
  Console& console_;
  Input* input_;
  bool input_waits_ = false;
  bool bad_command_ = false;
  std::string file_;
  Signals signals_;
  FileWatch watch_;
  std::optional<LinkWatch> links_;
  InterfaceTable interfaces_;
  SettleTimer settle_;
  Script script_;
  Bus bus_;
  Monitor monitor_;
  Commander commander_;
  StatusHandler status_handler_{monitor_};
  StatisticsHandler statistics_handler_{monitor_};
  LinktraceHandler linktrace_handler_{monitor_};
  LoopbackHandler loopback_handler_{monitor_};
  DelayMeasurementHandler delay_measurement_handler_{monitor_};
  cfm::Client client_;
  ServerWatch server_watch_;
};

}  // namespace cfm_agent

#endif
