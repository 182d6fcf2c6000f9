/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Records of a description that have a name.
 */
#ifndef CFM_MGR_NET_SIMULATED_NAMED_H
#define CFM_MGR_NET_SIMULATED_NAMED_H

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "core/text.h"

namespace cfm_mgr::net {

/** The record of this name, or null. */
template <class Record>
const Record* FindNamed(const std::vector<Record>& records, const std::string& name) {
  const auto found = std::find_if(records.begin(), records.end(),
                                  [&name](const Record& record) { return record.name == name; });
  return found == records.end() ? nullptr : &*found;
}

/** All names as alternatives to use: "a, b or c". */
template <class Record>
std::string NamesOf(const std::vector<Record>& records) {
  std::vector<std::string_view> names;
  names.reserve(records.size());
  for (const Record& record : records) names.emplace_back(record.name);
  return names.empty() ? "one that there is" : cfm_agent::JoinAlternatives(names);
}

}  // namespace cfm_mgr::net

#endif
