/* SPDX-License-Identifier: Apache-2.0 */
// How endpoints are named across the agent.
#ifndef CFM_AGENT_CORE_MEP_H
#define CFM_AGENT_CORE_MEP_H

#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>

namespace cfm_agent {

// A local MEP.
struct MepKey {
  std::string md;
  std::string ma;
  std::uint16_t id = 0;
};

inline bool operator==(const MepKey& a, const MepKey& b) {
  return std::tie(a.md, a.ma, a.id) == std::tie(b.md, b.ma, b.id);
}
inline bool operator<(const MepKey& a, const MepKey& b) {
  return std::tie(a.md, a.ma, a.id) < std::tie(b.md, b.ma, b.id);
}

// A name as one word of a command: as it is, or in quotes where it needs them.
std::string AsWord(std::string_view name);

// "MEP operator-access ring-north 1", in the words that commands take.
std::string Describe(const MepKey& mep);

}  // namespace cfm_agent

#endif
