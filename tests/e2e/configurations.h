/* SPDX-License-Identifier: Apache-2.0 */
// Configuration files for the end-to-end tests. All endpoints sit on the loopback interface, which
// every machine has.
#ifndef CFM_TESTS_E2E_CONFIGURATIONS_H
#define CFM_TESTS_E2E_CONFIGURATIONS_H

#include <string>

namespace cfm_test {

struct Size {
  int associations;
  int endpoints;  // of each association
};

/// A file with one domain "net", associations "a1", "a2", ... and endpoints 1, 2, ... in each, and
/// a probe from endpoint 1 of each association.
std::string ConfigFile(Size size, int ccm_priority = 7, int first_vid = 100);

/// The tree that a server holds of it, as cfm-mgr prints it.
std::string ExpectedTree(Size size, int ccm_priority = 7, int first_vid = 100);

}  // namespace cfm_test

#endif
