/* SPDX-License-Identifier: Apache-2.0 */
// Commands from a file or a pipe.
#ifndef CFM_AGENT_SHELL_PIPE_INPUT_H
#define CFM_AGENT_SHELL_PIPE_INPUT_H

#include "shell/input.h"

namespace cfm_agent {

class PipeInput : public Input {
 public:
  explicit PipeInput(int fd) : fd_(fd) {}

  int fd() const override { return fd_; }
  std::vector<std::string> Read() override;

 private:
  int fd_;
  std::string rest_;  // a line that goes on
};

}  // namespace cfm_agent

#endif
