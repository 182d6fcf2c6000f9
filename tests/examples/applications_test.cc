// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "examples_fixture.h"

namespace cfm_test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class Provision : public ExamplesTest {};

TEST_F(Provision, BringsItsEndpointToTheServer) {
  system.StartServer();
  const ChildProcess provision = Start("provision", {EXAMPLE_PROVISION, "lo"});
  ExpectTree(
      "1 domain, 1 association, 1 endpoint, 0 probes, 0 sessions\n"
      "domain \"operator\": format 4 (character string), level 4, sender id 1 (none), "
      "MHF creation 1 (none)\n"
      "  association \"line-1\": format 2 (character string), VIDs 100, CCM interval 4 (1 s), "
      "MEP ids 1 2, sender id 5 (defer), MHF creation 4 (defer), AIS off, flag D no\n"
      "    mep 1: direction 1 (down), ifindex 1, primary VID 0, inner VID 0, active yes, CCM yes, "
      "CCM priority 7, lowest alarm priority 2 (MAC, remote, error, xcon), alarm time 250, "
      "reset time 1000, fault action 0 (none), aux flag no\n");
}

TEST_F(Provision, ProvisionsAnEndpointOnAnInterfaceThatIsNotThere) {
  system.StartServer();
  const ChildProcess provision = Start("provision", {EXAMPLE_PROVISION, "no-such-one"});
  ExpectTree("1 domain, 1 association, 1 endpoint,");
  EXPECT_THAT(system.Tree(), HasSubstr("mep 1: direction 1 (down), ifindex 0,"));
}

class EventLoop : public ExamplesTest {
 protected:
  void StartLoop() { loop_ = Start("event_loop", {EXAMPLE_EVENT_LOOP, "lo", "20"}); }

  ChildProcess loop_;
};

TEST_F(EventLoop, ProvisionsItsEndpointAndAsksForStatistics) {
  StartServerInNetwork();
  StartLoop();
  ExpectTree(kTreeOfOneEndpoint);
  EXPECT_TRUE(Eventually([this] { return CountOf("event_loop", "statistics: ") >= 3; }));
  EXPECT_TRUE(Says("event_loop", "statistics: 1 CCMs sent"));
}

TEST_F(EventLoop, TicksOnWhileTheServerIsAwayAndProvisionsItsSuccessor) {
  system.StartServer();
  StartLoop();
  ASSERT_TRUE(Says("event_loop", "statistics: "));
  system.KillServer();
  // Of the ticks between which nothing was answered, the last ones came without a server.
  ASSERT_TRUE(Eventually([this] {
    const std::string output = Output("event_loop");
    const std::size_t answer = output.rfind("statistics: ");
    const auto ticks = output.substr(answer);
    return std::count(ticks.begin(), ticks.end(), '\n') > 10;
  })) << Output("event_loop");
  const std::size_t answers = CountOf("event_loop", "statistics: ");
  system.StartServer();
  ExpectTree(kTreeOfOneEndpoint);
  EXPECT_TRUE(Eventually([&] { return CountOf("event_loop", "statistics: ") > answers; }));
}

TEST_F(EventLoop, EndsOnSigterm) {
  StartLoop();
  ASSERT_TRUE(Says("event_loop", "tick "));
  loop_.Signal(SIGTERM);
  EXPECT_EQ(loop_.Wait(), 0);
  EXPECT_EQ(Errors("event_loop").find("event_loop: "), std::string::npos);
}

TEST_F(EventLoop, EndsWhenTheBusGoesAway) {
  StartLoop();
  ASSERT_TRUE(Says("event_loop", "tick "));
  system.bus().Kill();
  EXPECT_EQ(loop_.Wait(), 1);
  EXPECT_THAT(Errors("event_loop"), HasSubstr("event_loop: the bus has gone: "));
}

TEST_F(EventLoop, TakesNoPeriodThatIsNone) {
  ChildProcess loop = Start("event_loop", {EXAMPLE_EVENT_LOOP, "lo", "0"});
  EXPECT_EQ(loop.Wait(), 1);
  EXPECT_EQ(Errors("event_loop"), "event_loop: the period has to be at least 1 ms\n");
}

class Handlers : public ExamplesTest {};

