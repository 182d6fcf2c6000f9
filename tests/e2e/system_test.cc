// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "configurations.h"
#include "system.h"

namespace cfm_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr Size kSmall{2, 2};
// Enough requests that a process can be killed in the middle of them.
constexpr Size kLarge{40, 50};
constexpr std::size_t kLargeRequests = 1 + 40 + 40 * 50 + 2 * 40;

class SystemTest : public testing::Test {
 protected:
  void ExpectTree(const std::string& expected) {
    std::string tree;
    EXPECT_TRUE(Eventually([&] { return (tree = system.Tree()) == expected; }))
        << "the server holds\n"
        << tree << "instead of\n"
        << expected << "the agent said\n"
        << system.AgentOutput() << "and the server\n"
        << system.ServerLog();
  }

  void Start(const std::string& config, const std::string& tree) {
    system.WriteConfig(config);
    system.StartServer();
    system.StartAgent();
    ExpectTree(tree);
  }

  System system;
};

using Provisioning = SystemTest;

TEST_F(Provisioning, BringsTheFileToTheServer) {
  Start(ConfigFile(kSmall), ExpectedTree(kSmall));
  EXPECT_THAT(
      system.Requests(),
      ElementsAre("MD create: md \"net\": created", "MA create: md \"net\" ma \"a0001\": created",
                  "MA create: md \"net\" ma \"a0002\": created",
                  "MEP create: md \"net\" ma \"a0001\" mep 1: created",
                  "MEP create: md \"net\" ma \"a0001\" mep 2: created",
                  "MEP create: md \"net\" ma \"a0002\" mep 1: created",
                  "MEP create: md \"net\" ma \"a0002\" mep 2: created",
                  "probe create: probe 1: created", "session create: probe 1 session 1: created",
                  "probe create: probe 2: created", "session create: probe 2 session 1: created"));
}

TEST_F(Provisioning, WaitsForAServerThatComesLater) {
  system.WriteConfig(ConfigFile(kSmall));
  system.StartAgent();
  ASSERT_TRUE(Eventually([&] { return !system.AgentOutput().empty(); }));
  system.StartServer();
  ExpectTree(ExpectedTree(kSmall));
}

TEST_F(Provisioning, EndsBothCleanlyOnSigterm) {
  Start(ConfigFile(kSmall), ExpectedTree(kSmall));
  EXPECT_EQ(system.StopAgent(), 0);
  EXPECT_EQ(system.StopServer(), 0);
}

TEST_F(Provisioning, LeavesTheServerAloneWhenTheAgentStops) {
  Start(ConfigFile(kSmall), ExpectedTree(kSmall));
  EXPECT_EQ(system.StopAgent(), 0);
  ExpectTree(ExpectedTree(kSmall));
}

using Editing = SystemTest;

TEST_F(Editing, SendsWhatTheEditTakes) {
  Start(ConfigFile({2, 1}), ExpectedTree({2, 1}));
  const std::size_t before = system.Requests().size();
  system.WriteConfig(ConfigFile({1, 2}));
  ExpectTree(ExpectedTree({1, 2}));
  auto requests = system.Requests();
  requests.erase(requests.begin(), requests.begin() + static_cast<std::ptrdiff_t>(before));
  EXPECT_THAT(requests, ElementsAre(HasSubstr("MA delete: md \"net\" ma \"a0002\""),
                                    HasSubstr("MEP create: md \"net\" ma \"a0001\" mep 2"),
                                    HasSubstr("MD update: md \"net\""),
                                    HasSubstr("MA update: md \"net\" ma \"a0001\""),
                                    HasSubstr("MEP update: md \"net\" ma \"a0001\" mep 1"),
                                    HasSubstr("probe delete: probe 2")));
}

TEST_F(Editing, RecreatesAnAssociationWhoseVidsChange) {
  Start(ConfigFile(kSmall), ExpectedTree(kSmall));
  system.WriteConfig(ConfigFile(kSmall, 7, 300));
  ExpectTree(ExpectedTree(kSmall, 7, 300));
}

TEST_F(Editing, KeepsTheOldConfigurationWhenTheNewFileIsBad) {
  Start(ConfigFile(kSmall), ExpectedTree(kSmall));
  const auto before = system.Requests();
  system.WriteConfig("domains: [{name: net, level: 9}]\n");
  EXPECT_TRUE(system.WaitForComplaint("config.yaml:1:30: domains[0].level"));
  ExpectTree(ExpectedTree(kSmall));
  EXPECT_EQ(system.Requests(), before);
  system.WriteConfig(ConfigFile(kSmall, 3));
  ExpectTree(ExpectedTree(kSmall, 3));
}

