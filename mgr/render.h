/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_RENDER_H
#define CFM_MGR_RENDER_H

#include <string>

#include "model.h"

namespace cfm_mgr {

/** The sizes of a tree in one line: `1 domain, 2 associations, ...`. */
std::string RenderSize(const Tree& tree);

/**
 * The whole tree as text: its size, then one line for each entity, in order of names and
 * identifiers. Equal trees give equal text, whatever the process's locale.
 */
std::string Render(const Tree& tree);

}  // namespace cfm_mgr

#endif
