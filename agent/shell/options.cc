// SPDX-License-Identifier: Apache-2.0
#include "shell/options.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "core/command.h"

namespace cfm_agent {
namespace {

constexpr const char* kDescription =
    "Keeps the CFM server in step with a configuration file.\n"
    "\n"
    "The file is read again when it changes and on SIGHUP. A new file with mistakes changes\n"
    "nothing: the configuration that was in force stays in force.";

constexpr const char* kExitStatus =
    "Exit status:\n"
    "  0  all commands complete, a service stopped by SIGTERM or SIGINT, the end of a session at\n"
    "     a prompt, whatever its commands came to, or --check found no mistake but\n"
    "     maybe warnings\n"
    "  1  the configuration file has mistakes or cannot be read\n"
    "  2  the command line, or a command, makes no sense, or show finds nothing of a name\n"
    "  3  the bus cannot be joined, or has gone away\n"
    "  4  the operating system refused something indispensable, or took no output\n"
    "  5  the server refused a command\n"
    "  6  a command timed out; show still shows what was known\n"
    "  7  a command ended because its endpoint was removed or the server lost, or had not ended\n"
    "     when the agent was stopped; without a server, show and clear fail too\n"
    "Of several commands, the first that was not complete decides, before any that makes no\n"
    "sense.";

std::string Footer() {
  std::string text = "Commands:\n";
  for (const std::string& line : TextOf(CommandUsages())) {
    text += "  " + line + '\n';
  }
  return text + '\n' + kExitStatus;
}

template <typename Choice>
using Choices = std::vector<std::pair<std::string, Choice>>;

// An option whose values are the words of a list.
template <typename Choice>
void AddChoice(CLI::App& app, const char* name, const char* type, const char* description,
               const Choices<Choice>& choices, Choice& chosen) {
  std::vector<std::string> words;
  for (const auto& [word, choice] : choices) {
    words.push_back(word);
  }
  const auto take = [choices, &chosen](const std::string& word) {
    for (const auto& [candidate, choice] : choices) {
      chosen = candidate == word ? choice : chosen;
    }
  };
  app.add_option_function<std::string>(name, take, description)
      ->type_name(type)
      ->check(CLI::IsMember(words));
}

void AddOutputOptions(CLI::App& app, Options& options) {
  AddChoice(app, "-o,--output", "FORMAT",
            "text for people, the default, or a JSON object on each line for programs",
            Choices<OutputFormat>{{"text", OutputFormat::Text}, {"json", OutputFormat::Json}},
            options.output);
  AddChoice(
      app, "--color", "WHEN",
      "whether text is coloured; auto, the default: on a terminal, unless NO_COLOR is set and not "
      "empty",
      Choices<ColourChoice>{{"auto", ColourChoice::Auto},
                            {"always", ColourChoice::Always},
                            {"never", ColourChoice::Never}},
      options.colour);
}

void AddOptions(CLI::App& app, Options& options, int& timeout) {
  app.set_help_flag("-h,--help", "print this help, and exit");
  app.set_version_flag("--version", "cfm-agent " CFM_AGENT_VERSION, "print the version, and exit");
  app.add_option("-c,--config", options.config, "configuration file")
      ->required()
      ->type_name("FILE")
      ->check(CLI::Validator(
          [](const std::string& name) { return name.empty() ? "names no file" : std::string(); },
          ""));
  app.add_option("-b,--bus", options.bus,
                 "address of the bus; otherwise VORX_BUS_ADDRESS or DBUS_SESSION_BUS_ADDRESS")
      ->type_name("ADDRESS");
  app.add_option(
         "-l,--log-config", options.log_config,
         "zlog configuration; otherwise VORX_LOG_CONFIG or, without commands, the installed "
         "one")
      ->type_name("FILE")
      ->check(CLI::ExistingFile);
  app.add_option("-n,--name", options.name,
                 "name on the bus; otherwise cfm-agent or, with commands, cfm-agent-PID")
      ->type_name("NAME");
  auto* execute = app.add_option("-x,--execute", options.execute,
                                 "run this command once the server is in step, and exit; may be "
                                 "given several times")
                      ->type_name("COMMAND")
                      ->allow_extra_args(false);
  auto* interactive =
      app.add_flag("-i,--interactive", options.interactive,
                   "take commands from standard input, with a prompt if it is a terminal")
          ->excludes(execute);
  app.add_option("-t,--timeout", timeout,
                 "how long a command may wait for the server, and hear nothing from it")
      ->type_name("SECONDS")
      ->check(CLI::Range(1, 86400))
      ->capture_default_str();
  AddOutputOptions(app, options);
  app.add_flag("--check", options.check, "only check the configuration file")
      ->excludes(execute)
      ->excludes(interactive);
}

// Commands are run beside the service, whose name is its own.
std::string DefaultName(const Options& options) {
  const bool commanded = options.interactive || !options.execute.empty();
  return commanded ? "cfm-agent-" + std::to_string(getpid()) : "cfm-agent";
}

}  // namespace

std::variant<Options, ExitStatus> ParseCommandLine(int argc, const char* const* argv) {
  Options options;
  auto timeout = static_cast<int>(options.timeout.count());
  CLI::App app(kDescription, "cfm-agent");
  app.footer(Footer());
  AddOptions(app, options, timeout);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? ExitStatus::Success : ExitStatus::BadCommandLine;
  }
  options.timeout = std::chrono::seconds(timeout);
  if (options.name.empty()) {
    options.name = DefaultName(options);
  }
  return options;
}

}  // namespace cfm_agent
