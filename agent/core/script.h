/* SPDX-License-Identifier: Apache-2.0 */
// Commands that run one after the other, each once the last one has ended.
#ifndef CFM_AGENT_CORE_SCRIPT_H
#define CFM_AGENT_CORE_SCRIPT_H

#include <cstddef>
#include <deque>
#include <optional>

#include "core/command.h"
#include "core/test_tracker.h"

namespace cfm_agent {

class Script {
 public:
  // Waits until `give_up` for a server in step, then runs its commands in any case.
  explicit Script(TimePoint give_up) : give_up_(give_up) {}

  void Add(Command command) { commands_.push_back(std::move(command)); }
  // There will be no more commands.
  void Close() { closed_ = true; }

  // The command to run now, if any. `in_step`: the server is; `idle`: no test is running.
  std::optional<Command> Next(TimePoint now, bool in_step, bool idle);
  // Whether all there is to run has been run and has ended.
  bool Done(bool idle) const { return closed_ && commands_.empty() && idle; }
  // When Next() has to be asked again in any case.
  std::optional<TimePoint> Deadline() const;

  // How many commands have not been run.
  std::size_t waiting() const { return commands_.size(); }

  // Notes how a test ended; the first that was not complete decides how the script did.
  void Note(EndReason reason);
  std::optional<EndReason> failure() const { return failure_; }

 private:
  TimePoint give_up_;
  bool started_ = false;
  bool closed_ = false;
  std::deque<Command> commands_;
  std::optional<EndReason> failure_;
};

}  // namespace cfm_agent

#endif
