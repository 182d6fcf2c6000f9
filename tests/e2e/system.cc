// SPDX-License-Identifier: Apache-2.0
#include "system.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <thread>

namespace cfm_test {

bool Eventually(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= deadline) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

void System::StartServer(const std::vector<std::string>& options) {
  std::vector<std::string> command = {CFM_MGR_PROGRAM, "--bus", server_route_};
  command.insert(command.end(), options.begin(), options.end());
  std::remove(File("server.log").c_str());
  server_ = ChildProcess(command, File("server.out"), File("server.log"));
}

void System::StartAgent(const std::vector<std::string>& options) {
  std::vector<std::string> command = {CFM_AGENT_PROGRAM, "--bus", agent_route_, "--config",
                                      File("config.yaml")};
  command.insert(command.end(), options.begin(), options.end());
  std::remove(File("agent.out").c_str());
  agent_ = ChildProcess(command, File("agent.out"), File("agent.log"));
}

ChildProcess System::StartOnBus(const std::string& name, std::vector<std::string> command) const {
  command.insert(command.begin(), {"/usr/bin/env", "VORX_BUS_ADDRESS=" + bus_.address()});
  return {command, File(name + ".out"), File(name + ".log")};
}

void System::KillServer() { server_.Kill(); }

void System::KillAgent() { agent_.Kill(); }

int System::StopServer() {
  server_.Signal(SIGTERM);
  return server_.Wait();
}

int System::StopAgent(std::chrono::milliseconds limit) {
  agent_.Signal(SIGTERM);
  return agent_.Wait(limit);
}

void System::WriteConfig(const std::string& yaml) const {
  std::ofstream(File("config.new")) << yaml;
  std::rename(File("config.new").c_str(), File("config.yaml").c_str());
}

std::string System::Tree() const {
  ChildProcess query({CFM_MGR_PROGRAM, "--bus", bus_.address(), "--query", "--timeout", "10"},
                     File("tree"), File("tree.err"));
  return query.Wait() == 0 ? ReadFile(File("tree")) : "";
}

// A request's line is "DATE TIME client N: REQUEST"; the last line may be still half written.
std::vector<std::string> System::Requests() const {
  static const std::vector<std::string> asking = {"cache request", "status request"};
  std::vector<std::string> requests;
  std::string log = ReadFile(File("server.log"));
  log.resize(log.rfind('\n') + 1);
  std::istringstream lines(log);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t client = line.find(" client ");
    const std::size_t text = line.find(": ", client == std::string::npos ? 0 : client);
    if (client == std::string::npos || text == std::string::npos) {
      continue;
    }
    const std::string request = line.substr(text + 2);
    const bool asks = std::any_of(asking.begin(), asking.end(), [&](const std::string& prefix) {
      return request.compare(0, prefix.size(), prefix) == 0;
    });
    if (!asks) {
      requests.push_back(request);
    }
  }
  return requests;
}

bool System::WaitForComplaint(const std::string& text) const {
  return Eventually([&] { return ReadFile(File("agent.log")).find(text) != std::string::npos; });
}

bool System::WaitForRequests(std::size_t count) const {
  return Eventually([&] { return Requests().size() >= count; });
}

}  // namespace cfm_test
