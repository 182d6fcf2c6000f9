/* SPDX-License-Identifier: Apache-2.0 */
// The agent's command line.
#ifndef CFM_AGENT_SHELL_OPTIONS_H
#define CFM_AGENT_SHELL_OPTIONS_H

#include <chrono>
#include <string>
#include <variant>
#include <vector>

namespace cfm_agent {

// What the process's exit status says.
enum class ExitStatus : int {
  Success = 0,
  BadConfig = 1,       // the configuration file has mistakes or cannot be read
  BadCommandLine = 2,  // the command line, or a command, makes no sense
  BusFailed = 3,       // the bus cannot be joined, or has gone away
  SystemFailed = 4,    // the operating system refuses something the agent cannot do without, or
                       // takes no output
  Refused = 5,         // the server refused a command
  TimedOut = 6,        // a command timed out
  Broken = 7,          // a command ended with its endpoint or with the server
};

enum class OutputFormat { Text, Json };
enum class ColourChoice { Auto, Always, Never };

struct Options {
  std::string config;
  std::string bus;         // empty: the environment's
  std::string log_config;  // empty: the environment's, or else the host's
  std::string name;        // on the bus
  std::vector<std::string> execute;
  bool interactive = false;
  std::chrono::seconds timeout{10};
  bool check = false;
  OutputFormat output = OutputFormat::Text;
  ColourChoice colour = ColourChoice::Auto;
};

// The options, or the status to exit with at once: help, the version or a complaint has been
// printed.
std::variant<Options, ExitStatus> ParseCommandLine(int argc, const char* const* argv);

}  // namespace cfm_agent

#endif
