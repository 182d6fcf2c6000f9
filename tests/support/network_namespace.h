/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_SUPPORT_NETWORK_NAMESPACE_H
#define CFM_TESTS_SUPPORT_NETWORK_NAMESPACE_H

#include <optional>
#include <string>

namespace cfm_test {

/** Takes the thread into a network namespace of its own; why not, when it may not. */
std::optional<std::string> EnterNamespace();

/** Runs a command of the shell, in silence. Whether it succeeds. */
bool Runs(const std::string& command);

}  // namespace cfm_test

#endif
