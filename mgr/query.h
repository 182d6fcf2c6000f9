/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_QUERY_H
#define CFM_MGR_QUERY_H

#include <string>

#include "options.h"

namespace cfm_mgr {

/**
 * Asks the server that runs for its configuration.
 *
 * @return the tree as text
 * @throws Failure when no server answers in time, or not with a configuration
 */
std::string Query(const Options& options);

}  // namespace cfm_mgr

#endif
