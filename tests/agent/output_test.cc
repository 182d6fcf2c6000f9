// SPDX-License-Identifier: Apache-2.0
// How the running agent writes: with and without a terminal, for people and for programs.

#include <gmock/gmock.h>

#include <csignal>

#include "command_fixture.h"
#include "output_schema.h"
#include "pseudo_terminal.h"

namespace cfm_agent::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* kEscape = "\x1b";

class AgentOutput : public Commands {
 protected:
  // Runs a shell script in which $AGENT is the agent with its usual options, and $TTY a terminal.
  void Run(const std::string& script) {
    const std::string agent = std::string("AGENT=") + CFM_AGENT + " --config " + ConfigPath() +
                              " --bus " + bus_.address();
    agent_ = cfm_test::ChildProcess({"/usr/bin/env", "-u", "NO_COLOR", "TERM=xterm", agent,
                                     "TTY=" + terminal_.name(), "/bin/sh", "-c", script},
                                    directory_.File("out"), directory_.File("err"));
  }

  // What a script's agent shows on the terminal until it ends.
  std::string Shown(const std::string& script) {
    Run(script);
    EXPECT_EQ(ServeUntilEnd(), 0) << Errors();
    return terminal_.Read();
  }

  template <typename Trigger>
  std::uint32_t AskedFor(const vorx_sig_descriptor* signal) {
    EXPECT_TRUE(ServeUntilAsked(signal));
    const auto id = server_->Last<Trigger>(signal).request_id();
    server_->Forget();
    answered_ = 0;
    return id;
  }

  std::uint32_t LoopbackAskedFor() {
    return AskedFor<client_server::OpLoopbackTriggerMsg>(CFM_MGR_C2S_SIG_LB_TRIGGER);
  }
  void PublishLoopbackReply(std::uint32_t id) const {
    client_server::OpLoopbackReplyRx reply;
    reply.set_request_id(id);
    server_->Publish(CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX, reply);
  }
  void PublishLoopbackEnd(std::uint32_t id) const {
    client_server::OpLoopbackEnded ended;
    ended.set_request_id(id);
    ended.set_expected_replies(3);
    server_->Publish(CFM_MGR_SRV_EVENT_LOOPBACK_ENDED, ended);
  }

  PseudoTerminal terminal_;
};

TEST_F(AgentOutput, HasColoursOnATerminalOnly) {
  EXPECT_THAT(Shown("$AGENT --execute show > $TTY"), HasSubstr("\x1b[32mserver: in step\x1b[0m"));
  EXPECT_EQ(Shown("$AGENT --execute show"), "");
  EXPECT_THAT(Output(), HasSubstr("server: in step\n"));
  EXPECT_THAT(Output(), Not(HasSubstr(kEscape)));
}

TEST_F(AgentOutput, HasNoColoursWhereTheyAreNotWanted) {
  for (const char* script :
       {"NO_COLOR=1 $AGENT --execute show > $TTY", "TERM=dumb $AGENT --execute show > $TTY",
        "TERM= $AGENT --execute show > $TTY", "$AGENT --color never --execute show > $TTY"}) {
    const std::string shown = Shown(script);
    EXPECT_THAT(shown, HasSubstr("server: in step\r\n")) << script;
    EXPECT_THAT(shown, Not(HasSubstr(kEscape))) << script;
  }
}

TEST_F(AgentOutput, HasColoursWhereverTheyAreDemanded) {
  Shown("NO_COLOR=1 $AGENT --color always --execute show");
  EXPECT_THAT(Output(), HasSubstr("\x1b[32mserver: in step\x1b[0m\n"));
  EXPECT_THAT(Shown("NO_COLOR= $AGENT --color auto --execute show > $TTY"), HasSubstr(kEscape));
}

TEST_F(AgentOutput, RefusesAnUnknownChoice) {
  for (const char* option : {"--color sometimes", "--output yaml"}) {
    Run(std::string("$AGENT --check ") + option);
    EXPECT_EQ(agent_.Wait(), 2);
    EXPECT_TRUE(Complains(std::string(option).substr(0, 7)));
  }
}

TEST_F(AgentOutput, FailsWhenItCannotBeWritten) {
  for (const char* script :
       {"$AGENT --execute show > /dev/full", "$AGENT --output json --execute help > /dev/full",
        "$AGENT --check > /dev/full"}) {
    Run(script);
    EXPECT_EQ(ServeUntilEnd(), 4) << script;
    EXPECT_EQ(Errors(), "standard output: No space left on device; lines are lost\n") << script;
  }
  Run("$AGENT --help > /dev/full");
  EXPECT_EQ(ServeUntilEnd(), 4);
}

TEST_F(AgentOutput, FailsWhenThereIsNone) {
  Run("$AGENT --execute show >&-");
  EXPECT_EQ(ServeUntilEnd(), 4);
  EXPECT_EQ(Errors(), "standard output: Bad file descriptor; lines are lost\n");
}

TEST_F(AgentOutput, EndsAtOnceWhenThereIsNoInput) {
  Run("$AGENT --interactive <&-");
  EXPECT_EQ(ServeUntilEnd(), 0);
  EXPECT_EQ(Errors(), "");
}

TEST_F(AgentOutput, KeepsTheReasonOfACommandThatFailsWhenItCannotBeWritten) {
  Run("$AGENT --execute 'show nowhere' > /dev/full");
  EXPECT_EQ(ServeUntilEnd(), 2);
}

