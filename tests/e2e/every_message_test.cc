// SPDX-License-Identifier: Apache-2.0
// A run in which a process, or the bus, is killed after the k-th message, for every k: one that
// provisions a server, and one that brings it an edited configuration. After each kill, whoever was
// killed, or has ended for want of a bus, is started again as a supervisor would, and the server
// has to come to hold what the configuration file says.
//
// The default is a run of the smallest configuration. CFM_EXHAUSTIVE=1 takes a larger one.

#include <gtest/gtest.h>

#include <chrono>
#include <iostream>

#include "bus_wire.h"
#include "configurations.h"
#include "exhaustive.h"
#include "system.h"

namespace cfm_test {
namespace {

using Direction = BusWire::Direction;

// Of any run.
constexpr std::uint64_t kLeastMessages = 5;

enum class Victim { Server, Agent, Bus };

enum class Work { Provisioning, Editing };

struct Fault {
  const char* name;
  Work work;
  Victim victim;
  Direction counted;  // of the victim's messages; of the bus, those that it took
  bool keeps_store;   // that the server keeps its configuration in a file
  bool is_exhaustive = false;
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

struct Configuration {
  Size size;
  int first_vid;
};

// The edit deletes, creates, and creates anew under the same name.
const Configuration kFirst =
    IsExhaustive() ? Configuration{{4, 4}, 100} : Configuration{{1, 1}, 100};
const Configuration kEdited =
    IsExhaustive() ? Configuration{{3, 5}, 300} : Configuration{{1, 2}, 300};

// One run of server and agent, with a wire between the bus and whom the fault is about.
class ProvisioningRun {
 public:
  explicit ProvisioningRun(const Fault& fault) : fault_(fault), wire_(system_.bus().address()) {
    if (fault_.victim != Victim::Agent) {
      system_.RouteServer(wire_.address());
    }
    if (fault_.victim != Victim::Server) {
      system_.RouteAgent(wire_.address());
    }
    Write(kFirst);
  }

  // How many messages an undisturbed run takes.
  std::uint64_t CountMessages() {
    const std::uint64_t before = Prepare();
    Begin();
    EXPECT_TRUE(Eventually([this] { return IsOver(); })) << Account();
    return wire_.Passed(fault_.counted) - before;
  }

  // Runs until this many messages have passed, or to the end if there are fewer. False when neither
  // comes to pass.
  bool RunUpTo(std::uint64_t messages) {
    wire_.HoldAfter(fault_.counted, Prepare() + messages);
    Begin();
    return Eventually([this] { return wire_.IsHeld() || IsOver(); }) &&
           Eventually([this] { return IsSaved(); });
  }
  bool IsHeld() const { return wire_.IsHeld(); }

  void Strike() {
    switch (fault_.victim) {
      case Victim::Server:
        system_.KillServer();
        wire_.Cut();
        StartServer();
        break;
      case Victim::Agent:
        system_.KillAgent();
        wire_.Cut();
        system_.StartAgent();
        break;
      case Victim::Bus:
        system_.bus().Kill();
        wire_.Cut();
        EXPECT_EQ(system_.WaitForServerEnd(), 1) << system_.ServerLog();
        EXPECT_EQ(system_.WaitForAgentEnd(), 3) << system_.AgentErrors();
        system_.bus().Restart();
        StartBoth();
        break;
    }
  }

  bool Converges() {
    const std::string expected = ExpectedTree(written_.size, 7, written_.first_vid);
    return Eventually([&] { return IsInStep(); }) &&
           Eventually([&] { return system_.Tree() == expected; });
  }

  // Both still heed a signal and end well.
  void Stop() {
    EXPECT_EQ(system_.StopAgent(), 0) << system_.AgentErrors();
    EXPECT_EQ(system_.StopServer(), 0) << system_.ServerLog();
  }

  std::string Account() const {
    return "the agent said\n" + system_.AgentOutput() + system_.AgentErrors() + "and the server\n" +
           system_.ServerLog();
  }

 private:
  void StartServer() {
    system_.StartServer(fault_.keeps_store
                            ? std::vector<std::string>{"--store", system_.File("store")}
                            : std::vector<std::string>{});
  }

  void Write(const Configuration& configuration) {
    written_ = configuration;
    system_.WriteConfig(ConfigFile(written_.size, 7, written_.first_vid));
  }

  // Does what comes before the run. Gives how many messages that took.
  std::uint64_t Prepare() {
    if (fault_.work == Work::Provisioning) {
      return 0;
    }
    StartBoth();
    EXPECT_TRUE(Eventually([this] { return IsOver() && IsSaved(); })) << Account();
    return wire_.Passed(fault_.counted);
  }

