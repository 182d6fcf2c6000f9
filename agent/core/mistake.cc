#include "core/mistake.h"

namespace cfm_agent {

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
