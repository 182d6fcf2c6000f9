// SPDX-License-Identifier: Apache-2.0
// The running agent: provisioning, its file, the server's coming and going, its own end.

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>

#include "agent_fixture.h"

namespace cfm_agent::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::string Domain(const std::string& name, int level = 1) {
  return "domains: [{name: " + name + ", level: " + std::to_string(level) + "}]\n";
}

client_server::OpCacheSync Holding(const std::string& md_name, unsigned level) {
  client_server::OpCacheSync cache;
  auto* md = cache.add_mds();
  md->set_md_name(md_name);
  md->set_level(level);
  return cache;
}

class AgentAndServer : public AgentTest {
 protected:
  void SetUp() override {
    WriteConfig(Domain("first"));
    StartServer();
    StartAgent();
    ASSERT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_STATUS_GET_ALL));
  }

  // Serves until the server has been asked to create this domain.
  bool ServeUntilCreated(const std::string& md_name) {
    return server_->ServeUntil([&] {
      return server_->Last<client_server::OpCreateMaintenanceDomain>(CFM_MGR_C2S_SIG_MD_CREATE)
                 .md_name() == md_name;
    });
  }
};

TEST_F(AgentAndServer, SendsItsConfigurationToAnEmptyServer) {
  EXPECT_TRUE(ServeUntilCreated("first"));
  EXPECT_TRUE(Says(
      "configuration loaded: 1 domain, 0 associations, 0 endpoints, 0 probes with 0 sessions"));
  EXPECT_TRUE(Says("server found"));
}

TEST_F(AgentTest, DeletesNothingThatItsFileHas) {
  WriteConfig(Domain("kept"));
  auto holds = Holding("kept", 1);
  *holds.add_mds() = Holding("other", 2).mds(0);
  StartServer(holds);
  StartAgent();
  ASSERT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_STATUS_GET_ALL));
  EXPECT_EQ(server_->CountOf(CFM_MGR_C2S_SIG_MD_CREATE), 0U);
  ASSERT_EQ(server_->CountOf(CFM_MGR_C2S_SIG_MD_DELETE), 1U);
  EXPECT_EQ(
      server_->Last<client_server::OpDeleteMaintenanceDomain>(CFM_MGR_C2S_SIG_MD_DELETE).md_name(),
      "other");
}

TEST_F(AgentAndServer, FollowsAFileThatIsWrittenInPlace) {
  WriteConfig(Domain("second"));
  EXPECT_TRUE(ServeUntilCreated("second"));
  EXPECT_TRUE(WaitUntilItSays("configuration reloaded: 1 domain"));
}

TEST_F(AgentAndServer, FollowsAFileThatIsReplaced) {
  for (const char* name : {"second", "third"}) {
    WriteFile(directory_.File("agent.yaml.new"), Domain(name));
    std::filesystem::rename(directory_.File("agent.yaml.new"), ConfigPath());
    EXPECT_TRUE(ServeUntilCreated(name));
  }
}

TEST_F(AgentAndServer, KeepsTheOldConfigurationWhileTheFileIsBad) {
  ASSERT_TRUE(ServeUntilCreated("first"));
  server_->Forget();
  WriteConfig("domains:\n- {name: second, level: 9}\n- {name: second}\n");
  ASSERT_TRUE(WaitUntilItComplains("; the old configuration stays in force"));
  EXPECT_THAT(Errors(), HasSubstr("agent.yaml:2:25: domains[0].level: 9 is out of range"));
  EXPECT_THAT(Errors(), HasSubstr("agent.yaml:3:3: domains[1].level: is missing"));
  EXPECT_THAT(Errors(), HasSubstr("agent.yaml:3:10: domains[1].name: \"second\" is used twice"));
  EXPECT_THAT(Errors(), HasSubstr("agent.yaml: 3 mistakes; the old"));
  EXPECT_EQ(server_->requests().size(), 0U);
  WriteConfig(Domain("mended"));
  EXPECT_TRUE(ServeUntilCreated("mended"));
  EXPECT_EQ(
      server_->Last<client_server::OpDeleteMaintenanceDomain>(CFM_MGR_C2S_SIG_MD_DELETE).md_name(),
      "first");
}

TEST_F(AgentAndServer, KeepsTheOldConfigurationWhileTheFileIsGone) {
  std::filesystem::remove(ConfigPath());
  ASSERT_TRUE(WaitUntilItComplains("agent.yaml: cannot be opened: No such file or directory"));
  WriteConfig(Domain("back"));
  EXPECT_TRUE(ServeUntilCreated("back"));
}

TEST_F(AgentAndServer, ReadsTheFileAgainOnHangUp) {
  agent_.Signal(SIGHUP);
  EXPECT_TRUE(WaitUntilItSays("configuration unchanged"));
}

