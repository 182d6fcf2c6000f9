/* SPDX-License-Identifier: Apache-2.0 */
// The texts that a client logs of a configuration that it applies.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_DUMP_MODEL_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_DUMP_MODEL_H

#include <cfm/hierarchy.h>
#include <cfm/probe.h>

#include <string>

namespace cfm_test {

std::string DumpOf(const cfm::hierarchy& config);
std::string DumpOf(const cfm::probe& config);

}  // namespace cfm_test

#endif
