// SPDX-License-Identifier: Apache-2.0
#include <cfm/identifiers.h>

#include "client_fixture.h"

namespace cfm_test {
namespace {

std::vector<std::string> WithPrefix(const std::string& prefix) {
  std::vector<std::string> entries;
  for (const char* const name :
       {"CACHE_REPLY", "STATS_REPLY", "LT_TRIGGER_ERROR", "LB_TRIGGER_ERROR", "DM_TRIGGER_ERROR",
        "STATUS_LOCAL_MEP", "STATUS_REMOTE_MEP", "REMOVED_LOCAL_MEP", "REMOVED_REMOTE_MEP",
        "LINKTRACE_STARTED", "LINKTRACE_ENDED", "LINKTRACE_REPLY_RX", "LOOPBACK_STARTED",
        "LOOPBACK_REPLY_RX", "LOOPBACK_ENDED", "DELAY_MEASUREMENT_STARTED",
        "DELAY_MEASUREMENT_REPLY_RX", "DELAY_MEASUREMENT_ENDED",
        "DELAY_MEASUREMENT_SESSION_ENDED"}) {
    entries.push_back(prefix + name);
  }
  return entries;
}

TEST(Lifecycle, StartsUpInOrder) {
  RecordingHost host;
  const cfm::Client client(host.handle());
  std::vector<std::string> expected = {"subscribe cfm-mgr", "trace cfm-mgr",
                                       "log 10 ClientImpl:31 CFM Manager client was initialized"};
  for (const std::string& entry : WithPrefix("register ")) {
    expected.push_back(entry);
  }
  EXPECT_EQ(host.Take(), expected);
}

TEST(Lifecycle, ShutsDownInOrderAndSendsNothing) {
  RecordingHost host;
  std::optional<cfm::Client> client(std::in_place, host.handle());
  host.GetInStep();
  client.reset();
  std::vector<std::string> expected = {"unsubscribe"};
  for (const std::string& entry : WithPrefix("deregister ")) {
    expected.push_back(entry);
  }
  expected.emplace_back("log 10 ~ClientImpl:44 CFM Manager client was finished");
  EXPECT_EQ(host.Take(), expected);
}

TEST(Lifecycle, LeavesFailedRegistrationsAlone) {
  RecordingHost host;
  host.registration_works = [](const std::string& name) {
    return name != "STATS_REPLY" && name != "STATUS_LOCAL_MEP" && name != "LOOPBACK_ENDED";
  };
  std::optional<cfm::Client> client(std::in_place, host.handle());
  EXPECT_EQ(host.Take("register ").size(), 19U);
  client.reset();
  const auto deregistered = host.Take("deregister ");
  EXPECT_EQ(deregistered.size(), 16U);
  EXPECT_THAT(deregistered, testing::Not(testing::Contains("STATS_REPLY")));
}

TEST(Lifecycle, SurvivesAFailedSubscription) {
  RecordingHost host;
  host.subscription_works = false;
  std::optional<cfm::Client> client(std::in_place, host.handle());
  host.Take();
  client.reset();
  EXPECT_EQ(host.Take().front(), "unsubscribe nothing");
}

using LifecycleDeathTest = testing::Test;

TEST(LifecycleDeathTest, ANullHandleIsFatalBeforeAnythingElse) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  RecordingHost host;
  EXPECT_EXIT(cfm::Client(nullptr), testing::ExitedWithCode(1),
              "^backtrace \\| fault 1 ClientImpl client_impl.cc:25 "
              "\\[CFM manager client: invalid vorx token\\] \\| end\n$");
}

TEST(LifecycleDeathTest, FailedLogSetUpIsFatalWithAnEmptyText) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  RecordingHost host;
  host.trace_works = false;
  EXPECT_EXIT(cfm::Client(host.handle()), testing::ExitedWithCode(1),
              "^subscribe cfm-mgr \\| trace cfm-mgr \\| backtrace \\| "
              "fault 1 ClientImpl client_impl.cc:30 \\[\\] \\| end\n$");
}

TEST(Lifecycle, AServerFoundInsideTheSubscriptionIsServedWithoutALog) {
  RecordingHost host;
  host.on_subscribe = [&host] {
    host.ServerFound(5);
    host.ServerLost();
    host.ServerFound(6);
  };
  const cfm::Client client(host.handle());
  const auto record = host.Take();
  ASSERT_GE(record.size(), 4U);
  EXPECT_EQ(record[0], "subscribe cfm-mgr");
  EXPECT_EQ(record[1], "send 5 CACHE_GET no payload");
  EXPECT_EQ(record[2], "send 6 CACHE_GET no payload");
  EXPECT_EQ(record[3], "trace cfm-mgr");
}

