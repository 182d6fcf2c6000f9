// cfm-agent: keeps the CFM server in step with a configuration file.

#include <sepan/host.h>

#include <csignal>
#include <exception>
#include <system_error>

#include "core/text.h"
#include "shell/agent.h"
#include "shell/console.h"
#include "shell/file_reader.h"
#include "shell/options.h"

namespace cfm_agent {
namespace {

ExitStatus RejectConfig(const Options& options, const ConfigKeeper& keeper, Console& console) {
  for (const std::string& complaint : keeper.complaints()) {
    console.Complain(complaint);
  }
  console.Complain(options.config + ": " + Count(keeper.complaints().size(), "mistake"));
  return ExitStatus::BadConfig;
}

ExitStatus RunAgent(const Options& options, ConfigKeeper& keeper, Console& console) {
  try {
    Agent(options, keeper, console).Run();
    return ExitStatus::Success;
  } catch (const BusError& error) {
    console.Complain(error.what());
    return ExitStatus::BusFailed;
  } catch (const std::system_error& error) {
    console.Complain(error.what());
    return ExitStatus::SystemFailed;
  }
}

ExitStatus Main(const Options& options) {
  Console console;
  ConfigKeeper keeper(options.config,
                      [](const std::string& name) { return sepan_port_by_name(name.c_str()); });
  if (keeper.Offer(ReadFile(options.config)) == ConfigKeeper::Outcome::Rejected) {
    return RejectConfig(options, keeper, console);
  }
  if (options.check) {
    console.Print(options.config + ": no mistakes: " + Summary(*keeper.config()));
    return ExitStatus::Success;
  }
  return RunAgent(options, keeper, console);
}

}  // namespace
}  // namespace cfm_agent

int main(int argc, char** argv) {
  // A reader of the output that goes away must not take the agent with it.
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  const auto parsed = cfm_agent::ParseCommandLine(argc, argv);
  if (const auto* status = std::get_if<cfm_agent::ExitStatus>(&parsed)) {
    return static_cast<int>(*status);
  }
  return static_cast<int>(cfm_agent::Main(std::get<cfm_agent::Options>(parsed)));
}