TEST_F(AgentOutput, ShowsHowFarATestIsOnATerminal) {
  Run("$AGENT --execute 'loopback d a 1 9 param-a=3' > $TTY");
  const std::uint32_t id = LoopbackAskedFor();
  std::string shown;
  const auto wait_for = [&](const std::string& text) {
    EXPECT_TRUE(server_->ServeUntil([&] {
      shown += terminal_.Read();
      return shown.find(text) != std::string::npos;
    })) << text;
  };
  wait_for("loopback 1: 0/3 replies, 0 s");
  PublishLoopbackReply(id);
  wait_for("\r\x1b[Kloopback 1: 1/3 replies, ");
  // Time goes on without further replies.
  shown.clear();
  wait_for("1/3 replies, ");
  PublishLoopbackEnd(id);
  EXPECT_EQ(ServeUntilEnd(), 0);
  shown += terminal_.Read();
  EXPECT_THAT(shown, HasSubstr("\r\x1b[Kloopback 1 from MEP d a 1 to 9: \x1b[32mcomplete"));
  EXPECT_THAT(shown, ::testing::EndsWith("\r\x1b[K"));
}

TEST_F(AgentOutput, ShowsNoProgressElsewhere) {
  for (const char* script :
       {"$AGENT --execute 'loopback d a 1 9 param-a=3'",
        "TERM=dumb $AGENT --execute 'loopback d a 1 9 param-a=3' > $TTY",
        "$AGENT --output json --execute 'loopback d a 1 9 param-a=3' > $TTY"}) {
    Run(script);
    const std::uint32_t id = LoopbackAskedFor();
    PublishLoopbackReply(id);
    PublishLoopbackEnd(id);
    EXPECT_EQ(ServeUntilEnd(), 0);
    const std::string all = Output() + terminal_.Read();
    EXPECT_THAT(all, HasSubstr("complete")) << script;
    EXPECT_THAT(all, Not(HasSubstr("/3 repl"))) << script;
    EXPECT_THAT(all, Not(HasSubstr(kEscape))) << script;
  }
}

TEST_F(AgentOutput, DrawsWithWhatTheLocaleHas) {
  const auto trace = [this](const std::string& locale) {
    Run("LC_ALL=" + locale + " $AGENT --execute 'linktrace d a 1 9'");
    EXPECT_TRUE(ServeUntilAsked(CFM_MGR_C2S_SIG_LT_TRIGGER));
    server_->Forget();
    answered_ = 0;
    PublishLinktrace(63);
    EXPECT_EQ(ServeUntilEnd(), 0);
    return Output();
  };
  EXPECT_THAT(trace("C.UTF-8"), HasSubstr("  \u25CB hop 1: "));
  EXPECT_THAT(trace("C"), HasSubstr("  o hop 1: "));
}

TEST_F(AgentOutput, OfCommandsIsAsTheSchemaSays) {
  Run("$AGENT --output json --execute 'loopback d a 1 9 param-a=3' --execute statistics "
      "--execute 'show d a 1' --execute 'show nowhere' --execute clear --execute help");
  const std::uint32_t id = LoopbackAskedFor();
  client_server::OpLoopbackStarted started;
  started.set_request_id(id);
  started.set_mac_address("\x02\x00\x00\x00\x00\x01", 6);
  server_->Publish(CFM_MGR_SRV_EVENT_LOOPBACK_STARTED, started);
  PublishLoopbackReply(id);
  PublishLoopbackEnd(id);
  EXPECT_EQ(ServeUntilEnd(), 2);
  EXPECT_EQ(JudgeLines(Output()), "");
  EXPECT_EQ(Errors(), "");
  for (const char* type : {"loopback_started", "loopback_reply", "loopback", "statistics", "show",
                           "error", "clear", "help"}) {
    EXPECT_THAT(Output(), HasSubstr(std::string("{\"type\":\"") + type + "\"")) << type;
  }
  EXPECT_THAT(Output(), HasSubstr("\"command\":\"show\",\"message\":\"there is nothing of that"));
}

TEST_F(AgentOutput, OfTheServiceIsAsTheSchemaSays) {
  Run("exec $AGENT --output json");
  ASSERT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_STATUS_GET_ALL));
  client_server::StatusRemoteMaintenanceEndpoint status;
  status.set_md_name("d\x1b\xff");
  status.set_ma_name("a");
  status.set_mep_id(1);
  status.set_remote_mep_id(9);
  status.set_sender_id("\xE4\xB8\xAD\n");
  server_->Publish(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, status);
  ASSERT_TRUE(WaitUntilItSays("\"sender_id\":\"\\u4e2d\\n\""));
  WriteConfig("domains: 5\n");
  ASSERT_TRUE(WaitUntilItSays("stays in force"));
  agent_.Signal(SIGTERM);
  EXPECT_EQ(agent_.Wait(), 0);
  EXPECT_EQ(JudgeLines(Output()), "");
  EXPECT_THAT(Output(), HasSubstr("\"domain\":{\"octets\":\"641bff\"}"));
  EXPECT_THAT(Output(), HasSubstr("{\"type\":\"stopped\""));
}

TEST_F(AgentOutput, OfACheckIsAsTheSchemaSays) {
  Run("$AGENT --output json --check; $AGENT --output json --execute nonsense");
  EXPECT_EQ(agent_.Wait(), 2);
  EXPECT_EQ(JudgeLines(Output()), "");
  EXPECT_THAT(Output(), HasSubstr("{\"type\":\"check\""));
  EXPECT_THAT(Output(), HasSubstr("{\"type\":\"error\""));
}

}  // namespace
}  // namespace cfm_agent::testing
