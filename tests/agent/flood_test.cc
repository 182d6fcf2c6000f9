// SPDX-License-Identifier: Apache-2.0
// A server that publishes events as fast as the bus takes them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fstream>

#include "agent_fixture.h"
#include "exhaustive.h"

namespace cfm_agent::testing {
namespace {

using ::testing::HasSubstr;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

std::size_t ResidentBytes(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  std::string word;
  std::size_t kilobytes = 0;
  while (status >> word) {
    if (word == "VmRSS:") {
      status >> kilobytes;
    }
  }
  return kilobytes << 10U;
}

// A status that differs from the one before, so that the agent tells each.
client_server::StatusRemoteMaintenanceEndpoint StatusNumber(std::uint32_t number) {
  client_server::StatusRemoteMaintenanceEndpoint status;
  status.set_md_name("d");
  status.set_ma_name("a");
  status.set_mep_id(1);
  status.set_remote_mep_id(9);
  status.set_last_change_uptime(number);
  return status;
}

class Flood : public AgentTest {
 protected:
  void SetUp() override {
    WriteConfig(kOneEndpoint);
    StartServer();
    StartAgent();
    ASSERT_TRUE(WaitUntilItSays("server in step"));
  }

  // Publishes this many events, numbered from `first`, and serves requests now and then.
  void Publish(std::uint32_t first, std::uint32_t count) const {
    constexpr std::uint32_t kTurn = 256;
    for (std::uint32_t number = first; number < first + count; ++number) {
      ASSERT_EQ(server_->Publish(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, StatusNumber(number)), 0);
      if (number % kTurn == 0) {
        server_->ServeUntil([] { return true; });
        most_resident_ = std::max(most_resident_, ResidentBytes(agent_.pid()));
      }
    }
  }

  // How many statuses the agent has told.
  std::size_t Told() const {
    const std::string output = Output();
    std::size_t told = 0;
    for (std::size_t at = output.find("uptime "); at != std::string::npos;
         at = output.find("uptime ", at + 1)) {
      ++told;
    }
    return told;
  }

  const std::uint32_t many_ = cfm_test::IsExhaustive() ? 100'000 : 10'000;
  mutable std::size_t most_resident_ = 0;
};

TEST_F(Flood, IsToldWholeByAnAgentThatDoesNotGrow) {
  constexpr std::size_t kMostGrowth = std::size_t{32} << 20U;
  const std::size_t before = ResidentBytes(agent_.pid());
  ASSERT_GT(before, 0U);
  Publish(1, many_);
  EXPECT_TRUE(WaitUntilItSays("uptime " + std::to_string(many_) + " ms\n"));
  EXPECT_EQ(Told(), many_);
  EXPECT_THAT(Errors(), ::testing::Not(HasSubstr("lost")));
  if (!kIsSanitized) {
    EXPECT_LT(std::max(most_resident_, ResidentBytes(agent_.pid())), before + kMostGrowth);
  }
}

TEST_F(Flood, LeavesTheAgentTimeForItsSignalsAndFile) {
  Publish(1, many_ / 4);
  agent_.Signal(SIGHUP);
  Publish(many_ / 4, many_ / 4);
  EXPECT_TRUE(WaitUntilItSays("configuration unchanged"));
  WriteConfig(std::string(kOneEndpoint) + "probes: []\n");
  Publish(many_ / 2, many_ / 2);
  EXPECT_TRUE(WaitUntilItSays("configuration reloaded"));
  agent_.Signal(SIGTERM);
  EXPECT_EQ(agent_.Wait(), 0) << Errors();
}

TEST_F(Flood, LetsACommandThroughMeanwhile) {
  cfm_test::ChildProcess command({CFM_AGENT, "--config", ConfigPath(), "--bus", bus_.address(),
                                  "--timeout", "60", "--execute", "show"},
                                 directory_.File("show"), directory_.File("show.err"));
  std::uint32_t published = 0;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  std::size_t answered = 0;
  int status = -1;
  while (status < 0 && std::chrono::steady_clock::now() < deadline) {
    for (; answered < server_->CountOf(CFM_MGR_C2S_SIG_STATS_GET); ++answered) {
      server_->Reply(CFM_MGR_S2C_SIG_STATS_REPLY, client_server::OpReplyAllStats());
    }
    // The answer lies behind all that was published before it.
    if (answered == 0) {
      Publish(published, 1000);
      published += 1000;
    }
    server_->ServeUntil([] { return true; });
    status = command.Wait(std::chrono::milliseconds(answered == 0 ? 0 : 10));
  }
  EXPECT_EQ(status, 0) << cfm_test::ReadFile(directory_.File("show.err"));
  EXPECT_GE(answered, 1U);
  EXPECT_THAT(cfm_test::ReadFile(directory_.File("show")), HasSubstr("server: in step"));
}

TEST_F(Flood, IsCaughtUpWithByAnAgentThatWasStopped) {
  agent_.Signal(SIGSTOP);
  Publish(1, many_);
  agent_.Signal(SIGCONT);
  EXPECT_TRUE(WaitUntilItSays("uptime " + std::to_string(many_) + " ms\n"));
  EXPECT_EQ(Told(), many_);
}

TEST_F(Flood, EndsWithTheServerAndTheNextOneIsTakenUp) {
  Publish(1, many_);
  StopServer();
  StartServer();
  ASSERT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_MEP_CREATE));
  EXPECT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_STATUS_GET_ALL));
}

}  // namespace
}  // namespace cfm_agent::testing
