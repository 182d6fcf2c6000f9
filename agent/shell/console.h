// Where the agent says what happens.
#ifndef CFM_AGENT_SHELL_CONSOLE_H
#define CFM_AGENT_SHELL_CONSOLE_H

#include <string_view>

namespace cfm_agent {

class Console {
 public:
  Console() = default;
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  virtual ~Console() = default;

  // Each prints whole lines at once, so that a reader of a pipe sees them as they happen.
  virtual void Print(std::string_view line);
  virtual void Complain(std::string_view line);
};

}  // namespace cfm_agent

#endif
