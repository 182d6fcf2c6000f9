// SPDX-License-Identifier: Apache-2.0
#include "process.h"

#include <cfm/identifiers.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>

#include "net/isolated_network.h"
#include "net/packet/packet_network.h"
#include "net/simulated/description_reader.h"
#include "net/simulated/simulated_network.h"
#include "render.h"

namespace cfm_mgr {
namespace {

using Clock = std::chrono::steady_clock;
using TimePoint = std::optional<Clock::time_point>;

/** The earlier of two times, of which none is never. */
TimePoint Sooner(const TimePoint& a, const TimePoint& b) {
  return a && b ? std::min(*a, *b) : a ? a : b;
}

Logger OpenLog(const Handle& handle, const Options& options) {
  if (options.log_config.empty()) return Logger();
  zlog_category_t* category = vorx_trace_init(handle.get(), CFM_MGR_PROCESS);
  if (category == nullptr) throw Failure("cannot set up logging: " + LastError(handle));
  return Logger(category);
}

/** All that is random in the protocol. */
std::uint64_t Seed() {
  std::random_device random;
  return (std::uint64_t{random()} << 32U) | random();
}

std::unique_ptr<net::Network> MakeNetwork(const Options& options, const Logger& logger,
                                          engine::Notifications& notifications, engine::Time now) {
  if (options.wire) {
    net::PacketNetworkOptions packet;
    packet.interfaces = {options.interfaces.begin(), options.interfaces.end()};
    packet.log = [&logger](const std::string& line) { logger.Write(line); };
    return std::make_unique<net::PacketNetwork>(std::move(packet), notifications, Seed());
  }
  if (!options.network.empty()) {
    return std::make_unique<net::SimulatedNetwork>(net::LoadDescription(options.network),
                                                   notifications, Seed(), now);
  }
  return std::make_unique<net::IsolatedNetwork>(notifications, Seed(), now);
}

const char* Describe(const Options& options) {
  if (options.wire) return "on the wire";
  return options.network.empty() ? "without a network" : "in a simulated network";
}

}  // namespace

Process::Process(const Options& options)
    : handle_(Join(CFM_MGR_PROCESS, options)),
      logger_(OpenLog(handle_, options)),
      environment_(handle_, logger_),
      keeper_(options.store, logger_),
      server_(keeper_.Load(), environment_, [&](engine::Notifications& notifications) {
        return MakeNetwork(options, logger_, notifications, environment_.Now());
      }) {
  for (const Server::Request& request : Server::Requests()) {
    entries_.push_back({this, &request});
    Register(handle_, *request.signal, Receive, &entries_.back());
  }
  RegisterUnknown();
  logger_.Write("serving as " + std::string(CFM_MGR_PROCESS) + ", process " +
                std::to_string(vorx_self(handle_.get())) + " " + Describe(options) + ": " +
                RenderSize(server_.tree()));
}

void Process::RegisterUnknown() {
  const auto highest = static_cast<unsigned>(Server::Requests().size());
  for (unsigned number = highest + 1; number <= std::numeric_limits<std::uint8_t>::max();
       ++number) {
    unknown_.push_back({this, {CFM_MGR_C2S_SIGBLOCK, static_cast<std::uint8_t>(number), {}}});
    Register(handle_, unknown_.back().signal, ReceiveUnknown, &unknown_.back());
  }
}

void Process::Run() {
  try {
    while (HandleSignals()) Turn();
  } catch (const Failure&) {
    Finish();
    throw;
  }
  Finish();
  logger_.Write("ended");
}

void Process::Receive(vorx_t* /*handle*/, void* user, const vorx_pid_t* sender, void* data,
                      unsigned int length) {
  const Entry& entry = *static_cast<const Entry*>(user);
  Process& process = *entry.process;
  process.round_.Request(Clock::now());
  const std::string_view payload(static_cast<const char*>(data), length);
  if (process.server_.Handle(*entry.request, *sender, payload)) process.keeper_.Change();
}

void Process::ReceiveUnknown(vorx_t* /*handle*/, void* user, const vorx_pid_t* sender,
                             void* /*data*/, unsigned int length) {
  const Unknown& unknown = *static_cast<const Unknown*>(user);
  unknown.process->logger_.Write(
      "client " + std::to_string(*sender) + ": request " + std::to_string(unknown.signal.number) +
      " of " + std::to_string(length) + " octets: refused: this server knows no such request");
}

bool Process::HandleSignals() const {
  while (const int signal = signals_.Take()) {
    if (signal == SIGUSR1) {
      // A blank line tells where the tree ends.
      std::cout.clear();
      std::cout << Render(server_.tree()) + "\n" << std::flush;
    } else if (signal == SIGUSR2) {
      for (const std::string& line : DescribeDrops(server_.Drops())) logger_.Write(line);
    } else {
      return false;
    }
  }
  return true;
}

void Process::LogDrops() {
  const auto now = Clock::now();
  if (!drop_log_.ShouldLook(now)) return;
  for (const std::string& line : drop_log_.TakeNews(now, server_.Drops())) logger_.Write(line);
}

void Process::Turn() {
  server_.Run();
  // What changes by itself is reported as what requests change.
  if (!round_.due() && server_.HasNews()) round_.Request(Clock::now());
  if (round_.IsOver(Clock::now())) {
    server_.EndRound();
    round_.End();
  }
  keeper_.SaveIfDue(server_.tree());
  LogDrops();
  Wait(handle_, NextWork(), {signals_.fd(), server_.Descriptor()});
  Dispatch(handle_);
}

std::optional<Clock::time_point> Process::NextWork() const {
  std::optional<Clock::time_point> work =
      Sooner(Sooner(round_.due(), keeper_.due()), drop_log_.due());
  if (const auto deadline = server_.NextDeadline())
    work = Sooner(work, Clock::time_point(*deadline));
  return work;
}

void Process::Finish() {
  server_.EndRound();
  keeper_.Finish(server_.tree());
}

}  // namespace cfm_mgr
