// SPDX-License-Identifier: Apache-2.0
// The system on a bus that is slow, or stands still.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>

#include "bus_wire.h"
#include "configurations.h"
#include "exhaustive.h"
#include "system.h"

namespace cfm_test {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;
using Direction = BusWire::Direction;

constexpr Size kSmall{2, 2};
// So many requests that most of them wait in the agent.
constexpr Size kLarge{400, 1};
constexpr std::size_t kLargeRequests = 1 + 4 * 400;

class SlowBus : public testing::Test {
 protected:
  SlowBus() {
    system.RouteServer(wire.address());
    system.RouteAgent(wire.address());
  }

  void ExpectTree(Size size) {
    EXPECT_TRUE(Eventually([&] { return system.Tree() == ExpectedTree(size); }))
        << "the agent said\n"
        << system.AgentOutput() << system.AgentErrors() << "and the server\n"
        << system.ServerLog();
  }

  void StartBoth(Size size) {
    system.WriteConfig(ConfigFile(size));
    system.StartServer();
    system.StartAgent();
  }

  System system;
  BusWire wire{system.bus().address()};
};

TEST_F(SlowBus, BringsMessagesInPieces) {
  wire.Slow({16, microseconds(200)});
  StartBoth(kSmall);
  ExpectTree(kSmall);
  EXPECT_EQ(system.StopAgent(), 0);
  EXPECT_EQ(system.StopServer(), 0);
}

TEST_F(SlowBus, TakesItsTimeForEachMessage) {
  wire.Slow({256, milliseconds(20)});
  StartBoth(kSmall);
  ExpectTree(kSmall);
  EXPECT_EQ(system.StopAgent(), 0);
  EXPECT_EQ(system.StopServer(), 0);
}

TEST_F(SlowBus, GetsAllRequestsOfAnAgentThatIsStoppedMeanwhile) {
  wire.Slow({512, milliseconds(1)});
  StartBoth(kLarge);
  ASSERT_TRUE(system.WaitForRequests(20));
  EXPECT_EQ(system.StopAgent(), 0);
  ExpectTree(kLarge);
}

TEST_F(SlowBus, LosesNothingOfAServerThatIsKilledMeanwhile) {
  wire.Slow({512, milliseconds(1)});
  StartBoth(kLarge);
  ASSERT_TRUE(system.WaitForRequests(kLargeRequests / 2));
  system.KillServer();
  system.StartServer();
  ExpectTree(kLarge);
}

class StandingBus : public SlowBus {
 protected:
  static milliseconds Time(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
  }
};

TEST_F(StandingBus, DoesNotKeepProcessesFromEnding) {
  StartBoth(kSmall);
  ExpectTree(kSmall);
  wire.HoldAfter(Direction::kToBus, 0);
  EXPECT_EQ(system.StopAgent(), 0) << system.AgentErrors();
  EXPECT_EQ(system.StopServer(), 0) << system.ServerLog();
}

TEST_F(StandingBus, IsWaitedForNoLongerThanASendMayTake) {
  if (!IsExhaustive()) {
    GTEST_SKIP() << "waits for twenty seconds; set CFM_EXHAUSTIVE to run it";
  }
  // More than the system's buffers take.
  constexpr Size kHuge{200, 200};
  wire.Slow({256, milliseconds(1)});
  StartBoth(kHuge);
  ASSERT_TRUE(system.WaitForRequests(20));
  wire.HoldAfter(Direction::kToBus, 0);
  const milliseconds waited =
      Time([&] { EXPECT_EQ(system.StopAgent(seconds(40)), 0) << system.AgentErrors(); });
  // Ten seconds for the send that was under way, and ten for what had been queued before.
  EXPECT_GE(waited, seconds(9));
  EXPECT_LT(waited, seconds(30));
  EXPECT_NE(system.AgentErrors().find("messages not sent"), std::string::npos);
}

}  // namespace
}  // namespace cfm_test
