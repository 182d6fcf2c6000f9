/* SPDX-License-Identifier: Apache-2.0 */
// What standard output leads to, as far as it decides how the agent writes.
#ifndef CFM_AGENT_SHELL_TTY_H
#define CFM_AGENT_SHELL_TTY_H

#include <cstddef>

#include "core/style.h"
#include "shell/options.h"

namespace cfm_agent {

// A terminal whose lines can be written anew.
bool OutputIsUpdatable();

// How many cells a line has.
std::size_t OutputColumns();

// Of text on standard output, after the locale has been set. A choice on the command line stands
// above NO_COLOR in the environment.
Style OutputStyle(ColourChoice choice);

}  // namespace cfm_agent

#endif
