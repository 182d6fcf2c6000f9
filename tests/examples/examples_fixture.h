/* SPDX-License-Identifier: Apache-2.0 */
// Runs the examples as a user starts them.
#ifndef CFM_TESTS_EXAMPLES_EXAMPLES_FIXTURE_H
#define CFM_TESTS_EXAMPLES_EXAMPLES_FIXTURE_H

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "child_process.h"
#include "system.h"

namespace cfm_test {

class ExamplesTest : public testing::Test {
 protected:
  /// Starts a program under a name that its output is kept by.
  ChildProcess Start(const std::string& name, const std::vector<std::string>& command) const {
    return system.StartOnBus(name, command);
  }

  std::string Output(const std::string& name) const { return ReadFile(system.File(name + ".out")); }
  std::string Errors(const std::string& name) const { return ReadFile(system.File(name + ".log")); }
  /// How many lines of the output hold this.
  std::size_t CountOf(const std::string& name, const std::string& text) const;
  /// Waits until the program has printed this; false when it does not in time.
  bool Says(const std::string& name, const std::string& text) const;

  /// Waits until the server holds this tree, or one that begins so.
  void ExpectTree(const std::string& expected);

  /// cfm-mgr in a network where a far endpoint answers the one of the examples on the interface lo.
  void StartServerInNetwork();

  System system;
};

/// What the server holds of event_loop and handlers, as far as the MEP's interface.
extern const char* const kTreeOfOneEndpoint;

}  // namespace cfm_test

#endif