TEST_F(AgentAndServer, RepeatsItsComplaintsOnHangUp) {
  WriteConfig("domains: 5\n");
  ASSERT_TRUE(WaitUntilItComplains("stays in force"));
  agent_.Signal(SIGHUP);
  EXPECT_TRUE(WaitFor([this] {
    const std::string errors = Errors();
    const std::string complaint = "stays in force\n";
    return errors.find(complaint) != errors.rfind(complaint);
  }));
}

TEST_F(AgentAndServer, CreatesEverythingAgainInAServerThatComesBackEmpty) {
  ASSERT_TRUE(ServeUntilCreated("first"));
  StopServer();
  ASSERT_TRUE(WaitUntilItSays("server lost"));
  StartServer();
  EXPECT_TRUE(ServeUntilCreated("first"));
}

TEST_F(AgentAndServer, EndsWellOnATermination) {
  agent_.Signal(SIGTERM);
  EXPECT_EQ(agent_.Wait(), 0);
  EXPECT_TRUE(Says("stopped"));
  EXPECT_EQ(server_->CountOf(CFM_MGR_C2S_SIG_MD_DELETE), 0U);
}

TEST_F(AgentAndServer, EndsWellOnAnInterrupt) {
  agent_.Signal(SIGINT);
  EXPECT_EQ(agent_.Wait(), 0);
}

TEST_F(AgentAndServer, EndsWithItsOwnStatusWhenTheBusGoesAway) {
  bus_.Kill();
  EXPECT_EQ(agent_.Wait(), 3);
  EXPECT_TRUE(Complains("the bus has gone away"));
}

TEST_F(AgentTest, WaitsForAServerThatComesLater) {
  WriteConfig(Domain("patient"));
  StartAgent();
  ASSERT_TRUE(WaitUntilItSays("configuration loaded"));
  StartServer();
  ASSERT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_MD_CREATE));
}

TEST_F(AgentTest, NeverJoinsTheBusWithABadFile) {
  WriteConfig("domains: 5\n");
  StartAgent();
  EXPECT_EQ(agent_.Wait(), 1);
  EXPECT_TRUE(Complains("agent.yaml: 1 mistake\n"));
  EXPECT_EQ(Output(), "");
}

TEST_F(AgentTest, NeedsABus) {
  WriteConfig(Domain("first"));
  StartAgent({"--bus", "unix:path=" + directory_.File("nowhere")});
  EXPECT_EQ(agent_.Wait(), 3);
  EXPECT_THAT(Errors(), ::testing::StartsWith("cannot join the bus at 'unix:path="));
}

TEST_F(AgentTest, NeedsANameOfItsOwn) {
  WriteConfig(Domain("first"));
  StartAgent({"--name", "twin"});
  ASSERT_TRUE(WaitUntilItSays("configuration loaded"));
  cfm_test::ChildProcess twin(
      {CFM_AGENT, "--config", ConfigPath(), "--bus", bus_.address(), "--name", "twin"},
      directory_.File("twin.out"), directory_.File("twin.err"));
  EXPECT_EQ(twin.Wait(), 3);
  EXPECT_THAT(cfm_test::ReadFile(directory_.File("twin.err")),
              HasSubstr("another process on the bus is called twin"));
}

// One domain with an endpoint and, in its place, another one.
std::string TwoInOnePlace(const std::string& md_name) {
  return "domains:\n- name: " + md_name +
         "\n  level: 1\n  associations:\n  - name: a\n    mep-ids: [1, 2]\n    endpoints:\n"
         "    - {mep-id: 1, direction: up, port: lo}\n"
         "    - {mep-id: 2, direction: up, port: lo}\n";
}

TEST_F(AgentAndServer, TakesAFileWithWarningsAndTellsThemOnce) {
  WriteConfig(TwoInOnePlace("crowded"));
  EXPECT_TRUE(ServeUntilCreated("crowded"));
  ASSERT_TRUE(WaitUntilItSays("configuration reloaded: 1 domain, 1 association, 2 endpoints"));
  const std::string warnings =
      ConfigPath() +
      ":9:7: warning: domains[0].associations[0].endpoints[1]: has the port, level, direction and "
      "VID of MEP crowded a 1 on line 8, so that each gets the other's frames; use another port, "
      "level, direction or primary-vid\n" +
      ConfigPath() + ": 1 warning\n";
  EXPECT_THAT(Errors(), HasSubstr(warnings));
  WriteConfig("# moved\n" + TwoInOnePlace("crowded") + "- {name: more, level: 2}\n");
  ASSERT_TRUE(WaitUntilItSays("configuration reloaded: 2 domains"));
  EXPECT_THAT(Errors(), Not(HasSubstr(":10:7: warning: ")));
}

TEST_F(AgentTest, LeavesWarningsToTheServiceWhenItRunsCommands) {
  WriteConfig(TwoInOnePlace("crowded"));
  StartServer();
  StartAgent({"--execute", "help"});
  ASSERT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_STATS_GET));
  server_->Reply(CFM_MGR_S2C_SIG_STATS_REPLY, client_server::OpReplyAllStats());
  EXPECT_EQ(agent_.Wait(), 0);
  EXPECT_EQ(Errors(), "");
}

