/* SPDX-License-Identifier: Apache-2.0 */
// The commands that the agent takes from its prompt and its command line.
#ifndef CFM_AGENT_CORE_COMMAND_H
#define CFM_AGENT_CORE_COMMAND_H

#include <cfm/delay_measurement.h>
#include <cfm/linktrace.h>
#include <cfm/loopback.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/config.h"

namespace cfm_agent {

struct StatisticsCommand {};

// What is left out stands for all.
struct ClearCommand {
  std::optional<std::string> md;
  std::optional<std::string> ma;
  std::uint16_t mep_id = 0;
};

struct ShowCommand {
  std::optional<std::string> md;
  std::optional<std::string> ma;
  std::uint16_t mep_id = 0;
};

struct HelpCommand {};
struct QuitCommand {};

// The triggers have no request identifier yet.
using Command =
    std::variant<cfm::linktrace_trigger, cfm::loopback_trigger, cfm::delay_measurement_trigger,
                 StatisticsCommand, ClearCommand, ShowCommand, HelpCommand, QuitCommand>;

// A command, or what is wrong with the line and what would be right. A line that is blank, or a
// comment from # on, gives neither.
struct ParsedCommand {
  std::optional<Command> command;
  std::string mistake;
};

ParsedCommand ParseCommand(std::string_view line);

// How a command is written, and what it does.
struct CommandUsage {
  std::string name;
  std::string arguments;
  std::string purpose;
};

std::vector<CommandUsage> CommandUsages();
// Each as two lines of text.
std::vector<std::string> TextOf(const std::vector<CommandUsage>& usages);

// What may stand in place of the last, unfinished word of a line, in the order of the alphabet:
// commands, the names in a configuration, keys of options.
struct Completions {
  std::size_t word_begins = 0;  // in the line
  std::vector<std::string> words;
};

Completions Complete(std::string_view line, const Config& config);

}  // namespace cfm_agent

#endif