class StatusHandler : public cfm::ReceivedStatusHandlerIntf {
 public:
  explicit StatusHandler(RecordingHost& host) : host_(host) {}
  void OnStatusLocalMep(const std::string&, const std::string&, std::uint16_t,
                        const cfm::local_mep_status&) override {}
  void OnStatusRemoteMep(const std::string&, const std::string&, std::uint16_t, std::uint16_t,
                         const cfm::remote_mep_status&) override {}
  void OnRemovedLocalMep(const std::string&, const std::string&, std::uint16_t) override {}
  void OnRemovedRemoteMep(const std::string&, const std::string&, std::uint16_t,
                          std::uint16_t) override {}
  void OnMepLinktraceStarted(const std::string&, const std::string&, std::uint16_t, std::uint32_t,
                             cfm::st_mac, std::uint16_t, bool, std::uint32_t) override {}
  void OnMepLinktraceEnded(const std::string&, const std::string&, std::uint16_t,
                           std::uint32_t) override {}
  void OnMepLinktraceReplyRx(const std::string&, const std::string&, std::uint16_t,
                             const cfm::LinktraceReplyEntry&) override {}
  void OnDelayMeasurementSessionEnded(const cfm::DelayMeasurementSessionResult&) override {}
  void OnServerFound() override { host_.Note(name_ + " OnServerFound"); }

  std::string name_ = "handler";

 private:
  RecordingHost& host_;
};

class Presence : public ClientTest {};

TEST_F(Presence, AFoundServerIsAskedForItsCacheBeforeTheHandlerIsTold) {
  StatusHandler handler(host);
  client->RegisterStatusHandler(&handler);
  host.Take();
  host.ServerFound(4242);
  EXPECT_THAT(host.Take(), ElementsAre("log 10 ServerFound:75 CFM manager server found",
                                       "send 4242 CACHE_GET no payload", "handler OnServerFound"));
}

TEST_F(Presence, ALostServerIsOnlyLogged) {
  StatusHandler handler(host);
  client->RegisterStatusHandler(&handler);
  host.ServerFound();
  host.Take();
  host.ServerLost();
  EXPECT_THAT(host.Take(), ElementsAre("log 10 ServerLost:86 CFM manager server lost"));
}

TEST_F(Presence, AReplacedHandlerIsNotCalledAgainAndNullMeansNone) {
  StatusHandler first(host);
  StatusHandler second(host);
  second.name_ = "second";
  client->RegisterStatusHandler(&first);
  client->RegisterStatusHandler(&second);
  host.Take();
  host.ServerFound();
  EXPECT_THAT(host.Take("second "), ElementsAre("OnServerFound"));
  client->RegisterStatusHandler(nullptr);
  host.ServerFound();
  EXPECT_EQ(host.Take().size(), 2U);
}

TEST_F(Presence, ConfigurationWaitsWhileTheServerIsAbsent) {
  host.ServerFound();
  host.ServerLost();
  host.Take();
  client->UpdateConfig(OneMa({1}));
  client->UpdateConfigProbe({});
  EXPECT_THAT(host.Take(),
              ElementsAre("log 10 UpdateConfig:100 Server unavailable, request will be handled "
                          "later: pid 0 sync 0",
                          "log 10 UpdateConfigProbe:113 Server unavailable, request will be "
                          "handled later: pid 0 sync 0"));
}

TEST_F(Presence, ConfigurationWaitsWhileTheServerIsNotInStep) {
  host.ServerFound(12);
  host.Take();
  client->UpdateConfig(OneMa({1}));
  client->UpdateConfigProbe({});
  EXPECT_THAT(host.Take(),
              ElementsAre("log 10 UpdateConfig:100 Server unavailable, request will be handled "
                          "later: pid 12 sync 0",
                          "log 10 UpdateConfigProbe:113 Server unavailable, request will be "
                          "handled later: pid 12 sync 0"));
}

TEST_F(Presence, AReplyWithoutAServerLeavesTheIdentifierZero) {
  host.Signal(CFM_MGR_S2C_SIG_CACHE_REPLY, "");
  host.Take();
  client->UpdateConfig({});
  client->UpdateConfigProbe({});
  EXPECT_THAT(host.Take(),
              ElementsAre("log 10 UpdateConfig:100 Server unavailable, request will be handled "
                          "later: pid 0 sync 1",
                          "log 10 UpdateConfigProbe:113 Server unavailable, request will be "
                          "handled later: pid 0 sync 1"));
}

TEST_F(Presence, AServerFoundAgainWithoutALossStaysInStepUnderItsNewIdentifier) {
  host.GetInStep();
  host.ServerFound(78);
  EXPECT_THAT(host.Take("send "), ElementsAre("78 CACHE_GET no payload"));
  client->UpdateConfig(OneMa({}));
  EXPECT_EQ(host.Take("send 78 ").size(), 2U);
}

TEST_F(Presence, ALossTakesTheClientOutOfStepUntilTheNextReply) {
  host.GetInStep();
  host.ServerLost();
  host.ServerFound(79);
  host.Take();
  client->UpdateConfig(OneMa({}));
  EXPECT_THAT(host.Take("send "), IsEmpty());
  host.Signal(CFM_MGR_S2C_SIG_CACHE_REPLY, "");
  EXPECT_THAT(Brief(host.Take("send 79 ")),
              ElementsAre("MD_CREATE D", "MA_CREATE D A", "STATUS_GET_ALL"));
}

}  // namespace
}  // namespace cfm_test
