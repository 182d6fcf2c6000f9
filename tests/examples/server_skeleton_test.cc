// SPDX-License-Identifier: Apache-2.0
#include <cfm/identifiers.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <vorx/host.h>

#include <csignal>
#include <memory>

#include "configurations.h"
#include "examples_fixture.h"

namespace cfm_test {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

constexpr Size kSmall{2, 2};

class ServerSkeleton : public ExamplesTest {
 protected:
  void StartSkeleton() { skeleton_ = Start("skeleton", {EXAMPLE_SERVER_SKELETON}); }

  void StartWithAgent(Size size) {
    StartSkeleton();
    system.WriteConfig(ConfigFile(size));
    system.StartAgent();
    ExpectTree(ExpectedTree(size));
  }

  ChildProcess skeleton_;
};

TEST_F(ServerSkeleton, KeepsWhatAnAgentProvisions) {
  StartWithAgent(kSmall);
  EXPECT_THAT(Output("skeleton"), Not(HasSubstr("refused")));
}

TEST_F(ServerSkeleton, FollowsEveryKindOfChange) {
  StartWithAgent({3, 2});
  // Associations, endpoints and probes go, and what stays gets other VIDs and priorities.
  system.WriteConfig(ConfigFile({1, 1}, 5, 300));
  ExpectTree(ExpectedTree({1, 1}, 5, 300));
  system.WriteConfig(ConfigFile({2, 3}, 6, 300));
  ExpectTree(ExpectedTree({2, 3}, 6, 300));
  system.WriteConfig("domains: []\n");
  ExpectTree("0 domains, 0 associations, 0 endpoints, 0 probes, 0 sessions\n");
  EXPECT_THAT(Output("skeleton"), Not(HasSubstr("refused")));
}

TEST_F(ServerSkeleton, IsProvisionedAgainAfterACrash) {
  StartWithAgent(kSmall);
  skeleton_.Kill();
  StartSkeleton();
  ExpectTree(ExpectedTree(kSmall));
  EXPECT_EQ(CountOf("skeleton", "OpCreateMaintenanceEndpoint: done"), 4U);
}

TEST_F(ServerSkeleton, TellsAnAgentThatComesBackWhatItHolds) {
  StartWithAgent(kSmall);
  system.KillAgent();
  system.WriteConfig(ConfigFile({2, 3}));
  system.StartAgent();
  ExpectTree(ExpectedTree({2, 3}));
  // Four at first, and only the two new ones again.
  EXPECT_EQ(CountOf("skeleton", "OpCreateMaintenanceEndpoint: done"), 6U);
  EXPECT_EQ(CountOf("skeleton", "OpCreateMaintenanceDomain: done"), 1U);
}

TEST_F(ServerSkeleton, AnswersWhatAnAgentAsks) {
  constexpr int kRefused = 5;
  system.WriteConfig(ConfigFile(kSmall));
  StartSkeleton();
  system.StartAgent({"--execute", "show", "--execute", "statistics", "--execute",
                     "loopback net a0001 1 8000", "--execute", "linktrace net a0001 1 8000",
                     "--execute", "delay net a0001 1 8000"});
  EXPECT_EQ(system.WaitForAgentEnd(), kRefused);
  const std::string agent = system.AgentOutput();
  EXPECT_THAT(agent, HasSubstr("in step"));
  for (const std::string test : {"loopback", "linktrace", "delay measurement"}) {
    EXPECT_THAT(agent, ContainsRegex(test + " .*refused with error code 3"));
  }
  EXPECT_THAT(agent, HasSubstr("CCMS SENT"));
  for (const char* const mep : {"a0001 +1", "a0001 +2", "a0002 +1", "a0002 +2"}) {
    EXPECT_THAT(agent, ContainsRegex(std::string("net +") + mep + " +0 +0 +0\n"));
  }
  const std::string skeleton = Output("skeleton");
  EXPECT_THAT(skeleton, HasSubstr("OpReplyAllStats: sent"));
  EXPECT_THAT(skeleton, HasSubstr("OpLoopbackTriggerError: sent"));
  EXPECT_THAT(skeleton, HasSubstr("OpLinktraceTriggerError: sent"));
  EXPECT_THAT(skeleton, HasSubstr("OpDelayMeasurementTriggerError: sent"));
}

TEST_F(ServerSkeleton, ServesTheApplicationWithHandlers) {
  StartSkeleton();
  const ChildProcess handlers = Start("handlers", {EXAMPLE_HANDLERS, "lo"});
  EXPECT_TRUE(Says("handlers", "example line-1 1: address 00:00:00:00:00:00, highest defect 0"));
  for (const std::string test : {"loopback", "delay measurement", "linktrace"}) {
    EXPECT_TRUE(Says("handlers", test + " from example line-1 1 remote 3: refused with code 3"));
  }
}

TEST_F(ServerSkeleton, ServesTheApplicationWithAnEventLoop) {
  StartSkeleton();
  const ChildProcess loop = Start("event_loop", {EXAMPLE_EVENT_LOOP, "lo", "20"});
  ExpectTree(kTreeOfOneEndpoint);
  EXPECT_TRUE(Says("event_loop", "statistics: 0 CCMs sent"));
}

TEST_F(ServerSkeleton, TellsWhichEndpointsWereRemoved) {
  StartSkeleton();
  const ChildProcess handlers = Start("handlers", {EXAMPLE_HANDLERS, "lo"});
  ASSERT_TRUE(Says("handlers", "example line-1 1: address"));
  // An application that hands in nothing of it has it deleted, with all beneath.
  const ChildProcess provision = Start("provision", {EXAMPLE_PROVISION, "lo"});
  EXPECT_TRUE(Says("handlers", "example line-1 1: removed"));
}

TEST_F(ServerSkeleton, EndsOnSigterm) {
  StartSkeleton();
  ASSERT_TRUE(Eventually([this] { return system.Tree() != ""; }));
  skeleton_.Signal(SIGTERM);
  EXPECT_EQ(skeleton_.Wait(), 0);
}

// A process of the bus that sends what is no message.
class Stranger {
 public:
  explicit Stranger(const std::string& bus) {
    vorx_options_t options{};
    options.name = "stranger";
    options.bus_address = bus.c_str();
    vorx_t* handle = nullptr;
    if (vorx_open(&options, &handle) == 0) {
      handle_.reset(handle);
      vorx_proc_subscribe(
          handle, CFM_MGR_PROCESS,
          [](vorx_t* stranger, const vorx_pid_t* server, void*) {
            vorx_sig_send(stranger, server, CFM_MGR_C2S_SIG_MD_CREATE, "\xff", 1);
            vorx_sig_send(stranger, server, CFM_MGR_C2S_SIG_LT_TRIGGER, nullptr, 0);
          },
          [](vorx_t*, void*) {}, nullptr);
    }
  }

  void Serve() const {
    ASSERT_TRUE(handle_);
    vorx_dispatch(handle_.get());
  }

 private:
  struct Close {
    void operator()(vorx_t* handle) const { vorx_close(handle); }
  };
  std::unique_ptr<vorx_t, Close> handle_;
};

TEST_F(ServerSkeleton, OutlivesWhatIsNoMessage) {
  StartWithAgent(kSmall);
  const Stranger stranger(system.bus().address());
  EXPECT_TRUE(Eventually([&] {
    stranger.Serve();
    return CountOf("skeleton", "OpCreateMaintenanceDomain: cannot be read") == 1;
  })) << Output("skeleton");
  ExpectTree(ExpectedTree(kSmall));
}

}  // namespace
}  // namespace cfm_test