// One line of each operation of the five interfaces.
constexpr const char* kAllResults[] = {
    "server found",
    "example line-1 1: address 02:00:00:01:00:01, highest defect 0",
    "example line-1 1 remote 2: address 02:00:00:04:00:01, state 4",
    "loopback from example line-1 1 remote 3: refused with code 2",
    "delay measurement from example line-1 1 remote 3: refused with code 2",
    "linktrace from example line-1 1 remote 3: refused with code 2",
    "loopback: started, to 02:00:00:04:00:01",
    "loopback: reply 3 from 02:00:00:04:00:01",
    "loopback: ended, 3 sent; replies: 3 in order, 0 out of order, 0 with a wrong payload",
    "delay measurement: started, to 02:00:00:04:00:01",
    "delay measurement: a reply from 02:00:00:04:00:01",
    "delay measurement: ended, 3 of 3 replies; least, mean and greatest delay: ",
    "linktrace from example line-1 1 remote 2: started, to 02:00:00:04:00:01",
    "linktrace reply: Transaction ID: 1; Destination MAC: 02:00:00:01:00:01; ",
    "linktrace from example line-1 1: ended",
    "example line-1 1: traces",
    "example line-1 1: a reply from 02:00:00:02:00:01",
    "example line-1 1: a reply from 02:00:00:04:00:01",
    "example line-1 1: traces no more",
    "probe 1 session 1: 10 of 10 replies",
    " CCMs sent",
    "example line-1 1 remote 2: last CCM has number ",
    "statistics: complete",
    "example line-1 1 remote 2: removed",
    "example line-1 1: removed",
};

TEST_F(Handlers, SeeEveryKindOfResult) {
  StartServerInNetwork();
  ChildProcess handlers = Start("handlers", {EXAMPLE_HANDLERS, "lo"});
  EXPECT_EQ(handlers.Wait(std::chrono::seconds(60)), 0);
  const std::string output = Output("handlers");
  for (const char* const line : kAllResults) {
    EXPECT_THAT(output, HasSubstr(line));
  }
  ExpectTree("0 domains, 0 associations, 0 endpoints, 0 probes, 0 sessions\n");
}

TEST_F(Handlers, TwoProgramsOfOneNameCannotBeThere) {
  const ChildProcess first = Start("first", {EXAMPLE_HANDLERS, "lo"});
  // The library tells that it has begun.
  ASSERT_TRUE(Eventually([this] { return !Errors("first").empty(); }));
  ChildProcess second = Start("second", {EXAMPLE_HANDLERS, "lo"});
  EXPECT_EQ(second.Wait(), 1);
  EXPECT_THAT(Errors("second"), StartsWith("handlers: "));
}

TEST_F(Handlers, EndOnSigterm) {
  ChildProcess handlers = Start("handlers", {EXAMPLE_HANDLERS, "lo"});
  system.StartServer();
  ASSERT_TRUE(Says("handlers", "server found"));
  handlers.Signal(SIGTERM);
  EXPECT_EQ(handlers.Wait(), 0);
}

TEST_F(Handlers, RefuseAnInterfaceNameThatNoneCanHave) {
  ChildProcess handlers = Start("handlers", {EXAMPLE_HANDLERS, "a/b"});
  EXPECT_EQ(handlers.Wait(), 1);
  EXPECT_THAT(Errors("handlers"), HasSubstr("handlers: 'a/b' cannot name an interface\n"));
}

struct Program {
  const char* name;
  const char* path;
};

class WithoutABus : public testing::TestWithParam<Program> {};

TEST_P(WithoutABus, TheProgramSaysSoAndEnds) {
  const TemporaryDirectory directory;
  ChildProcess program(
      {"/usr/bin/env", "VORX_BUS_ADDRESS=unix:path=" + directory.File("bus"), GetParam().path},
      directory.File("out"), directory.File("err"));
  EXPECT_EQ(program.Wait(), 1);
  EXPECT_THAT(ReadFile(directory.File("err")), StartsWith(std::string(GetParam().name) + ": "));
}

INSTANTIATE_TEST_SUITE_P(Programs, WithoutABus,
                         testing::Values(Program{"provision", EXAMPLE_PROVISION},
                                         Program{"event_loop", EXAMPLE_EVENT_LOOP},
                                         Program{"handlers", EXAMPLE_HANDLERS},
                                         Program{"server_skeleton", EXAMPLE_SERVER_SKELETON}),
                         [](const auto& program) { return std::string(program.param.name); });

}  // namespace
}  // namespace cfm_test
