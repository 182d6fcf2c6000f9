/* SPDX-License-Identifier: Apache-2.0 */
// Carries commands out.
#ifndef CFM_AGENT_SHELL_COMMANDER_H
#define CFM_AGENT_SHELL_COMMANDER_H

#include <cfm/client.h>

#include <functional>
#include <optional>
#include <utility>

#include "core/command.h"
#include "core/config_keeper.h"
#include "core/monitor.h"
#include "shell/console.h"

namespace cfm_agent {

class Commander {
 public:
  enum class Timing {
    AtOnce,    // a person's commands
    UpToDate,  // a script's: `show` waits for all that the server has reported by then
  };

  // `failed` is told when a command fails that is no test.
  Commander(Timing timing, const ConfigKeeper& keeper, Monitor& monitor, Console& console,
            std::function<void(EndReason)> failed)
      : timing_(timing),
        keeper_(keeper),
        monitor_(monitor),
        console_(console),
        failed_(std::move(failed)) {}

  // Requests go through the client. What comes of a test is the monitor's to tell.
  void Run(const Command& command, cfm::Client& client);
  // Lets no command of a script run before all that the server has reported by now has come: an
  // endpoint that it removed just before a test is not one that it removed during it.
  void Refresh(const cfm::Client& client);
  // To be told that a test ended.
  void OnEnded(const TestEnd& end);

  // Whether `quit` was given.
  bool quit() const { return quit_; }
  // Whether a command named what there is not.
  bool mistaken() const { return mistaken_; }

 private:
  void Do(const cfm::linktrace_trigger& trigger, cfm::Client& client);
  void Do(const cfm::loopback_trigger& trigger, cfm::Client& client);
  void Do(const cfm::delay_measurement_trigger& trigger, cfm::Client& client);
  void Do(const StatisticsCommand& command, cfm::Client& client);
  void Do(const ClearCommand& command, cfm::Client& client);
  void Do(const ShowCommand& command, cfm::Client& client);
  void Do(const HelpCommand& command, cfm::Client& client);
  void Do(const QuitCommand& command, cfm::Client& client);
  // Prints what was known although the server keeps back what there is now.
  void FailShow(const ShowCommand& command, EndReason reason);
  void PrintShow(const ShowCommand& command);

  Timing timing_;
  const ConfigKeeper& keeper_;
  Monitor& monitor_;
  Console& console_;
  std::function<void(EndReason)> failed_;
  std::optional<ShowCommand> waiting_show_;
  // Why the refresh before the first command of a script has failed. A `show` that follows it does
  // not wait again.
  std::optional<EndReason> unanswered_;
  bool quit_ = false;
  bool mistaken_ = false;
};

}  // namespace cfm_agent

#endif
