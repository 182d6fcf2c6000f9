// SPDX-License-Identifier: Apache-2.0
#include "markdown.h"

#include <regex>
#include <sstream>

namespace docs {
namespace {

std::string Trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(' ');
  const std::size_t end = text.find_last_not_of(' ');
  return begin == std::string::npos ? "" : text.substr(begin, end - begin + 1);
}

std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  std::istringstream rest(line.substr(1));
  for (std::string cell; std::getline(rest, cell, '|');) {
    cells.push_back(Trimmed(cell));
  }
  return cells;
}

// Whether the line begins a section of its own.
bool BeginSection(const std::string& line, std::vector<Section>& page) {
  static const std::regex heading("(#{1,6}) (.*)");
  std::smatch match;
  if (!std::regex_match(line, match, heading)) {
    return false;
  }
  Section section;
  section.depth = static_cast<int>(match.length(1));
  section.heading = match[2];
  page.push_back(section);
  return true;
}

void Add(const std::string& line, Section& section) {
  if (!line.empty() && line.front() == '|') {
    section.rows.push_back(Cells(line));
  } else {
    section.lines.push_back(line);
  }
}

}  // namespace

std::vector<Section> ReadPage(std::string_view text) {
  constexpr std::string_view fence = "```";
  std::vector<Section> page(1);
  bool in_block = false;
  std::istringstream lines{std::string(text)};
  for (std::string line; std::getline(lines, line);) {
    if (line.substr(0, fence.size()) == fence) {
      in_block = !in_block;
      if (in_block) {
        page.back().blocks.push_back({line.substr(fence.size()), ""});
      }
    } else if (in_block) {
      std::string& code = page.back().blocks.back().text;
      code += (code.empty() ? "" : "\n") + line;
    } else if (!BeginSection(line, page)) {
      Add(line, page.back());
    }
  }
  return page;
}

std::string Plain(const std::string& markdown) {
  static const std::regex link(R"(\[([^\]]*)\]\([^)]*\))");
  static const std::regex code("`");
  return std::regex_replace(std::regex_replace(markdown, link, "$1"), code, "");
}

}  // namespace docs
