// SPDX-License-Identifier: Apache-2.0
// The agent at a terminal that the test types on.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "agent_fixture.h"
#include "pseudo_terminal.h"
#include "shell/keys.h"

namespace cfm_agent::testing {
namespace {

using ::testing::HasSubstr;

// A shell script that joins the agent to a terminal: with its program, configuration, bus, the
// terminal and a home. The line editor never frees the name and the help of a function that is
// added to it.
constexpr const char* kRunAtTerminal = R"(
echo leak:wcsdup > "$4/lsan"
export HOME="$4" TERM=xterm LC_ALL=C.UTF-8 NO_COLOR=1
export LSAN_OPTIONS="suppressions=$4/lsan:print_suppressions=0"
exec "$0" --interactive --config "$1" --bus "$2" < "$3" > "$3")";

class Terminals : public AgentTest {
 protected:
  void SetUp() override {
    WriteConfig(kOneEndpoint);
    StartServer();
    Run();
  }

  void Run() {
    agent_ = cfm_test::ChildProcess({"/bin/sh", "-c", kRunAtTerminal, CFM_AGENT, ConfigPath(),
                                     bus_.address(), terminal_.name(), directory_.path()},
                                    "", directory_.File("err"));
    ASSERT_TRUE(WaitUntilShown("server in step"));
  }

  void Type(const std::string& keys) const { terminal_.Type(keys); }

  // Requests for statistics get empty answers.
  void Attend() {
    for (; answered_ < server_->CountOf(CFM_MGR_C2S_SIG_STATS_GET); ++answered_) {
      server_->Reply(CFM_MGR_S2C_SIG_STATS_REPLY, client_server::OpReplyAllStats());
    }
    screen_ += terminal_.Read();
  }

  // Serves until the terminal has shown the text since the last such wait.
  bool WaitUntilShown(const std::string& text) {
    const bool shown = server_->ServeUntil([&] {
      Attend();
      return screen_.find(text) != std::string::npos;
    });
    EXPECT_TRUE(shown) << screen_;
    const std::size_t at = screen_.find(text);
    screen_.erase(0, at == std::string::npos ? 0 : at + text.size());
    return shown;
  }

  // Serves until the agent has ended; its exit status.
  int ServeUntilEnd() {
    int status = -1;
    EXPECT_TRUE(server_->ServeUntil([&] {
      Attend();
      status = agent_.Wait(std::chrono::milliseconds(0));
      return status >= 0;
    }));
    return status;
  }

  // Serves until the server has been asked for a loopback test once more.
  bool ServeUntilTestIsAsked() {
    return server_->ServeUntil([this] {
      Attend();
      return server_->CountOf(CFM_MGR_C2S_SIG_LB_TRIGGER) > 0;
    });
  }

  void PublishRemoval() const {
    client_server::RemovedLocalMaintenanceEndpoint removed;
    removed.set_md_name("d");
    removed.set_ma_name("a");
    removed.set_mep_id(1);
    server_->Publish(CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, removed);
  }

