// SPDX-License-Identifier: Apache-2.0
// The examples in the guides are right.
#include <gmock/gmock.h>

#include "core/config.h"
#include "markdown.h"
#include "sources.h"

namespace docs {
namespace {

// Fenced blocks of the language that begin with the text.
std::vector<std::string> Examples(const std::string& guide, const std::string& language,
                                  const std::string& beginning) {
  std::vector<std::string> examples;
  for (const Section& section : ReadPage(ReadFile("docs/guides/" + guide))) {
    for (const CodeBlock& block : section.blocks) {
      if (block.language == language && block.text.find(beginning) == 0) {
        examples.push_back(block.text);
      }
    }
  }
  return examples;
}

std::string FirstMistake(const std::string& text) {
  const auto result = cfm_agent::ReadConfig(text, [](const std::string&) { return 1; });
  return result.mistakes.empty() ? "" : Describe("example", result.mistakes.front());
}

TEST(ConfigurationGuide, ShowsWholeFilesWithoutMistakes) {
  const auto examples = Examples("configuration-file.md", "yaml", "domains:");
  EXPECT_THAT(examples, testing::SizeIs(testing::Ge(3U)));
  for (const std::string& example : examples) {
    EXPECT_EQ(FirstMistake(example), "") << example;
  }
}

// The parts that are shown one by one, put together as the file that they are parts of.
TEST(ConfigurationGuide, ShowsPartsThatMakeAFileWithoutMistakes) {
  const auto parts = [](const std::string& beginning) {
    const auto found = Examples("configuration-file.md", "yaml", beginning);
    return found.empty() ? "no part begins with " + beginning : found.front() + "\n";
  };
  const std::string ring = parts("      - name: ring");
  const std::string ring_itself = ring.substr(0, ring.find("      - name: IP1LINK7"));
  const std::string file =
      "domains:\n  - name: operator\n    level: 4\n    associations:\n"
      "      - {name: line-1, mep-ids: [1, 2], endpoints: [{mep-id: 1, direction: up, port: "
      "e}]}\n" +
      ring_itself + parts("        endpoints:") + ring.substr(ring_itself.size()) +
      parts("probes:");
  EXPECT_EQ(FirstMistake(file), "") << file;
}

}  // namespace
}  // namespace docs
