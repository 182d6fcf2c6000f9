/* SPDX-License-Identifier: Apache-2.0 */
// Text in columns under headings.
#ifndef CFM_AGENT_CORE_TABLE_H
#define CFM_AGENT_CORE_TABLE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/style.h"

namespace cfm_agent {

// How many cells of a terminal printable UTF-8 text takes: two for a wide character, none for one
// that combines with the one before.
std::size_t DisplayWidth(std::string_view text);

struct Column {
  enum class Side : std::uint8_t { Left, Right };

  std::string heading;
  Side side = Side::Left;
};

class Table {
 public:
  explicit Table(std::vector<Column> columns);

  // A row of printable cells; those that are missing are empty.
  void Add(std::vector<Span> row) { rows_.push_back(std::move(row)); }
  bool empty() const { return rows_.size() == 1; }

  // The headings and a line for each row, two blanks between the columns. A column in which no row
  // has anything is left out.
  std::vector<std::string> Lines(std::size_t indent, const Style& style) const;

 private:
  std::vector<std::size_t> Widths() const;
  std::string Line(const std::vector<Span>& row, const std::vector<std::size_t>& widths,
                   std::size_t indent, const Style& style) const;

  std::vector<Column> columns_;
  std::vector<std::vector<Span>> rows_;  // the headings first
};

// Adds lines below others.
inline void Append(std::vector<std::string>& lines, const std::vector<std::string>& more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

}  // namespace cfm_agent

#endif
