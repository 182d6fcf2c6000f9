/* SPDX-License-Identifier: Apache-2.0 */
// What the standards allow as the name of a domain, an association or an interface.
#ifndef CFM_AGENT_CORE_NAMES_H
#define CFM_AGENT_CORE_NAMES_H

#include <cfm/hierarchy.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace cfm_agent {

// Each returns what is wrong with the name and what would be right, or nothing when it is right.
std::optional<std::string> CheckMdName(std::string_view name, cfm::MdNameFormat format);
std::optional<std::string> CheckMaName(std::string_view name, cfm::MaNameFormat format);
std::optional<std::string> CheckInterfaceName(std::string_view name);

// Both names share the one MAID field of a CCM. Expects names that are right by themselves.
std::optional<std::string> CheckMaid(std::string_view md_name, cfm::MdNameFormat md_format,
                                     std::string_view ma_name, cfm::MaNameFormat ma_format);

}  // namespace cfm_agent

#endif
