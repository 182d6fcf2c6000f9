#include "core/columns.h"

#include <algorithm>
#include <cstdint>

namespace cfm_agent {
namespace {

// Characters of UTF-8 text, each taken to be one cell wide.
std::size_t Width(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<std::uint8_t>(c) & 0xC0U) != 0x80;
  }));
}

}  // namespace

std::vector<std::string> AlignColumns(const std::vector<std::vector<std::string>>& rows,
                                      std::size_t indent) {
  std::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], Width(row[i]));
    }
  }
  std::vector<std::string> lines;
  lines.reserve(rows.size());
  for (const auto& row : rows) {
    std::string line(indent, ' ');
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += row[i] + std::string(widths[i] - Width(row[i]) + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace cfm_agent