  PseudoTerminal terminal_;
  std::size_t answered_ = 0;
  std::string screen_;
};

TEST_F(Terminals, TakeCommands) {
  Type("statistics\n");
  EXPECT_TRUE(WaitUntilShown("statistics 1: complete"));
  Type("quit\n");
  EXPECT_EQ(ServeUntilEnd(), 0);
}

TEST_F(Terminals, CompleteWords) {
  Type("sho\t");
  EXPECT_TRUE(WaitUntilShown("w "));
  Type("\t\t\t\n");
  EXPECT_TRUE(WaitUntilShown("remote MEPs of endpoint 1"));
}

TEST_F(Terminals, OfferWhatAWordMayBecome) {
  Type("l\t\t");
  EXPECT_TRUE(WaitUntilShown("linktrace  loopback"));
}

TEST_F(Terminals, RememberCommands) {
  Type("statistics\n");
  EXPECT_TRUE(WaitUntilShown("statistics 1: complete"));
  Type("\x1b[A\n");
  EXPECT_TRUE(WaitUntilShown("statistics 2: complete"));
}

TEST_F(Terminals, RememberCommandsAcrossRuns) {
  Type("statistics\n");
  EXPECT_TRUE(WaitUntilShown("statistics 1: complete"));
  Type("quit\n");
  EXPECT_EQ(ServeUntilEnd(), 0);
  EXPECT_THAT(cfm_test::ReadFile(directory_.File(".cfm-agent-history")), HasSubstr("statistics"));
  screen_.clear();
  Run();
  Type("\x1b[A");
  EXPECT_TRUE(WaitUntilShown("quit"));
  Type("\x1b[A\n");
  EXPECT_TRUE(WaitUntilShown("statistics 1: complete"));
}

TEST_F(Terminals, SearchTheHistoryForWhatIsTyped) {
  for (const char* command : {"statistics\n", "help\n"}) {
    Type(command);
  }
  EXPECT_TRUE(WaitUntilShown("statistics 1: complete"));
  Type("tat\x12\n");
  EXPECT_TRUE(WaitUntilShown("statistics 2: complete"));
}

TEST_F(Terminals, ShowInThePromptHowFarATestIs) {
  Type("loopback d a 1 9 param-a=3\n");
  ASSERT_TRUE(ServeUntilTestIsAsked());
  client_server::OpLoopbackReplyRx reply;
  reply.set_request_id(
      server_->Last<client_server::OpLoopbackTriggerMsg>(CFM_MGR_C2S_SIG_LB_TRIGGER).request_id());
  Type("stat");
  server_->Publish(CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX, reply);
  EXPECT_TRUE(WaitUntilShown("[loopback 1: 1/3 replies, "));
  EXPECT_TRUE(WaitUntilShown("] cfm-agent> stat"));
  client_server::OpLoopbackEnded ended;
  ended.set_request_id(reply.request_id());
  server_->Publish(CFM_MGR_SRV_EVENT_LOOPBACK_ENDED, ended);
  EXPECT_TRUE(WaitUntilShown("complete"));
  EXPECT_TRUE(WaitUntilShown("\x1b[Jcfm-agent> stat"));
  Type("istics\n");
  EXPECT_TRUE(WaitUntilShown("statistics 2: "));
}

TEST_F(Terminals, KeepWhatIsTypedWhileSomethingIsPrinted) {
  Type("stati");
  EXPECT_TRUE(WaitUntilShown("stati"));
  PublishRemoval();
  EXPECT_TRUE(WaitUntilShown("MEP d a 1: removed by the server"));
  EXPECT_TRUE(WaitUntilShown("stati"));
  Type("stics\n");
  EXPECT_TRUE(WaitUntilShown("statistics 1: complete"));
}

TEST_F(Terminals, TakeAwayAllOfALineThatIsLongerThanTheTerminalIsWide) {
  terminal_.SetColumns(30);
  agent_.Signal(SIGWINCH);
  // With the prompt, 68 cells: the cursor is two lines below the first one.
  Type("loopback d a 1 9 param-a=12345678 \xE4\xB8\xAD param-b=123456789012");
  EXPECT_TRUE(WaitUntilShown("9012"));
  PublishRemoval();
  EXPECT_TRUE(WaitUntilShown("\x1b[2A\r\x1b[JMEP d a 1: removed by the server"));
}

TEST_F(Terminals, SurviveALineThatIsCleared) {
  Type("abc\x15");
  Type("statistics\n");
  EXPECT_TRUE(WaitUntilShown("statistics 1: complete"));
}

TEST_F(Terminals, EndWithAReasonForTheTestThatRuns) {
  for (const char* ending : {"quit\n", "\x04"}) {
    Type("loopback d a 1 9\n");
    ASSERT_TRUE(ServeUntilTestIsAsked());
    server_->Forget();
    answered_ = 0;
    Type(ending);
    EXPECT_TRUE(WaitUntilShown("loopback 1 from MEP d a 1 to 9: the agent stopped before its end"));
    EXPECT_EQ(ServeUntilEnd(), 0);
    Run();
  }
}

TEST_F(Terminals, EndWellWhateverTheirCommandsCameTo) {
  Type("loopback d a 1 9\n");
  ASSERT_TRUE(ServeUntilTestIsAsked());
  client_server::OpLoopbackTriggerError error;
  error.set_request_id(
      server_->Last<client_server::OpLoopbackTriggerMsg>(CFM_MGR_C2S_SIG_LB_TRIGGER).request_id());
  error.set_error_code(3);
  server_->Reply(CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR, error);
  EXPECT_TRUE(WaitUntilShown("refused with error code 3"));
  Type("quit\n");
  EXPECT_EQ(ServeUntilEnd(), 0);
}

TEST_F(Terminals, EndWithTheEndOfInput) {
  Type("\x04");
  EXPECT_EQ(ServeUntilEnd(), 0);
}

TEST_F(Terminals, AnInterruptClearsTheLine) {
  Type("nonsense");
  EXPECT_TRUE(WaitUntilShown("nonsense"));
  Type("\x03statistics\n");
  EXPECT_TRUE(WaitUntilShown("statistics 1: complete"));
}

TEST_F(Terminals, AnInterruptOfAnEmptyLineEnds) {
  Type("\x03");
  EXPECT_EQ(ServeUntilEnd(), 0);
}

// Keys that other programs follow up with further ones, or that stop a terminal's output.
class TerminalKeys : public Terminals, public ::testing::WithParamInterface<std::string> {};

TEST_P(TerminalKeys, LeaveTheAgentToItsSignals) {
  Type(GetParam());
  // So that the key has been read before the signal comes.
  int unread = 1;
  EXPECT_TRUE(server_->ServeUntil([&] {
    const int slave = open(terminal_.name().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_EQ(ioctl(slave, FIONREAD, &unread), 0);
    close(slave);
    return unread == 0;
  }));
  agent_.Signal(SIGTERM);
  EXPECT_EQ(agent_.Wait(std::chrono::seconds(2)), 0);
}

TEST_P(TerminalKeys, LeaveTheAgentToTheBusAndToCommands) {
  Type(GetParam());
  PublishRemoval();
  EXPECT_TRUE(WaitUntilShown("MEP d a 1: removed by the server"));
  Type("\nstatistics\n");
  EXPECT_TRUE(WaitUntilShown("statistics 1: complete"));
}

INSTANTIATE_TEST_SUITE_P(Each, TerminalKeys,
                         ::testing::Values("\x1b", "\x12", "\x13", "\x16", "\x18", "\x1b[", "\x1bO",
                                           "\xc3", "\x1bx"));

TEST(Keys, AreWholeOnceNothingCanFollow) {
  for (const char* key : {"a", "\n", "\x04", "\x1b[A", "\x1b[1;5C", "\x1bOA",
                          "\x1b"
                          "b",
                          "\x1b\x1b", "\x18\x18", "\x1b[\n"}) {
    const std::string_view bytes = key;
    EXPECT_TRUE(IsWholeKey(bytes)) << bytes;
    for (std::size_t size = 0; size < bytes.size(); ++size) {
      EXPECT_FALSE(IsWholeKey(bytes.substr(0, size))) << bytes << ' ' << size;
    }
  }
}

TEST(Keys, DoNotGrowWithoutEnd) {
  EXPECT_FALSE(IsWholeKey("\x1b[" + std::string(31, '1')));
  EXPECT_TRUE(IsWholeKey("\x1b[" + std::string(32, '1')));
}

}  // namespace
}  // namespace cfm_agent::testing
