// SPDX-License-Identifier: Apache-2.0
// Any text as the agent's configuration file. It is either accepted, and then right in every way,
// or refused with mistakes, each with its line and fit to be printed.
#include <cstdint>
#include <map>

#include "config_rules.h"
#include "core/config.h"
#include "mistake_rules.h"
#include "require.h"

namespace cfm_fuzz {
namespace {

void Check(std::string_view text) {
  std::map<std::string, sepan_port_t> ports;
  const cfm_agent::ReadResult result = cfm_agent::ReadConfig(text, [&](const std::string& name) {
    return ports.try_emplace(name, static_cast<sepan_port_t>(ports.size() + 1)).first->second;
  });
  Require(result.config.has_value() == result.mistakes.empty(),
          "a text is either accepted or has mistakes");
  RequireRightMistakes(result.mistakes, text);
  Require(result.config || result.warnings.empty(), "only a text that is accepted has warnings");
  cfm_agent::Mistakes warnings;
  for (const cfm_agent::Warning& warning : result.warnings) {
    Require(!warning.about.empty(), "a warning says what it is about");
    warnings.push_back(warning.found);
  }
  RequireRightMistakes(warnings, text);
  if (result.config) {
    RequireRightConfig(*result.config);
    Require(!Summary(CountsOf(*result.config)).empty(), "a configuration has a summary");
  }
}

}  // namespace
}  // namespace cfm_fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cfm_fuzz::Check({reinterpret_cast<const char*>(data), size});
  return 0;
}
