#include "shell/options.h"

#include <CLI/CLI.hpp>

namespace cfm_agent {
namespace {

constexpr const char* kDescription =
    "Keeps the CFM server in step with a configuration file.\n"
    "\n"
    "The file is read again when it changes and on SIGHUP. A new file with mistakes changes\n"
    "nothing: the configuration that was in force stays in force.";

constexpr const char* kFooter =
    "Exit status:\n"
    "  0  stopped by SIGTERM or SIGINT, or --check found no mistake\n"
    "  1  the configuration file has mistakes or cannot be read\n"
    "  2  the command line makes no sense\n"
    "  3  the bus cannot be joined, or has gone away\n"
    "  4  the operating system refused something indispensable";

}  // namespace

std::variant<Options, ExitStatus> ParseCommandLine(int argc, const char* const* argv) {
  Options options;
  CLI::App app(kDescription, "cfm-agent");
  app.footer(kFooter);
  app.add_option("-c,--config", options.config, "configuration file")
      ->required()
      ->type_name("FILE");
  app.add_option("-b,--bus", options.bus,
                 "address of the bus; otherwise VORX_BUS_ADDRESS or DBUS_SESSION_BUS_ADDRESS")
      ->type_name("ADDRESS");
  app.add_option("-l,--log-config", options.log_config,
                 "zlog configuration; otherwise VORX_LOG_CONFIG or the installed one")
      ->type_name("FILE");
  app.add_option("-n,--name", options.name, "name on the bus")
      ->type_name("NAME")
      ->capture_default_str();
  app.add_flag("--check", options.check, "only check the configuration file");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? ExitStatus::Success : ExitStatus::BadCommandLine;
  }
  return options;
}

}  // namespace cfm_agent