TEST_F(Editing, ReadsTheFileAgainOnSighupAndSaysThatNothingChanged) {
  Start(ConfigFile(kSmall), ExpectedTree(kSmall));
  const auto before = system.Requests();
  system.SignalAgent(SIGHUP);
  EXPECT_TRUE(Eventually(
      [&] { return system.AgentOutput().find("configuration unchanged") != std::string::npos; }));
  EXPECT_EQ(system.Requests(), before);
}

using Restart = SystemTest;

TEST_F(Restart, AKilledServerGetsEverythingAgain) {
  Start(ConfigFile(kSmall), ExpectedTree(kSmall));
  system.KillServer();
  system.StartServer();
  ExpectTree(ExpectedTree(kSmall));
}

TEST_F(Restart, AKilledServerGetsWhatChangedMeanwhile) {
  Start(ConfigFile(kSmall), ExpectedTree(kSmall));
  system.KillServer();
  const std::string said = system.AgentOutput();
  system.WriteConfig(ConfigFile({3, 1}, 5));
  ASSERT_TRUE(Eventually([&] { return system.AgentOutput().size() > said.size(); }));
  system.StartServer();
  ExpectTree(ExpectedTree({3, 1}, 5));
}

TEST_F(Restart, AKilledAgentSendsOnlyTheDifference) {
  Start(ConfigFile(kSmall), ExpectedTree(kSmall));
  const std::size_t before = system.Requests().size();
  system.KillAgent();
  system.WriteConfig(ConfigFile({3, 2}));
  system.StartAgent();
  ExpectTree(ExpectedTree({3, 2}));
  auto requests = system.Requests();
  requests.erase(requests.begin(), requests.begin() + static_cast<std::ptrdiff_t>(before));
  EXPECT_THAT(requests, testing::Each(testing::AnyOf(HasSubstr("update"), HasSubstr("a0003"),
                                                     HasSubstr("probe 3"))));
}

TEST_F(Restart, BothKilledStartOverFromTheFile) {
  Start(ConfigFile(kSmall), ExpectedTree(kSmall));
  system.KillServer();
  system.KillAgent();
  system.WriteConfig(ConfigFile({1, 3}));
  system.StartAgent();
  system.StartServer();
  ExpectTree(ExpectedTree({1, 3}));
}

TEST_F(Restart, AServerThatKeptItsStoreGetsOnlyTheDifference) {
  const std::vector<std::string> store = {"--store", system.File("store")};
  system.WriteConfig(ConfigFile(kSmall));
  system.StartServer(store);
  system.StartAgent();
  ExpectTree(ExpectedTree(kSmall));
  EXPECT_EQ(system.StopServer(), 0);
  system.StartServer(store);
  ASSERT_TRUE(Eventually([&] { return !system.Requests().empty(); }));
  ExpectTree(ExpectedTree(kSmall));
  EXPECT_THAT(system.Requests(), testing::Each(HasSubstr("update")));
}

class KilledMidway : public SystemTest, public testing::WithParamInterface<std::size_t> {};

TEST_P(KilledMidway, TheServerIsProvisionedAfterAll) {
  system.WriteConfig(ConfigFile(kLarge));
  system.StartServer();
  system.StartAgent();
  ASSERT_TRUE(system.WaitForRequests(GetParam()));
  system.KillServer();
  system.StartServer();
  ExpectTree(ExpectedTree(kLarge));
}

TEST_P(KilledMidway, TheServerWithAStoreIsProvisionedAfterAll) {
  const std::vector<std::string> store = {"--store", system.File("store")};
  system.WriteConfig(ConfigFile(kLarge));
  system.StartServer(store);
  system.StartAgent();
  ASSERT_TRUE(system.WaitForRequests(GetParam()));
  system.KillServer();
  system.StartServer(store);
  ExpectTree(ExpectedTree(kLarge));
}

TEST_P(KilledMidway, TheAgentsSuccessorFinishes) {
  system.WriteConfig(ConfigFile(kLarge));
  system.StartServer();
  system.StartAgent();
  ASSERT_TRUE(system.WaitForRequests(GetParam()));
  system.KillAgent();
  system.StartAgent();
  ExpectTree(ExpectedTree(kLarge));
}

TEST_P(KilledMidway, BothStartOver) {
  const std::vector<std::string> store = {"--store", system.File("store")};
  system.WriteConfig(ConfigFile(kLarge));
  system.StartServer(store);
  system.StartAgent();
  ASSERT_TRUE(system.WaitForRequests(GetParam()));
  system.KillAgent();
  system.KillServer();
  system.StartAgent();
  system.StartServer(store);
  ExpectTree(ExpectedTree(kLarge));
}

INSTANTIATE_TEST_SUITE_P(AfterRequests, KilledMidway,
                         testing::Values(1U, 20U, 500U, kLargeRequests - 20U, kLargeRequests),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace cfm_test
