/* SPDX-License-Identifier: Apache-2.0 */
// Where commands come from while the agent runs.
#ifndef CFM_AGENT_SHELL_INPUT_H
#define CFM_AGENT_SHELL_INPUT_H

#include <string>
#include <vector>

namespace cfm_agent {

class Input {
 public:
  Input() = default;
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;
  virtual ~Input() = default;

  virtual int fd() const = 0;
  // The lines that are complete. To be called when the descriptor can be read.
  virtual std::vector<std::string> Read() = 0;
  // Whether there will be no more.
  bool ended() const { return ended_; }
  // The terminal changed its size.
  virtual void Resize() {}

 protected:
  void End() { ended_ = true; }

 private:
  bool ended_ = false;
};

}  // namespace cfm_agent

#endif
