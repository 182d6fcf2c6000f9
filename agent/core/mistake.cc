// SPDX-License-Identifier: Apache-2.0
#include "core/mistake.h"

#include <algorithm>
#include <tuple>

namespace cfm_agent {

void SortByPlace(Mistakes& mistakes) {
  std::stable_sort(mistakes.begin(), mistakes.end(), [](const Mistake& a, const Mistake& b) {
    return std::tie(a.mark.line, a.mark.column) < std::tie(b.mark.line, b.mark.column);
  });
}

std::string Describe(std::string_view file, const Mistake& mistake) {
  std::string out(file);
  if (mistake.mark.line > 0) {
    out += ':' + std::to_string(mistake.mark.line) + ':' + std::to_string(mistake.mark.column);
  }
  out += ": ";
  if (!mistake.field.empty()) {
    out += mistake.field + ": ";
  }
  return out + mistake.text;
}

}  // namespace cfm_agent
