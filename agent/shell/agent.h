// The running agent: keeps client library, configuration file and bus together.
#ifndef CFM_AGENT_SHELL_AGENT_H
#define CFM_AGENT_SHELL_AGENT_H

#include <cfm/client.h>

#include <string>

#include "core/config_keeper.h"
#include "core/settle_timer.h"
#include "shell/bus.h"
#include "shell/console.h"
#include "shell/file_watch.h"
#include "shell/options.h"
#include "shell/presence.h"
#include "shell/signals.h"
#include "shell/status_printer.h"

namespace cfm_agent {

class Agent {
 public:
  // Joins the bus and hands in the configuration that `keeper` holds. Nothing comes from the bus
  // before Run(). Throws BusError and std::system_error.
  Agent(const Options& options, ConfigKeeper& keeper, Console& console);

  // Serves the bus, the file and the process's signals until a signal ends it. Throws BusError.
  void Run();

 private:
  void Wait();
  // Acts on the signals that have come; false when one of them ends the agent.
  bool TakeSignals();
  void TakeFileActivity(TimePoint now);
  void Reload(ConfigKeeper::Outcome outcome, bool asked);
  void HandIn();

  ConfigKeeper& keeper_;
  Console& console_;
  std::string file_;
  Signals signals_;
  FileWatch watch_;
  SettleTimer settle_;
  Bus bus_;
  StatusPrinter status_printer_;
  cfm::Client client_;
  Presence presence_;
};

}  // namespace cfm_agent

#endif
