/* SPDX-License-Identifier: Apache-2.0 */
// Runs commands of cfm-agent against a server played by the test.
#ifndef CFM_TESTS_AGENT_COMMAND_FIXTURE_H
#define CFM_TESTS_AGENT_COMMAND_FIXTURE_H

#include <chrono>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "agent_fixture.h"

namespace cfm_agent::testing {

class Commands : public AgentTest {
 protected:
  void SetUp() override {
    WriteConfig(kOneEndpoint);
    StartServer();
  }

  void Execute(std::vector<std::string> commands, const std::string& timeout = "20") {
    std::vector<std::string> arguments = {"--timeout", timeout};
    for (std::string& command : commands) {
      arguments.insert(arguments.end(), {"--execute", std::move(command)});
    }
    StartAgent(arguments);
  }

  // Serves until a request came, answering those for statistics with empty ones.
  bool ServeUntilAsked(const vorx_sig_descriptor* signal) {
    return server_->ServeUntil([&] {
      AnswerStatistics();
      return server_->CountOf(signal) > 0;
    });
  }

  // Serves until the agent has ended; its exit status.
  int ServeUntilEnd() {
    int status = -1;
    EXPECT_TRUE(server_->ServeUntil([&] {
      AnswerStatistics();
      status = agent_.Wait(std::chrono::milliseconds(0));
      return status >= 0;
    }));
    return status;
  }

  void AnswerStatistics() {
    for (; answers_ && answered_ < server_->CountOf(CFM_MGR_C2S_SIG_STATS_GET); ++answered_) {
      server_->Reply(CFM_MGR_S2C_SIG_STATS_REPLY, statistics_);
    }
  }

  // Tells of a linktrace from endpoint 1 of "d", "a" to 9, with one reply, from start to end.
  void PublishLinktrace(std::uint32_t ttl_of_reply) {
    client_server::OpLinktraceStarted started;
    started.set_md_name("d");
    started.set_ma_name("a");
    started.set_mep_id(1);
    started.set_remote_mep_id(9);
    started.set_transaction_id(5);
    server_->Publish(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, started);
    client_server::OpLinktraceReplyRx reply;
    reply.set_md_name("d");
    reply.set_ma_name("a");
    reply.set_mep_id(1);
    reply.mutable_reply()->set_transaction_id(5);
    reply.mutable_reply()->set_ttl(ttl_of_reply);
    server_->Publish(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, reply);
    client_server::OpLinktraceEnded ended;
    ended.set_md_name("d");
    ended.set_ma_name("a");
    ended.set_mep_id(1);
    ended.set_transaction_id(5);
    server_->Publish(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, ended);
  }

  client_server::OpReplyAllStats statistics_;
  bool answers_ = true;
  std::size_t answered_ = 0;
};

}  // namespace cfm_agent::testing

#endif
