// SPDX-License-Identifier: Apache-2.0
#include "core/mep.h"

#include "core/text.h"

namespace cfm_agent {

std::string AsWord(std::string_view name) {
  std::string printable = Printable(name);
  const bool plain =
      !name.empty() && printable == name && name.find_first_of(" =*#") == std::string_view::npos;
  return plain ? printable : '"' + printable + '"';
}

std::string Describe(const MepKey& mep) {
  return "MEP " + AsWord(mep.md) + ' ' + AsWord(mep.ma) + ' ' + std::to_string(mep.id);
}

}  // namespace cfm_agent
