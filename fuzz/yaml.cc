// Any text as the agent's configuration file. It is either accepted, and then right in every way,
// or refused with mistakes, each with its line and fit to be printed.
#include <algorithm>
#include <cstdint>
#include <map>

#include "config_rules.h"
#include "core/config.h"
#include "require.h"

namespace cfm_fuzz {
namespace {

// More than a text can have, whatever its encoding.
int MostLines(std::string_view text) {
  return static_cast<int>(std::count_if(text.begin(), text.end(),
                                        [](char c) { return c == '\n' || c == '\r'; })) +
         1;
}

bool IsPrintable(std::string_view text) {
  return std::none_of(text.begin(), text.end(),
                      [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; });
}

void RequireRightMistakes(const cfm_agent::Mistakes& mistakes, std::string_view text) {
  const cfm_agent::Mistake* last = nullptr;
  for (const cfm_agent::Mistake& mistake : mistakes) {
    Require(mistake.mark.line >= 1 && mistake.mark.column >= 1, "a mistake names its place");
    Require(mistake.mark.line <= MostLines(text), "a mistake's line is one of the file");
    Require(last == nullptr || last->mark.line <= mistake.mark.line,
            "mistakes come in the order of the file");
    Require(!mistake.text.empty(), "a mistake says what is wrong");
    const std::string printed = Describe("agent.yaml", mistake);
    Require(IsPrintable(printed), "a mistake can be printed: " + printed);
    last = &mistake;
  }
}

void Check(std::string_view text) {
  std::map<std::string, sepan_port_t> ports;
  const cfm_agent::ReadResult result = cfm_agent::ReadConfig(text, [&](const std::string& name) {
    return ports.try_emplace(name, static_cast<sepan_port_t>(ports.size() + 1)).first->second;
  });
  Require(result.config.has_value() == result.mistakes.empty(),
          "a text is either accepted or has mistakes");
  RequireRightMistakes(result.mistakes, text);
  if (result.config) {
    RequireRightConfig(*result.config);
    Require(!Summary(*result.config).empty(), "a configuration has a summary");
  }
}

}  // namespace
}  // namespace cfm_fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cfm_fuzz::Check({reinterpret_cast<const char*>(data), size});
  return 0;
}
