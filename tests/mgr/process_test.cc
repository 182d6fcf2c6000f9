// SPDX-License-Identifier: Apache-2.0
#include <cfm/identifiers.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <thread>

#include "messages.h"
#include "private_bus.h"
#include "render.h"
#include "store.h"
#include "test_process.h"

namespace cfm_mgr_test {
namespace {

using cfm_test::ChildProcess;
using cfm_test::PresenceRecorder;
using cfm_test::ReadFile;
using cfm_test::ServiceUntil;
using cfm_test::SignalRecorder;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr const char* kEmptyTree = "0 domains, 0 associations, 0 endpoints, 0 probes, 0 sessions\n";

/** Waits until the condition holds. False when the time is over first. */
bool Eventually(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + cfm_test::kLimit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

/** A bus, the programs that run on it, and a client. */
class ProcessTest : public testing::Test {
 protected:
  ChildProcess Run(const std::vector<std::string>& arguments, const std::string& output,
                   const std::string& errors) const {
    std::vector<std::string> command = {CFM_MGR_PROGRAM, "--bus", bus_.address()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return {command, directory_.File(output), directory_.File(errors)};
  }

  /** Starts the server and waits until the client sees it. */
  void Start(const std::vector<std::string>& arguments = {}) {
    server_ = Run(arguments, "tree", "log");
    ASSERT_TRUE(ServiceUntil({client_.get()}, [this] { return presence_.present() != 0; }))
        << Log();
  }

  /** Ends the server; gives its exit status. */
  int Stop(int signal = SIGTERM) {
    server_.Signal(signal);
    const int status = server_.Wait();
    EXPECT_TRUE(ServiceUntil({client_.get()}, [this] { return presence_.present() == 0; }));
    return status;
  }

  template <class Message>
  void Send(const vorx_sig_descriptor* signal, const Message& message) const {
    EXPECT_EQ(client_.Send(presence_.present(), *signal, message.SerializeAsString()), 0);
  }

  void SendConfiguration() const {
    Send(CFM_MGR_C2S_SIG_MD_CREATE, CreateMd("D1"));
    Send(CFM_MGR_C2S_SIG_MA_CREATE, CreateMa("D1", "A1", {1, 2}));
    auto mep = CreateMep("D1", "A1", 1);
    mep.set_ifindex(if_nametoindex("lo"));
    Send(CFM_MGR_C2S_SIG_MEP_CREATE, mep);
    Send(CFM_MGR_C2S_SIG_DM_PROBE_CREATE, CreateProbe(1));
    Send(CFM_MGR_C2S_SIG_DM_SESSION_CREATE, CreateSession(1, 1));
  }

  /** The server's tree, as it answers the cache request; it has done all that was sent before. */
  std::string Tree() {
    const SignalRecorder replies(client_, *CFM_MGR_S2C_SIG_CACHE_REPLY);
    EXPECT_EQ(client_.Send(presence_.present(), *CFM_MGR_C2S_SIG_CACHE_GET), 0);
    if (!ServiceUntil({client_.get()}, [&] { return replies.count() == 1; })) return "no reply";
    client_server::OpCacheSync cache;
    cache_ = replies.entries()[0].data;
    EXPECT_TRUE(cache.ParseFromString(cache_));
    cfm_mgr::Store store;
    EXPECT_THAT(store.Load(cache), IsEmpty());
    return cfm_mgr::Render(store.tree());
  }

  /** The first line of Tree(). */
  std::string Size() {
    const std::string tree = Tree();
    return tree.substr(0, tree.find('\n'));
  }

  std::string Log() const { return ReadFile(directory_.File("log")); }

  cfm_test::TemporaryDirectory directory_;
  cfm_test::PrivateBus bus_;
  cfm_test::TestProcess client_{bus_, "client"};
  PresenceRecorder presence_{client_, CFM_MGR_PROCESS};
  std::string cache_;  ///< The last cache reply.
  ChildProcess server_;
};

TEST_F(ProcessTest, KeepsWhatAClientSendsAndGivesItBack) {
  Start();
  EXPECT_EQ(Tree(), kEmptyTree);
  SendConfiguration();
  EXPECT_EQ(Size(), "1 domain, 1 association, 1 endpoint, 1 probe, 1 session");
  Send(CFM_MGR_C2S_SIG_MD_DELETE, DeleteMd("D1"));
  Send(CFM_MGR_C2S_SIG_DM_PROBE_DELETE, DeleteProbe(1));
  EXPECT_EQ(Tree(), kEmptyTree);
}

TEST_F(ProcessTest, LogsEachRequestWithTimeAndClient) {
  Start();
  SendConfiguration();
  Send(CFM_MGR_C2S_SIG_MEP_CREATE, CreateMep("D1", "A9", 1));
  Tree();
  const std::string client = " client " + std::to_string(client_.pid()) + ": ";
  EXPECT_THAT(Log(), HasSubstr(client + "MEP create: md \"D1\" ma \"A1\" mep 1: created\n"));
  EXPECT_THAT(Log(), HasSubstr(client + "MEP create: md \"D1\" ma \"A9\" mep 1: refused: "
                                        "no association \"A9\" in domain \"D1\"\n"));
  EXPECT_THAT(Log(), testing::ContainsRegex(
                         "\n[0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9]+\\.[0-9]+ client "));
}

TEST_F(ProcessTest, EndsCleanlyOnSigtermSigintAndSighup) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    Start();
    EXPECT_EQ(Stop(signal), 0);
    EXPECT_THAT(Log(), EndsWith(" ended\n"));
  }
}

TEST_F(ProcessTest, LogsRequestsThatItDoesNotKnow) {
  Start();
  for (const std::uint8_t number : {std::uint8_t{21}, std::uint8_t{255}}) {
    const vorx_sig_descriptor unknown{CFM_MGR_C2S_SIGBLOCK, number, {}};
    EXPECT_EQ(client_.Send(presence_.present(), unknown, "abc"), 0);
  }
  EXPECT_EQ(Tree(), kEmptyTree);
  EXPECT_THAT(Log(), HasSubstr("request 21 of 3 octets: refused: this server knows no such"));
  EXPECT_THAT(Log(), HasSubstr("request 255 of 3 octets: refused: this server knows no such"));
}

TEST_F(ProcessTest, PrintsItsTreeOnSigusr1) {
  Start();
  SendConfiguration();
  const std::string tree = Tree();
  const std::string output = directory_.File("tree");
  server_.Signal(SIGUSR1);
  EXPECT_TRUE(Eventually([&] { return ReadFile(output) == tree + "\n"; })) << ReadFile(output);
  server_.Signal(SIGUSR1);
  EXPECT_TRUE(Eventually([&] { return ReadFile(output) == tree + "\n" + tree + "\n"; }));
}

/** Sends CCMs of level 1 over a link to the loopback interface's port. */
constexpr const char* kLowLevelNetwork = R"(
local: b1
bridges:
  - name: b1
    ports: [{name: east, interface: lo}]
  - name: b2
    ports: [{name: west}]
    domains:
      - name: low
        level: 1
        associations:
          - name: A1
            vids: [100]
            mep-ids: [1, 2]
            endpoints:
              - {mep-id: 2, direction: down, port: west, admin-state: true, ccm-enabled: true}
links:
  - {ends: [b1.east, b2.west]}
)";

constexpr const char* kLowLevelDrop = " dropped: of a lower level than an endpoint's\n";

TEST_F(ProcessTest, LogsThatNothingWasDroppedOnSigusr2) {
  Start();
  server_.Signal(SIGUSR2);
  EXPECT_TRUE(Eventually([&] { return Log().find(" no frames dropped\n") != std::string::npos; }))
      << Log();
  EXPECT_EQ(ReadFile(directory_.File("tree")), "");
}

TEST_F(ProcessTest, LogsWhatWasDroppedAtOnceAndOnSigusr2) {
  const std::string network = directory_.File("network.yaml");
  std::ofstream(network) << kLowLevelNetwork;
  Start({"--network", network});
  SendConfiguration();
  const auto records = [&] {
    const std::string log = Log();
    int count = 0;
    for (auto at = log.find(kLowLevelDrop); at != std::string::npos;
         at = log.find(kLowLevelDrop, at + 1)) {
      ++count;
    }
    return count;
  };
  EXPECT_TRUE(Eventually([&] { return records() == 1; })) << Log();
  EXPECT_THAT(Log(), HasSubstr(" interface east: "));
  server_.Signal(SIGUSR2);
  EXPECT_TRUE(Eventually([&] { return records() == 2; })) << Log();
}

TEST_F(ProcessTest, AQueryPrintsTheTreeOfTheServerThatRuns) {
  Start();
  SendConfiguration();
  const std::string tree = Tree();
  EXPECT_EQ(Run({"--query"}, "answer", "errors").Wait(), 0);
  EXPECT_EQ(ReadFile(directory_.File("answer")), tree);
  EXPECT_EQ(ReadFile(directory_.File("errors")), "");
}

TEST_F(ProcessTest, AQueryWithoutAServerFails) {
  EXPECT_EQ(Run({"--query", "--timeout", "0.2"}, "answer", "errors").Wait(), 1);
  EXPECT_EQ(ReadFile(directory_.File("answer")), "");
  EXPECT_EQ(ReadFile(directory_.File("errors")), "cfm-mgr: no cfm-mgr on this bus\n");
}

TEST_F(ProcessTest, AQueryToAServerThatDoesNotAnswerFails) {
  const cfm_test::TestProcess mute(bus_, CFM_MGR_PROCESS);
  EXPECT_EQ(Run({"--query", "--timeout", "0.5"}, "answer", "errors").Wait(), 1);
  EXPECT_EQ(ReadFile(directory_.File("errors")), "cfm-mgr: the server does not answer\n");
}

TEST_F(ProcessTest, ASecondServerDoesNotStart) {
  Start();
  EXPECT_EQ(Run({}, "tree2", "log2").Wait(), 1);
  EXPECT_EQ(ReadFile(directory_.File("log2")),
            "cfm-mgr: another process already runs as cfm-mgr on this bus\n");
  SendConfiguration();
  EXPECT_THAT(Size(), StartsWith("1 domain")) << "the first one serves on";
}

TEST_F(ProcessTest, AServerOnAnotherBusDoesNotStartWithItsStore) {
  const std::string store = directory_.File("store");
  Start({"--store", store});
  SendConfiguration();
  Tree();
  // The store is replaced by another file with this.
  EXPECT_TRUE(Eventually([&] { return ReadFile(store) == cache_; }));
  const cfm_test::PrivateBus other;
  const auto second = [&] {
    return ChildProcess({CFM_MGR_PROGRAM, "--bus", other.address(), "--store", store},
                        directory_.File("tree2"), directory_.File("log2"));
  };
  EXPECT_EQ(second().Wait(), 1);
  EXPECT_THAT(ReadFile(directory_.File("log2")),
              HasSubstr("cfm-mgr: another cfm-mgr uses the store " + store + ", as the lock on " +
                        store + ".lock says: end that server, or give this one another file"));
  EXPECT_EQ(ReadFile(store), cache_);

  EXPECT_EQ(Stop(SIGKILL), 128 + SIGKILL);
  ChildProcess successor = second();
  EXPECT_TRUE(Eventually([&] {
    return ReadFile(directory_.File("log2")).find(" serving as cfm-mgr") != std::string::npos;
  })) << "the lock ends with its process";
}

TEST_F(ProcessTest, StartsFromAStoreThatCannotBeLockedAndSaysSo) {
  const std::string store = directory_.File("store");
  // No file can be opened for writing there.
  ASSERT_EQ(mkdir((store + ".lock").c_str(), 0700), 0);
  Start({"--store", store});
  EXPECT_EQ(Tree(), kEmptyTree);
  EXPECT_THAT(Log(),
              HasSubstr(" store: " + store + ".lock: cannot lock: Is a directory; another "));
}

TEST_F(ProcessTest, EndsWithAMessageWhenThereIsNoBus) {
  bus_.Kill();
  EXPECT_EQ(Run({}, "tree", "log").Wait(), 1);
  EXPECT_THAT(Log(), StartsWith("cfm-mgr: cannot join the bus: "));
}

TEST_F(ProcessTest, EndsWithAMessageWhenTheBusGoesAndKeepsItsStore) {
  const std::string store = directory_.File("store");
  Start({"--store", store});
  SendConfiguration();
  Tree();
  bus_.Kill();
  EXPECT_EQ(server_.Wait(), 1);
  EXPECT_THAT(Log(), HasSubstr("cfm-mgr: the bus has gone: "));
  EXPECT_EQ(ReadFile(store), cache_);
}

TEST_F(ProcessTest, KeepsItsStoreOverARestart) {
  const std::string store = directory_.File("store");
  Start({"--store", store});
  SendConfiguration();
  const std::string tree = Tree();
  EXPECT_EQ(Stop(), 0);
  Start({"--store", store});
  EXPECT_EQ(Tree(), tree);
  EXPECT_THAT(Log(), HasSubstr("loaded 1 domain, 1 association, 1 endpoint, 1 probe, 1 session"));
}

TEST_F(ProcessTest, WhatIsSavedOutlivesACrash) {
  const std::string store = directory_.File("store");
  Start({"--store", store});
  SendConfiguration();
  const std::string tree = Tree();
  EXPECT_TRUE(Eventually([&] { return ReadFile(store) == cache_; }));
  EXPECT_EQ(Stop(SIGKILL), 128 + SIGKILL);
  Start({"--store", store});
  EXPECT_EQ(Tree(), tree);
}

TEST_F(ProcessTest, WithoutAStoreARestartForgetsEverything) {
  Start();
  SendConfiguration();
  Tree();
  EXPECT_EQ(Stop(), 0);
  Start();
  EXPECT_EQ(Tree(), kEmptyTree);
}

TEST_F(ProcessTest, StartsEmptyFromACorruptStoreAndKeepsTheFile) {
  const std::string store = directory_.File("store");
  std::ofstream(store) << "rubbish";
  Start({"--store", store});
  EXPECT_EQ(Tree(), kEmptyTree);
  EXPECT_THAT(Log(), HasSubstr("not a store: 7 octets"));
  SendConfiguration();
  Tree();
  EXPECT_EQ(Stop(), 0);
  EXPECT_EQ(ReadFile(store + ".bad-1"), "rubbish");
}

TEST_F(ProcessTest, DoesNotStartWithAStoreThatItCannotWrite) {
  EXPECT_EQ(Run({"--store", directory_.File("missing/store")}, "tree", "log").Wait(), 1);
  EXPECT_THAT(Log(), HasSubstr("cfm-mgr: cannot write " + directory_.File("missing/store")));
}

TEST_F(ProcessTest, LogsThroughZlogWhereItIsToldTo) {
  const std::string config = directory_.File("zlog.conf");
  const std::string file = directory_.File("zlog.log");
  std::ofstream(config) << "[levels]\nTRACE = 10\n[formats]\nbrief = \"%c %m%n\"\n[rules]\n"
                        << "*.TRACE \"" << file << "\"; brief\n";
  Start({"--log-config", config});
  SendConfiguration();
  Tree();
  EXPECT_THAT(ReadFile(file), HasSubstr("cfm-mgr client " + std::to_string(client_.pid()) +
                                        ": MD create: md \"D1\": created\n"));
  EXPECT_EQ(Log(), "");
}

TEST_F(ProcessTest, PublishesStatusWithTheInterfacesStateAndRemovals) {
  const cfm_test::EventRecorder local(client_, *CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP);
  const cfm_test::EventRecorder remote(client_, *CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP);
  const cfm_test::EventRecorder removed(client_, *CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP);
  Start();
  SendConfiguration();
  ASSERT_TRUE(
      ServiceUntil({client_.get()}, [&] { return local.count() == 1 && remote.count() == 1; }));
  client_server::StatusLocalMaintenanceEndpoint status;
  ASSERT_TRUE(status.ParseFromString(local.entries()[0]));
  EXPECT_EQ(status.mep_id(), 1U);
  EXPECT_EQ(status.mac_address(), std::string(6, '\0')) << "the loopback interface has none";
  EXPECT_THAT(status.intf_status(), testing::AnyOf(1U, 2U)) << "it is there, up or down";
  Send(CFM_MGR_C2S_SIG_MD_DELETE, DeleteMd("D1"));
  ASSERT_TRUE(ServiceUntil({client_.get()}, [&] { return removed.count() == 1; }));
}

TEST_F(ProcessTest, AnswersStatisticsAndRefusesTests) {
  const SignalRecorder statistics(client_, *CFM_MGR_S2C_SIG_STATS_REPLY);
  const SignalRecorder refusals(client_, *CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR);
  Start();
  SendConfiguration();
  client_server::OpLoopbackTriggerMsg trigger;
  trigger.set_md_name("D1");
  trigger.set_ma_name("A1");
  trigger.set_mep_id(1);
  trigger.set_remote_mep_id(2);
  EXPECT_EQ(client_.Send(presence_.present(), *CFM_MGR_C2S_SIG_STATS_GET), 0);
  Send(CFM_MGR_C2S_SIG_LB_TRIGGER, trigger);
  ASSERT_TRUE(ServiceUntil({client_.get()}, [&] { return refusals.count() == 1; }));
  ASSERT_THAT(statistics.entries(), SizeIs(1));
  client_server::OpReplyAllStats reply;
  ASSERT_TRUE(reply.ParseFromString(statistics.entries()[0].data));
  EXPECT_EQ(reply.local_mep_stats_size(), 1);
  EXPECT_EQ(reply.remote_mep_stats_size(), 1);
}

TEST_F(ProcessTest, TakesTensOfThousandsOfRequestsInOneRun) {
  const std::string store = directory_.File("store");
  Start({"--store", store});
  Send(CFM_MGR_C2S_SIG_MD_CREATE, CreateMd("D1"));
  constexpr int kAssociations = 400;
  constexpr std::uint32_t kEndpoints = 50;
  for (int a = 0; a < kAssociations; ++a) {
    const std::string ma = "A" + std::to_string(a);
    Send(CFM_MGR_C2S_SIG_MA_CREATE, CreateMa("D1", ma));
    for (std::uint32_t id = 1; id <= kEndpoints; ++id) {
      Send(CFM_MGR_C2S_SIG_MEP_CREATE, CreateMep("D1", ma, id));
    }
  }
  EXPECT_EQ(Size(), "1 domain, 400 associations, 20000 endpoints, 0 probes, 0 sessions");
  EXPECT_EQ(Stop(), 0);
  Start({"--store", store});
  EXPECT_EQ(Size(), "1 domain, 400 associations, 20000 endpoints, 0 probes, 0 sessions");
}

TEST_F(ProcessTest, AMistakeOnTheCommandLineIsReported) {
  EXPECT_EQ(Run({"--no-such-option"}, "tree", "log").Wait(), 2);
  EXPECT_THAT(Log(), HasSubstr("--no-such-option"));
  EXPECT_EQ(Run({"--store", ""}, "tree", "log").Wait(), 2);
  EXPECT_THAT(Log(), HasSubstr("--store: names no file"));
}

}  // namespace
}  // namespace cfm_mgr_test
