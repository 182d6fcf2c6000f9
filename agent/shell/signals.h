/* SPDX-License-Identifier: Apache-2.0 */
// Signals of the operating system as a file descriptor.
#ifndef CFM_AGENT_SHELL_SIGNALS_H
#define CFM_AGENT_SHELL_SIGNALS_H

#include <vector>

#include "shell/unique_fd.h"

namespace cfm_agent {

// Takes signals out of asynchronous delivery, for the rest of the process's life. Make it before
// any thread.
class Signals {
 public:
  // Throws std::system_error.
  explicit Signals(const std::vector<int>& signals);

  int fd() const { return fd_.get(); }
  // The next signal that has come, or 0.
  int Take();

 private:
  UniqueFd fd_;
};

}  // namespace cfm_agent

#endif
