// SPDX-License-Identifier: Apache-2.0
#include "core/mistake.h"

#include <algorithm>
#include <tuple>

namespace cfm_agent {
namespace {

bool StandsBefore(const Mistake& a, const Mistake& b) {
  return std::tie(a.mark.line, a.mark.column) < std::tie(b.mark.line, b.mark.column);
}

}  // namespace

void SortByPlace(Mistakes& mistakes) {
  std::stable_sort(mistakes.begin(), mistakes.end(), StandsBefore);
}

void SortByPlace(Warnings& warnings) {
  std::stable_sort(warnings.begin(), warnings.end(), [](const Warning& a, const Warning& b) {
    return StandsBefore(a.found, b.found);
  });
}

std::string Describe(std::string_view file, const Mistake& mistake) {
  std::string out(file);
  if (mistake.mark.line > 0) {
    out += ':' + std::to_string(mistake.mark.line) + ':' + std::to_string(mistake.mark.column);
  }
  out += ": ";
  if (mistake.severity == Severity::Warning) {
    out += "warning: ";
  }
  if (!mistake.field.empty()) {
    out += mistake.field + ": ";
  }
  return out + mistake.text;
}

}  // namespace cfm_agent
