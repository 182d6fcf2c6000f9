/* SPDX-License-Identifier: Apache-2.0 */
// The bytes that a terminal sends for one key.
#ifndef CFM_AGENT_SHELL_KEYS_H
#define CFM_AGENT_SHELL_KEYS_H

#include <string_view>

namespace cfm_agent {

// Whether the bytes are all of a key, in the locale's encoding. Those that begin a longer one,
// such as an escape sequence, are not; those that make no sense are, so that nothing waits for
// more of them.
bool IsWholeKey(std::string_view bytes);

}  // namespace cfm_agent

#endif
