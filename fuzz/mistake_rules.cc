// SPDX-License-Identifier: Apache-2.0
#include "mistake_rules.h"

#include <algorithm>
#include <string>

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

}  // namespace

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

}  // namespace cfm_fuzz
