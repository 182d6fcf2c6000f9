// SPDX-License-Identifier: Apache-2.0
#include "core/table.h"

#include <clocale>
#include <cwchar>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace cfm_agent {
namespace {

// The C library knows the widths of all characters, in a locale that has them all. The process's
// own locale has no part in it.
class WidthsOfUnicode {
 public:
  WidthsOfUnicode()
      : unicode_(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)),
        previous_(unicode_ == nullptr ? nullptr : uselocale(unicode_)) {}
  WidthsOfUnicode(const WidthsOfUnicode&) = delete;
  WidthsOfUnicode& operator=(const WidthsOfUnicode&) = delete;
  ~WidthsOfUnicode() {
    if (unicode_ != nullptr) {
      uselocale(previous_);
      freelocale(unicode_);
    }
  }

  bool known() const { return unicode_ != nullptr; }

 private:
  locale_t unicode_;
  locale_t previous_;
};

bool BeginsCharacter(char c) { return (static_cast<std::uint8_t>(c) & 0xC0U) != 0x80; }

std::size_t CountCharacters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), BeginsCharacter));
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<std::uint8_t>(c) < 0x80; });
}

}  // namespace

std::size_t DisplayWidth(std::string_view text) {
  if (IsAscii(text)) {
    return text.size();
  }
  const WidthsOfUnicode widths;
  std::size_t cells = 0;
  std::mbstate_t state = {};
  while (widths.known() && !text.empty()) {
    wchar_t character = 0;
    const std::size_t size = std::mbrtowc(&character, text.data(), text.size(), &state);
    if (size == 0 || size > text.size()) {
      break;
    }
    // What it has no width for is printed as a replacement.
    const int width = wcwidth(character);
    cells += width < 0 ? 1 : static_cast<std::size_t>(width);
    text.remove_prefix(size);
  }
  return cells + CountCharacters(text);
}

Table::Table(std::vector<Column> columns) : columns_(std::move(columns)) {
  std::vector<Span> headings;
  headings.reserve(columns_.size());
  for (const Column& column : columns_) {
    headings.push_back({column.heading, Tone::Heading});
  }
  rows_.push_back(std::move(headings));
}

// 0 for a column that is left out.
std::vector<std::size_t> Table::Widths() const {
  std::vector<std::size_t> widths(columns_.size());
  for (auto row = rows_.begin() + 1; row != rows_.end(); ++row) {
    for (std::size_t i = 0; i < std::min(widths.size(), row->size()); ++i) {
      widths[i] = std::max(widths[i], DisplayWidth((*row)[i].text));
    }
  }
  for (std::size_t i = 0; i < widths.size(); ++i) {
    widths[i] = widths[i] == 0 ? 0 : std::max(widths[i], DisplayWidth(columns_[i].heading));
  }
  return widths;
}

std::string Table::Line(const std::vector<Span>& row, const std::vector<std::size_t>& widths,
                        std::size_t indent, const Style& style) const {
  std::string line;
  std::size_t gap = indent;
  for (std::size_t i = 0; i < std::min(widths.size(), row.size()); ++i) {
    if (widths[i] == 0) {
      continue;
    }
    const Span& cell = row[i];
    const std::size_t padding = widths[i] - DisplayWidth(cell.text);
    const bool right = columns_[i].side == Column::Side::Right;
    gap += right ? padding : 0;
    if (!cell.text.empty()) {
      line.append(gap, ' ') += Paint(cell.text, cell.tone, style);
      gap = 0;
    }
    gap += (right ? 0 : padding) + 2;
  }
  return line;
}

std::vector<std::string> Table::Lines(std::size_t indent, const Style& style) const {
  const std::vector<std::size_t> widths = Widths();
  std::vector<std::string> lines;
  lines.reserve(rows_.size());
  for (const auto& row : rows_) {
    lines.push_back(Line(row, widths, indent, style));
  }
  return lines;
}

}  // namespace cfm_agent