  void Begin() {
    if (fault_.work == Work::Provisioning) {
      StartBoth();
      return;
    }
    Write(kEdited);
    EXPECT_TRUE(Eventually([this] {
      return system_.AgentOutput().find("configuration reloaded") != std::string::npos;
    })) << Account();
    last_change_ = std::chrono::steady_clock::now();
  }

  // The server is there before the agent, unless it is held: so one run is much like another.
  void StartBoth() {
    StartServer();
    EXPECT_TRUE(Eventually([this] {
      return wire_.IsHeld() || system_.ServerLog().find("serving as") != std::string::npos;
    })) << system_.ServerLog();
    system_.StartAgent();
  }

  // That the server, if it has a store, has put there what it took.
  bool IsSaved() const {
    return !fault_.keeps_store || system_.ServerLog().find(": created") == std::string::npos ||
           !ReadFile(system_.File("store")).empty();
  }

  // That the server's answer has come, and all that followed from it.
  bool IsOver() {
    constexpr std::chrono::milliseconds kRest(200);
    const auto now = std::chrono::steady_clock::now();
    const std::uint64_t passed = wire_.Passed(fault_.counted);
    if (std::exchange(last_passed_, passed) != passed || !IsInStep()) {
      last_change_ = now;
    }
    return now - last_change_ >= kRest;
  }

  // Also spares the server queries that come too early.
  bool IsInStep() const {
    const std::string said = system_.AgentOutput();
    const std::size_t in_step = said.rfind("server in step");
    const std::size_t lost = said.rfind("server lost");
    return in_step != std::string::npos && (lost == std::string::npos || lost < in_step);
  }

  Fault fault_;
  System system_;
  BusWire wire_;
  Configuration written_{};
  std::uint64_t last_passed_ = 0;
  std::chrono::steady_clock::time_point last_change_;
};

class EveryMessage : public testing::TestWithParam<Fault> {};

TEST_P(EveryMessage, MayBeTheLastBeforeAKill) {
  if (GetParam().is_exhaustive && !IsExhaustive()) {
    GTEST_SKIP() << "much like the others; set CFM_EXHAUSTIVE to run it";
  }
  const std::uint64_t messages = ProvisioningRun(GetParam()).CountMessages();
  EXPECT_GE(messages, kLeastMessages);
  std::uint64_t held = 0;
  for (std::uint64_t k = 1; k <= messages && !HasFailure(); ++k) {
    SCOPED_TRACE("killed after message " + std::to_string(k) + " of " + std::to_string(messages));
    ProvisioningRun run(GetParam());
    ASSERT_TRUE(run.RunUpTo(k)) << run.Account();
    held += run.IsHeld() ? 1U : 0U;
    run.Strike();
    EXPECT_TRUE(run.Converges()) << run.Account();
    run.Stop();
  }
  // How often the server tells the same status varies with its pace, by a few messages at most.
  EXPECT_GE(held + 2 * static_cast<unsigned>(kFirst.size.associations * kFirst.size.endpoints),
            messages);
  std::cout << "killed after each of " << messages << " messages\n";
}

constexpr auto kTook = Direction::kFromBus;
constexpr auto kSent = Direction::kToBus;

constexpr Fault kFaults[] = {
    {"ServerTook", Work::Provisioning, Victim::Server, kTook, false},
    {"ServerSent", Work::Provisioning, Victim::Server, kSent, false},
    {"ServerWithStoreTook", Work::Provisioning, Victim::Server, kTook, true},
    {"AgentSent", Work::Provisioning, Victim::Agent, kSent, false},
    {"AgentTook", Work::Provisioning, Victim::Agent, kTook, false},
    {"BusTook", Work::Provisioning, Victim::Bus, kSent, false},
    {"BusWithStoreTook", Work::Provisioning, Victim::Bus, kSent, true, true},
    {"ServerTookOfEdit", Work::Editing, Victim::Server, kTook, false},
    {"ServerWithStoreTookOfEdit", Work::Editing, Victim::Server, kTook, true},
    {"AgentSentOfEdit", Work::Editing, Victim::Agent, kSent, false},
    {"BusTookOfEdit", Work::Editing, Victim::Bus, kSent, false},
    {"BusWithStoreTookOfEdit", Work::Editing, Victim::Bus, kSent, true, true},
};

INSTANTIATE_TEST_SUITE_P(Of, EveryMessage, testing::ValuesIn(kFaults),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace cfm_test
