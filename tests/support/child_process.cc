// SPDX-License-Identifier: Apache-2.0
#include "child_process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <thread>
#include <utility>

namespace cfm_test {
namespace {

constexpr int kExitCannotRun = 127;

pid_t ForkTied() {
  const pid_t pid = fork();
  if (pid < 0) {
    throw std::system_error(errno, std::generic_category(), "fork");
  }
  if (pid == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
  }
  return pid;
}

void Redirect(const std::string& path, int descriptor) {
  if (path.empty()) {
    return;
  }
  constexpr mode_t kMode = 0600;
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kMode);
  if (file < 0 || dup2(file, descriptor) < 0) {
    _exit(kExitCannotRun);
  }
}

}  // namespace

ChildProcess::ChildProcess(const std::function<int()>& body) : pid_(ForkTied()) {
  if (pid_ == 0) {
    _exit(body());
  }
}

ChildProcess::ChildProcess(const std::vector<std::string>& command, const std::string& stdout_path,
                           const std::string& stderr_path) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& argument : command) {
    arguments.push_back(const_cast<char*>(argument.c_str()));  // NOLINT: execvp() changes nothing
  }
  arguments.push_back(nullptr);
  pid_ = ForkTied();
  if (pid_ == 0) {
    Redirect(stdout_path, STDOUT_FILENO);
    Redirect(stderr_path, STDERR_FILENO);
    execvp(arguments.front(), arguments.data());
    _exit(kExitCannotRun);
  }
}

ChildProcess::~ChildProcess() { Kill(); }

ChildProcess::ChildProcess(ChildProcess&& other) noexcept : pid_(std::exchange(other.pid_, -1)) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
  if (this != &other) {
    Kill();
    pid_ = std::exchange(other.pid_, -1);
  }
  return *this;
}

void ChildProcess::Signal(int signal) const {
  if (pid_ > 0) {
    kill(pid_, signal);
  }
}

int ChildProcess::Wait(std::chrono::milliseconds limit) {
  constexpr int kSignalled = 128;
  constexpr std::chrono::milliseconds kInterval(2);
  const auto deadline = std::chrono::steady_clock::now() + limit;
  int status = 0;
  while (pid_ > 0) {
    const pid_t ended = waitpid(pid_, &status, WNOHANG);
    if (ended == pid_) {
      pid_ = -1;
      return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
    }
    if ((ended < 0 && errno != EINTR) || std::chrono::steady_clock::now() >= deadline) {
      return -1;
    }
    std::this_thread::sleep_for(kInterval);
  }
  return -1;
}

void ChildProcess::Kill() {
  if (pid_ > 0) {
    kill(pid_, SIGKILL);
    while (waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) {
    }
    pid_ = -1;
  }
}

}  // namespace cfm_test