class CommandLine : public AgentTest {};

TEST_F(CommandLine, ChecksAFileWithWarnings) {
  WriteConfig(TwoInOnePlace("crowded"));
  StartAgent({"--check"});
  EXPECT_EQ(agent_.Wait(), 0);
  EXPECT_EQ(Output(), ConfigPath() +
                          ": no mistakes, 1 warning: 1 domain, 1 association, 2 endpoints, 0 "
                          "probes with 0 sessions\n");
  EXPECT_THAT(Errors(), ::testing::StartsWith(ConfigPath() + ":9:7: warning: domains[0]."));
  StartAgent({"--check", "--output", "json"});
  EXPECT_EQ(agent_.Wait(), 0);
  EXPECT_TRUE(Says("{\"type\":\"warning\",\"time\""));
  EXPECT_TRUE(Says("\"warnings\":1}"));
  EXPECT_EQ(Errors(), "");
}

TEST_F(CommandLine, ChecksAGoodFile) {
  WriteConfig(Domain("first"));
  StartAgent({"--check", "--bus", "unix:path=/nowhere"});
  EXPECT_EQ(agent_.Wait(), 0);
  EXPECT_EQ(Output(), ConfigPath() +
                          ": no mistakes: 1 domain, 0 associations, 0 endpoints, 0 probes with 0 "
                          "sessions\n");
  EXPECT_EQ(Errors(), "");
}

TEST_F(CommandLine, ChecksABadFile) {
  WriteConfig("domains: [{name: first, level: 8}]\n");
  StartAgent({"--check"});
  EXPECT_EQ(agent_.Wait(), 1);
  EXPECT_EQ(Output(), "");
  EXPECT_EQ(Errors(), ConfigPath() +
                          ":1:32: domains[0].level: 8 is out of range; use a whole number from 0 "
                          "to 7\n" +
                          ConfigPath() + ": 1 mistake\n");
}

TEST_F(CommandLine, RunsNoCommandsBesideACheck) {
  WriteConfig(Domain("first"));
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"--check", "--execute", "bogus"}, {"--check", "--interactive"}}) {
    StartAgent(arguments);
    EXPECT_EQ(agent_.Wait(), 2);
    EXPECT_EQ(Output(), "");
    EXPECT_TRUE(Complains("excludes")) << Errors();
  }
}

TEST_F(CommandLine, ChecksAFileThatIsNotThere) {
  StartAgent({"--check"});
  EXPECT_EQ(agent_.Wait(), 1);
  EXPECT_TRUE(Complains("agent.yaml: cannot be opened: No such file or directory"));
}

TEST_F(CommandLine, ChecksADirectory) {
  std::filesystem::create_directory(ConfigPath());
  StartAgent({"--check"});
  EXPECT_EQ(agent_.Wait(), 1);
  EXPECT_TRUE(Complains("agent.yaml: is not a regular file"));
}

TEST_F(CommandLine, RefusesWhatItDoesNotKnow) {
  StartAgent({"--colour"});
  EXPECT_EQ(agent_.Wait(), 2);
  EXPECT_TRUE(Complains("--colour"));
}

TEST_F(CommandLine, RefusesALogConfigurationThatIsNotThere) {
  StartAgent({"--log-config", directory_.File("nothing")});
  EXPECT_EQ(agent_.Wait(), 2);
  EXPECT_TRUE(Complains("File does not exist"));
}

TEST_F(CommandLine, NeedsAConfigurationFile) {
  cfm_test::ChildProcess agent({CFM_AGENT}, directory_.File("out"), directory_.File("err"));
  EXPECT_EQ(agent.Wait(), 2);
  EXPECT_TRUE(Complains("--config is required"));
}

TEST_F(CommandLine, NeedsTheNameOfAConfigurationFile) {
  cfm_test::ChildProcess agent({CFM_AGENT, "--config", "", "--check"}, directory_.File("out"),
                               directory_.File("err"));
  EXPECT_EQ(agent.Wait(), 2);
  EXPECT_TRUE(Complains("--config: names no file"));
}

TEST_F(CommandLine, TellsItsVersionWhateverElseIsAsked) {
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{CFM_AGENT, "--version"}, {CFM_AGENT, "--check", "--version"}}) {
    cfm_test::ChildProcess agent(command, directory_.File("out"), directory_.File("err"));
    EXPECT_EQ(agent.Wait(), 0);
    EXPECT_EQ(Output(), "cfm-agent " PROJECT_VERSION "\n");
    EXPECT_EQ(Errors(), "");
  }
}

TEST_F(CommandLine, HelpsWithEveryExitStatus) {
  StartAgent({"--help"});
  EXPECT_EQ(agent_.Wait(), 0);
  EXPECT_THAT(Output(), HasSubstr("Exit status:"));
}

}  // namespace
}  // namespace cfm_agent::testing
