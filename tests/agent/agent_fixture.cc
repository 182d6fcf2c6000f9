// SPDX-License-Identifier: Apache-2.0
#include "agent_fixture.h"

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace cfm_agent::testing {
namespace {

constexpr std::chrono::seconds kLimit(60);
constexpr int kPollMs = 10;
constexpr std::uint8_t kClientSignals = 20;

}  // namespace

FakeServer::FakeServer(const std::string& bus_address, client_server::OpCacheSync holds)
    : holds_(std::move(holds)) {
  vorx_options_t options = {};
  options.name = CFM_MGR_PROCESS;
  options.bus_address = bus_address.c_str();
  if (vorx_open(&options, &handle_) < 0) {
    throw std::runtime_error(vorx_last_error(nullptr));
  }
  for (std::uint8_t number = 1; number <= kClientSignals; ++number) {
    const vorx_sig_descriptor descriptor = {CFM_MGR_C2S_SIGBLOCK, number, {}};
    signals_.push_back(std::make_unique<Signal>(Signal{this, number}));
    vorx_sig_register_sized(handle_, &descriptor, &OnSignal, signals_.back().get());
  }
}

FakeServer::~FakeServer() { vorx_close(handle_); }

void FakeServer::OnSignal(vorx_t* /*handle*/, void* user, const vorx_pid_t* sender, void* data,
                          unsigned int length) {
  const auto& signal = *static_cast<const Signal*>(user);
  FakeServer& server = *signal.server;
  server.client_ = *sender;
  server.requests_.push_back(
      {signal.number,
       length == 0 ? std::string() : std::string(static_cast<const char*>(data), length)});
  if (signal.number == CFM_MGR_C2S_SIG_CACHE_GET->number && !server.hangs_) {
    server.Reply(CFM_MGR_S2C_SIG_CACHE_REPLY, server.holds_);
  }
}

bool FakeServer::ServeUntil(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + kLimit;
  while (true) {
    vorx_dispatch(handle_);
    if (condition()) {
      return true;
    }
    if (std::chrono::steady_clock::now() > deadline) {
      return false;
    }
    const int timeout = vorx_poll_timeout(handle_);
    pollfd fd = {vorx_fd(handle_), static_cast<short>(std::max(vorx_poll_events(handle_), 0)), 0};
    poll(&fd, 1, timeout < 0 ? kPollMs : std::min(timeout, kPollMs));
  }
}

bool FakeServer::ServeUntilAsked(const vorx_sig_descriptor* signal, std::size_t times) {
  return ServeUntil([&] { return CountOf(signal) >= times; });
}

int FakeServer::Reply(const vorx_sig_descriptor* signal,
                      const google::protobuf::MessageLite& message) {
  const std::string bytes = message.SerializeAsString();
  return vorx_sig_send(handle_, &client_, signal, bytes.data(),
                       static_cast<unsigned int>(bytes.size()));
}

int FakeServer::Publish(const vorx_event_descriptor* event,
                        const google::protobuf::MessageLite& message) {
  const std::string bytes = message.SerializeAsString();
  return vorx_event_publish(handle_, event, bytes.data(), static_cast<unsigned int>(bytes.size()));
}

std::size_t FakeServer::CountOf(const vorx_sig_descriptor* signal) const {
  return static_cast<std::size_t>(
      std::count_if(requests_.begin(), requests_.end(),
                    [signal](const Request& request) { return request.number == signal->number; }));
}

void AgentTest::WriteFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

void AgentTest::StartAgent(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {CFM_AGENT, "--config", ConfigPath()};
  if (std::find(arguments.begin(), arguments.end(), "--bus") == arguments.end()) {
    command.insert(command.end(), {"--bus", bus_.address()});
  }
  command.insert(command.end(), arguments.begin(), arguments.end());
  agent_ = cfm_test::ChildProcess(command, directory_.File("out"), directory_.File("err"));
}

bool AgentTest::WaitFor(const std::function<bool()>& condition) const {
  if (server_) {
    return server_->ServeUntil(condition);
  }
  const auto deadline = std::chrono::steady_clock::now() + kLimit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(kPollMs));
  }
  return true;
}

}  // namespace cfm_agent::testing
