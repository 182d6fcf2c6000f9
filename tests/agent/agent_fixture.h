/* SPDX-License-Identifier: Apache-2.0 */
// Runs cfm-agent against a server played by the test, on a bus of their own.
#ifndef CFM_TESTS_AGENT_AGENT_FIXTURE_H
#define CFM_TESTS_AGENT_AGENT_FIXTURE_H

#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>
#include <gtest/gtest.h>
#include <vorx/host.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "child_process.h"
#include "private_bus.h"

namespace cfm_agent::testing {

// A configuration of one endpoint, 1, that watches one other, 9.
inline constexpr const char* kOneEndpoint =
    "domains:\n"
    "- name: d\n"
    "  level: 1\n"
    "  associations:\n"
    "  - {name: a, mep-ids: [1, 9], endpoints: [{mep-id: 1, direction: up, port: lo}]}\n";

// Plays the CFM server: notes what it is asked, and says what the test tells it to. Answers a
// request for its configuration by itself.
class FakeServer {
 public:
  struct Request {
    int number;  // of the signal
    std::string payload;
  };

  explicit FakeServer(const std::string& bus_address, client_server::OpCacheSync holds = {});
  FakeServer(const FakeServer&) = delete;
  FakeServer& operator=(const FakeServer&) = delete;
  ~FakeServer();

  // Serves the bus until the condition holds; false when it does not in time.
  bool ServeUntil(const std::function<bool()>& condition);
  // Serves until a signal of this number has come `times` times.
  bool ServeUntilAsked(const vorx_sig_descriptor* signal, std::size_t times = 1);

  // Each gives 0, or a negative error number.
  int Reply(const vorx_sig_descriptor* signal, const google::protobuf::MessageLite& message);
  int Publish(const vorx_event_descriptor* event, const google::protobuf::MessageLite& message);

  const std::vector<Request>& requests() const { return requests_; }
  // From now on keeps back what it holds, so that no client is in step with it.
  void Hang() { hangs_ = true; }
  std::size_t CountOf(const vorx_sig_descriptor* signal) const;
  // The payload of the last signal of this number.
  template <typename Message>
  Message Last(const vorx_sig_descriptor* signal) const {
    Message message;
    for (const Request& request : requests_) {
      if (request.number == signal->number) {
        message.ParseFromString(request.payload);
      }
    }
    return message;
  }
  void Forget() { requests_.clear(); }

 private:
  struct Signal {
    FakeServer* server;
    int number;
  };

  static void OnSignal(vorx_t* handle, void* user, const vorx_pid_t* sender, void* data,
                       unsigned int length);

  client_server::OpCacheSync holds_;
  bool hangs_ = false;
  vorx_t* handle_ = nullptr;
  vorx_pid_t client_ = 0;
  std::vector<std::unique_ptr<Signal>> signals_;
  std::vector<Request> requests_;
};

class AgentTest : public ::testing::Test {
 protected:
  // Writes the configuration file in place.
  void WriteConfig(const std::string& text) const { WriteFile(ConfigPath(), text); }
  static void WriteFile(const std::string& path, const std::string& text);

  // Starts the agent with the configuration file and, unless it says otherwise, this bus.
  void StartAgent(const std::vector<std::string>& arguments = {});
  void StartServer(client_server::OpCacheSync holds = {}) {
    server_ = std::make_unique<FakeServer>(bus_.address(), std::move(holds));
  }
  void StopServer() { server_.reset(); }

  std::string ConfigPath() const { return directory_.File("agent.yaml"); }
  std::string Output() const { return cfm_test::ReadFile(directory_.File("out")); }
  std::string Errors() const { return cfm_test::ReadFile(directory_.File("err")); }
  bool Says(const std::string& text) const { return Output().find(text) != std::string::npos; }
  bool Complains(const std::string& text) const { return Errors().find(text) != std::string::npos; }

  // Serves, if there is a server, until the agent has said it; false when it does not in time.
  bool WaitFor(const std::function<bool()>& condition) const;
  bool WaitUntilItSays(const std::string& text) const {
    return WaitFor([&] { return Says(text); });
  }
  bool WaitUntilItComplains(const std::string& text) const {
    return WaitFor([&] { return Complains(text); });
  }

  cfm_test::TemporaryDirectory directory_;
  cfm_test::PrivateBus bus_;
  std::unique_ptr<FakeServer> server_;
  cfm_test::ChildProcess agent_;
};

}  // namespace cfm_agent::testing

#endif
