/* SPDX-License-Identifier: Apache-2.0 */
// Reads a file as it is now.
#ifndef CFM_AGENT_SHELL_FILE_READER_H
#define CFM_AGENT_SHELL_FILE_READER_H

#include <string>

#include "core/config_keeper.h"

namespace cfm_agent {

// The whole text of a regular file. A file larger than any configuration may be is read only so
// far as to show that it is.
FileText ReadFile(const std::string& path);

}  // namespace cfm_agent

#endif
