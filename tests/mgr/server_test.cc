// SPDX-License-Identifier: Apache-2.0
#include "server.h"

#include <cfm/identifiers.h>
#include <gmock/gmock.h>

#include <chrono>
#include <cstring>
#include <random>
#include <set>

#include "convert.h"
#include "messages.h"
#include "render.h"
#include "server_fixture.h"

namespace cfm_mgr_test {
namespace {

using cfm_mgr::Server;
using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

/** One valid message for each signal that carries one, in an order in which all are accepted. */
std::vector<std::pair<const vorx_sig_descriptor*, std::string>> ValidRequests() {
  auto association = CreateMa("D1", "A1", {1, 2, 300});
  SetAis(*association.mutable_ais());
  client_server::OpStatsClear clear;
  clear.set_md_name("D1");
  clear.set_ma_name("A1");
  clear.set_mep_id(1);
  return {
      {CFM_MGR_C2S_SIG_MD_CREATE, CreateMd("D1").SerializeAsString()},
      {CFM_MGR_C2S_SIG_MD_UPDATE, UpdateMd("D1").SerializeAsString()},
      {CFM_MGR_C2S_SIG_MA_CREATE, association.SerializeAsString()},
      {CFM_MGR_C2S_SIG_MA_UPDATE, UpdateMa("D1", "A1", {1, 2, 300}).SerializeAsString()},
      {CFM_MGR_C2S_SIG_MEP_CREATE, CreateMep("D1", "A1", 1).SerializeAsString()},
      {CFM_MGR_C2S_SIG_MEP_UPDATE, UpdateMep("D1", "A1", 1).SerializeAsString()},
      {CFM_MGR_C2S_SIG_DM_PROBE_CREATE, CreateProbe(1).SerializeAsString()},
      {CFM_MGR_C2S_SIG_DM_SESSION_CREATE, CreateSession(1, 1).SerializeAsString()},
      {CFM_MGR_C2S_SIG_STATS_CLEAR, clear.SerializeAsString()},
      {CFM_MGR_C2S_SIG_DM_SESSION_DELETE, DeleteSession(1, 1).SerializeAsString()},
      {CFM_MGR_C2S_SIG_DM_PROBE_DELETE, DeleteProbe(1).SerializeAsString()},
      {CFM_MGR_C2S_SIG_MEP_DELETE, DeleteMep("D1", "A1", 1).SerializeAsString()},
      {CFM_MGR_C2S_SIG_MA_DELETE, DeleteMa("D1", "A1").SerializeAsString()},
      {CFM_MGR_C2S_SIG_MD_DELETE, DeleteMd("D1").SerializeAsString()},
  };
}

TEST(Requests, CoverEverySignalOfTheBlockOnceInOrder) {
  const auto& requests = Server::Requests();
  ASSERT_THAT(requests, SizeIs(20));
  std::set<std::string> titles;
  for (std::size_t i = 0; i < requests.size(); ++i) {
    EXPECT_STREQ(requests[i].signal->block, CFM_MGR_C2S_SIGBLOCK);
    EXPECT_EQ(requests[i].signal->number, i + 1);
    titles.insert(requests[i].title);
  }
  EXPECT_THAT(titles, SizeIs(20));
}

TEST_F(ServerTest, AcceptsAValidMessageOnEverySignalThatCarriesOne) {
  for (const auto& [signal, payload] : ValidRequests()) {
    SendBytes(signal, payload);
    EXPECT_THAT(environment_.Line(), testing::Not(HasSubstr("refused")));
    EXPECT_THAT(environment_.Line(),
                StartsWith(std::string("client 7: ") + RequestOf(signal).title + ": "));
  }
}

TEST_F(ServerTest, LogsOneLineForEachRequest) {
  Send(CFM_MGR_C2S_SIG_MD_CREATE, CreateMd("D1"));
  Send(CFM_MGR_C2S_SIG_MEP_CREATE, CreateMep("D1", "A1", 10));
  EXPECT_THAT(environment_.log,
              testing::ElementsAre(R"(client 7: MD create: md "D1": created)",
                                   R"(client 7: MEP create: md "D1" ma "A1" mep 10: refused: )"
                                   R"(no association "A1" in domain "D1")"));
}

TEST_F(ServerTest, TellsWhetherARequestChangedTheTree) {
  EXPECT_TRUE(Send(CFM_MGR_C2S_SIG_MD_CREATE, CreateMd("D1")));
  EXPECT_FALSE(Send(CFM_MGR_C2S_SIG_MD_UPDATE, UpdateMd("D1"))) << "as it is already";
  EXPECT_FALSE(Send(CFM_MGR_C2S_SIG_MD_UPDATE, UpdateMd("D2"))) << "refused";
  EXPECT_TRUE(Send(CFM_MGR_C2S_SIG_MD_DELETE, DeleteMd("D1")));
}

TEST_F(ServerTest, RefusesBytesThatAreNoMessage) {
  for (const auto& [signal, payload] : ValidRequests()) {
    SendBytes(signal, "\xff\xff\xff");
    EXPECT_THAT(environment_.Line(),
                HasSubstr("refused: payload of 3 octets is not a client_server."));
  }
  EXPECT_THAT(server_.tree().domains, IsEmpty());
}

TEST_F(ServerTest, AnEmptyPayloadNamesNothing) {
  for (const auto& [signal, payload] : ValidRequests()) {
    SendBytes(signal, {});
    if (signal == CFM_MGR_C2S_SIG_STATS_CLEAR) continue;  // nothing named: clears all
    EXPECT_THAT(environment_.Line(), HasSubstr(" is missing"));
  }
  EXPECT_THAT(server_.tree().domains, IsEmpty());
}

// A message may be cut between two fields and still be one; then the rest counts as absent.
TEST_F(ServerTest, EveryTruncationIsRefusedOrAppliedAsWhatItIs) {
  for (const auto& [signal, payload] : ValidRequests()) {
    RecordingEnvironment environment;
    Server server(cfm_mgr::Store(), environment, MakeQuietNetwork);
    for (const auto& [before, whole] : ValidRequests()) {
      if (before == signal) break;
      server.Handle(RequestOf(before), kClient, whole);
    }
    for (std::size_t length = 0; length < payload.size(); ++length) {
      const std::string tree = cfm_mgr::Render(server.tree());
      // A copy of its own size, so that a sanitizer sees a read past the end.
      const std::vector<char> bytes(payload.begin(),
                                    payload.begin() + static_cast<std::ptrdiff_t>(length));
      const bool changed = server.Handle(RequestOf(signal), kClient, {bytes.data(), bytes.size()});
      if (environment.Line().find("refused: ") != std::string::npos) {
        EXPECT_FALSE(changed);
        EXPECT_EQ(cfm_mgr::Render(server.tree()), tree) << environment.Line();
      }
    }
    EXPECT_THAT(environment.log, SizeIs(testing::Ge(payload.size())));
  }
}

TEST_F(ServerTest, RandomBytesOnAnySignalNeitherCrashItNorBreakWhatItHolds) {
  std::mt19937 random(20240607);  // NOLINT(cert-msc51-cpp): the same run every time
  std::uniform_int_distribution<int> byte(0, 255);
  const auto valid = ValidRequests();
  for (int i = 0; i < 20000; ++i) {
    const auto& request = Server::Requests()[static_cast<std::size_t>(i) % 20];
    std::string payload = valid[random() % valid.size()].second;
    for (int changes = byte(random) % 4; changes > 0 && !payload.empty(); --changes) {
      payload[random() % payload.size()] = static_cast<char>(byte(random));
    }
    if (byte(random) < 32) payload.resize(payload.size() / 2);
    server_.Handle(request, kClient, payload);
    server_.EndRound();
  }
  EXPECT_THAT(environment_.log, SizeIs(20000));
  cfm_mgr::Store loaded;
  EXPECT_THAT(loaded.Load(cfm_mgr::ToCacheSync(server_.tree())), IsEmpty())
      << "whatever was accepted is allowed";
  EXPECT_EQ(cfm_mgr::Render(loaded.tree()), cfm_mgr::Render(server_.tree()));
}

TEST_F(ServerTest, AnswersTheCacheRequestToItsSenderWithAllItHolds) {
  for (const auto& [signal, payload] : ValidRequests()) {
    if (signal == CFM_MGR_C2S_SIG_DM_SESSION_DELETE) break;
    SendBytes(signal, payload);
  }
  SendBytes(CFM_MGR_C2S_SIG_CACHE_GET, {});
  EXPECT_EQ(environment_.Line(),
            "client 7: cache request: sent 1 domain, 1 association, 1 endpoint, 1 probe, "
            "1 session");
  ASSERT_THAT(environment_.sent, SizeIs(1));
  EXPECT_EQ(environment_.sent[0].client, kClient);
  EXPECT_EQ(environment_.sent[0].signal, CFM_MGR_S2C_SIG_CACHE_REPLY);
  client_server::OpCacheSync reply;
  ASSERT_TRUE(reply.ParseFromString(environment_.sent[0].payload));
  cfm_mgr::Store copy;
  EXPECT_THAT(copy.Load(reply), IsEmpty());
  EXPECT_EQ(cfm_mgr::Render(copy.tree()), cfm_mgr::Render(server_.tree()));
}

TEST_F(ServerTest, AnEmptyServersCacheReplyIsEmpty) {
  SendBytes(CFM_MGR_C2S_SIG_CACHE_GET, {});
  ASSERT_THAT(environment_.sent, SizeIs(1));
  EXPECT_EQ(environment_.sent[0].payload, "");
}

TEST_F(ServerTest, AReplyThatCannotBeSentIsLogged) {
  environment_.send_fault = "no such process";
  SendBytes(CFM_MGR_C2S_SIG_CACHE_GET, {});
  EXPECT_EQ(environment_.Line(), "client 7: cache request: refused: cannot reply: no such process");
}

TEST_F(ServerTest, HandlesAHundredThousandRequestsInOneRun) {
  const auto start = std::chrono::steady_clock::now();
  for (std::uint32_t d = 0; d < 10; ++d) {
    const std::string md = "D" + std::to_string(d);
    Send(CFM_MGR_C2S_SIG_MD_CREATE, CreateMd(md));
    for (std::uint32_t a = 0; a < 100; ++a) {
      const std::string ma = "A" + std::to_string(a);
      Send(CFM_MGR_C2S_SIG_MA_CREATE, CreateMa(md, ma));
      for (std::uint32_t id = 1; id <= 100; ++id) {
        Send(CFM_MGR_C2S_SIG_MEP_CREATE, CreateMep(md, ma, id));
      }
      server_.EndRound();
      Send(CFM_MGR_C2S_SIG_MD_UPDATE, UpdateMd(md));
    }
  }
  EXPECT_EQ(cfm_mgr::SizeOf(server_.tree()).meps, 100000U);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

}  // namespace
}  // namespace cfm_mgr_test
