/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_SUPPORT_CHILD_PROCESS_H
#define CFM_TESTS_SUPPORT_CHILD_PROCESS_H

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace cfm_test {

/**
 * A process that a test starts. It ends at the latest with this object, and with the thread that
 * started it. Failures to start throw std::system_error.
 */
class ChildProcess {
 public:
  ChildProcess() = default;
  /** Forks; the child runs @p body and exits with what it returns. */
  explicit ChildProcess(const std::function<int()>& body);
  /** Runs a program. Empty paths leave standard output and standard error as they are. */
  ChildProcess(const std::vector<std::string>& command, const std::string& stdout_path,
               const std::string& stderr_path);
  ~ChildProcess();
  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&& other) noexcept;
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return pid_; }
  void Signal(int signal) const;

  /**
   * Waits for the child to end. Its exit status, or 128 plus the signal that ended it, as a shell
   * says it; -1 when the time is over first.
   */
  int Wait(std::chrono::milliseconds limit = std::chrono::seconds(20));

  /** Kills the child, if it still runs, and waits for its end. */
  void Kill();

 private:
  pid_t pid_ = -1;
};

}  // namespace cfm_test

#endif
