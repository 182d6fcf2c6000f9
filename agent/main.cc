// SPDX-License-Identifier: Apache-2.0
// cfm-agent: keeps the CFM server in step with a configuration file.

#include <fcntl.h>
#include <sepan/host.h>
#include <unistd.h>

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <system_error>

#include "core/json_renderer.h"
#include "core/text.h"
#include "core/text_renderer.h"
#include "shell/agent.h"
#include "shell/console.h"
#include "shell/file_reader.h"
#include "shell/options.h"
#include "shell/pipe_input.h"
#include "shell/terminal.h"
#include "shell/tty.h"

namespace cfm_agent {
namespace {

CommandSource SourceOf(const Options& options) {
  if (!options.execute.empty()) {
    return CommandSource::Given;
  }
  if (!options.interactive) {
    return CommandSource::None;
  }
  return isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0 ? CommandSource::Prompt
                                                                 : CommandSource::Pipe;
}

std::string HistoryFile() {
  const char* home = std::getenv("HOME");  // NOLINT(concurrency-mt-unsafe)
  return home == nullptr || *home == '\0' ? "" : std::string(home) + "/.cfm-agent-history";
}

ExitStatus RejectConfig(const Options& options, const ConfigKeeper& keeper, Console& console) {
  for (const std::string& complaint : keeper.complaints()) {
    console.Complain(complaint);
  }
  console.Complain(options.config + ": " + Count(keeper.complaints().size(), "mistake"));
  return ExitStatus::BadConfig;
}

// The commands of the command line, or nothing if one of them makes no sense.
std::optional<std::vector<Command>> ParseCommands(const Options& options, Console& console) {
  std::vector<Command> commands;
  bool good = true;
  for (const std::string& line : options.execute) {
    ParsedCommand parsed = ParseCommand(line);
    if (!parsed.mistake.empty()) {
      console.Complain("--execute " + Quoted(line) + ": " + parsed.mistake);
      good = false;
    } else if (parsed.command) {
      commands.push_back(std::move(*parsed.command));
    }
  }
  return good ? std::optional(std::move(commands)) : std::nullopt;
}

ExitStatus Serve(const Options& options, CommandSource source, std::vector<Command> commands,
                 ConfigKeeper& keeper, Console& console, Input* input) {
  Agent agent(options, source, keeper, console, input);
  for (Command& command : commands) {
    agent.Add(std::move(command));
  }
  return agent.Run();
}

// Progress is for people who wait.
Console::Progress ProgressOf(const Options& options) {
  return options.output == OutputFormat::Text && OutputIsUpdatable() ? Console::Progress::Shown
                                                                     : Console::Progress::Hidden;
}

std::unique_ptr<Renderer> MakeRenderer(const Options& options) {
  if (options.output == OutputFormat::Json) {
    return std::make_unique<JsonRenderer>();
  }
  return std::make_unique<TextRenderer>(OutputStyle(options.colour));
}

// Output that is lost makes a failure of what has succeeded otherwise.
ExitStatus WithOutput(ExitStatus status, const Console& console) {
  return status == ExitStatus::Success && console.failed() ? ExitStatus::SystemFailed : status;
}

ExitStatus ServeFromTerminal(const Options& options, const Renderer& renderer,
                             ConfigKeeper& keeper) {
  Terminal terminal(
      renderer, ProgressOf(options),
      [&keeper](const std::string& line) { return Complete(line, *keeper.config()); },
      HistoryFile());
  return WithOutput(Serve(options, CommandSource::Prompt, {}, keeper, terminal, &terminal),
                    terminal);
}

ExitStatus ServeFrom(CommandSource source, const Options& options, const Renderer& renderer,
                     ConfigKeeper& keeper, Console& console) {
  const auto commands = ParseCommands(options, console);
  if (!commands) {
    return ExitStatus::BadCommandLine;
  }
  switch (source) {
    case CommandSource::Prompt:
      return ServeFromTerminal(options, renderer, keeper);
    case CommandSource::Pipe: {
      PipeInput input(STDIN_FILENO);
      return Serve(options, source, {}, keeper, console, &input);
    }
    case CommandSource::Given:
    case CommandSource::None:
      return Serve(options, source, *commands, keeper, console, nullptr);
  }
  return ExitStatus::Success;
}

// The client library's log belongs to a service; between a person's commands it is in the way.
void QuietenLog(Options& options) {
  const bool commanded = options.interactive || !options.execute.empty();
  const char* chosen = std::getenv("VORX_LOG_CONFIG");  // NOLINT(concurrency-mt-unsafe)
  if (commanded && options.log_config.empty() && chosen == nullptr) {
    options.log_config = "/dev/null";
  }
}

ExitStatus Run(Options options, const Renderer& renderer, Console& console) {
  ConfigKeeper keeper(options.config,
                      [](const std::string& name) { return sepan_port_by_name(name.c_str()); });
  if (keeper.Offer(ReadFile(options.config)) == ConfigKeeper::Outcome::Rejected) {
    return RejectConfig(options, keeper, console);
  }
  if (options.check) {
    for (const std::string& warning : keeper.warnings()) {
      console.Tell(WarningNews{warning});
    }
    console.Tell(CheckAnswer{options.config, CountsOf(*keeper.config()), keeper.warnings().size()});
    return ExitStatus::Success;
  }
  QuietenLog(options);
  try {
    return ServeFrom(SourceOf(options), options, renderer, keeper, console);
  } catch (const BusError& error) {
    console.Complain(error.what());
    return ExitStatus::BusFailed;
  } catch (const std::system_error& error) {
    console.Complain(error.what());
    return ExitStatus::SystemFailed;
  }
}

ExitStatus Main(const Options& options) {
  const CommandSource source = SourceOf(options);
  const auto renderer = MakeRenderer(options);
  Console console(*renderer,
                  source == CommandSource::Given || source == CommandSource::Pipe
                      ? Console::Volume::Quiet
                      : Console::Volume::Normal,
                  ProgressOf(options));
  return WithOutput(Run(options, *renderer, console), console);
}

// The number of a standard stream that is closed would go to the next file that is opened, such as
// the bus. Input then ends at once, and output fails.
void FillClosedStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) < 0) {
      static_cast<void>(open("/dev/null", O_RDONLY));
    }
  }
}

}  // namespace
}  // namespace cfm_agent

int main(int argc, char** argv) {
  cfm_agent::FillClosedStreams();
  // A reader of the output that goes away must not take the agent with it.
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  // So that names of any language can be typed, and drawings fit what the terminal can show.
  static_cast<void>(std::setlocale(LC_CTYPE, ""));
  const auto parsed = cfm_agent::ParseCommandLine(argc, argv);
  if (const auto* status = std::get_if<cfm_agent::ExitStatus>(&parsed)) {
    return static_cast<int>(std::cout.flush() ? *status : cfm_agent::ExitStatus::SystemFailed);
  }
  return static_cast<int>(cfm_agent::Main(std::get<cfm_agent::Options>(parsed)));
}
