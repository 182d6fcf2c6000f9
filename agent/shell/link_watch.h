/* SPDX-License-Identifier: Apache-2.0 */
// Tells when the kernel's table of network interfaces may have changed.
#ifndef CFM_AGENT_SHELL_LINK_WATCH_H
#define CFM_AGENT_SHELL_LINK_WATCH_H

#include "shell/unique_fd.h"

namespace cfm_agent {

class LinkWatch {
 public:
  // Throws std::system_error when the kernel does not tell.
  LinkWatch();

  int fd() const { return socket_.get(); }

  // Whether something changed since the last call. Never waits.
  bool Read();

 private:
  UniqueFd socket_;
};

}  // namespace cfm_agent

#endif
