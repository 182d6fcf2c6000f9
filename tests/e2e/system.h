/* SPDX-License-Identifier: Apache-2.0 */
// The whole system as a user starts it: a private bus, cfm-mgr and cfm-agent as processes of their
// own, and a configuration file between them.
#ifndef CFM_TESTS_E2E_SYSTEM_H
#define CFM_TESTS_E2E_SYSTEM_H

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "child_process.h"
#include "private_bus.h"

namespace cfm_test {

/// Checks the condition again and again until it holds; false when the time is over first.
bool Eventually(const std::function<bool()>& condition);

class System {
 public:
  void StartServer(const std::vector<std::string>& options = {});
  void StartAgent(const std::vector<std::string>& options = {});

  /// A program that takes the bus from the environment. What it prints goes into the files NAME.out
  /// and NAME.log.
  ChildProcess StartOnBus(const std::string& name, std::vector<std::string> command) const;

  /// As a crash: at once and without a word.
  void KillServer();
  void KillAgent();

  /// Has the processes that are started from now on reach the bus at this address.
  void RouteServer(const std::string& address) { server_route_ = address; }
  void RouteAgent(const std::string& address) { agent_route_ = address; }
  PrivateBus& bus() { return bus_; }

  /// Waits for it to end by itself; gives its exit status, -1 when it does not.
  int WaitForServerEnd() { return server_.Wait(); }
  int WaitForAgentEnd() { return agent_.Wait(); }

  /// Ends it with SIGTERM; gives its exit status.
  int StopServer();
  int StopAgent(std::chrono::milliseconds limit = std::chrono::seconds(20));

  /// Puts a new configuration in place as an editor does: a new file renamed over the old one.
  void WriteConfig(const std::string& yaml) const;
  void SignalAgent(int signal) const { agent_.Signal(signal); }

  /// The server's tree as its query prints it; empty when no server answers.
  std::string Tree() const;

  /// The requests in the server's log since it was started last, without time and client.
  std::vector<std::string> Requests() const;

  /// Waits until the server has taken this many requests since it was started last.
  bool WaitForRequests(std::size_t count) const;

  /// Waits until the agent complains of this on standard error.
  bool WaitForComplaint(const std::string& text) const;

  std::string AgentOutput() const { return ReadFile(File("agent.out")); }
  std::string AgentErrors() const { return ReadFile(File("agent.log")); }
  std::string ServerLog() const { return ReadFile(File("server.log")); }
  std::string File(const std::string& name) const { return directory_.File(name); }

 private:
  PrivateBus bus_;
  TemporaryDirectory directory_;
  std::string server_route_ = bus_.address();
  std::string agent_route_ = bus_.address();
  ChildProcess server_;
  ChildProcess agent_;
};

}  // namespace cfm_test

#endif
