/* SPDX-License-Identifier: Apache-2.0 */
// The structure of a Markdown page, as far as the guides use it.
#ifndef CFM_TESTS_DOCS_MARKDOWN_H
#define CFM_TESTS_DOCS_MARKDOWN_H

#include <string>
#include <string_view>
#include <vector>

namespace docs {

struct CodeBlock {
  std::string language;
  std::string text;  // without the last line's end
};

// What stands between one heading and the next, of whatever depth.
struct Section {
  int depth = 0;  // number of # signs
  std::string heading;
  std::vector<std::string> lines;  // outside of code blocks
  std::vector<CodeBlock> blocks;
  std::vector<std::vector<std::string>> rows;  // of tables, the heads among them
};

std::vector<Section> ReadPage(std::string_view text);

// Text without the marks of code and links.
std::string Plain(const std::string& markdown);

}  // namespace docs

#endif
