// SPDX-License-Identifier: Apache-2.0
#include "markdown.h"

#include <gmock/gmock.h>

namespace docs {
namespace {

using testing::ElementsAre;

TEST(Markdown, HasASectionForEachHeading) {
  const auto page = ReadPage("# One\ntext\n\n## Two\nmore\n");
  ASSERT_EQ(page.size(), 3U);
  EXPECT_EQ(page[1].heading, "One");
  EXPECT_THAT(page[1].lines, ElementsAre("text", ""));
  EXPECT_EQ(page[2].depth, 2);
}

TEST(Markdown, KeepsCodeApart) {
  const auto page = ReadPage("# One\n```sh\n# no heading\n| no row |\n```\n");
  ASSERT_EQ(page.size(), 2U);
  EXPECT_THAT(page[1].lines, ElementsAre());
  ASSERT_EQ(page[1].blocks.size(), 1U);
  EXPECT_EQ(page[1].blocks[0].language, "sh");
  EXPECT_EQ(page[1].blocks[0].text, "# no heading\n| no row |");
}

TEST(Markdown, CutsRowsIntoCells) {
  const auto page = ReadPage("| 1 | `name` |  |\n");
  EXPECT_THAT(page[0].rows, ElementsAre(ElementsAre("1", "`name`", "")));
}

TEST(Markdown, ReadsThroughTheMarksOfCodeAndLinks) {
  EXPECT_EQ(Plain("repeated [Ais](#ais) or `int32`"), "repeated Ais or int32");
}

}  // namespace
}  // namespace docs
