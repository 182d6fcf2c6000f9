// SPDX-License-Identifier: Apache-2.0
// A server whose configuration just fits, or does not fit, into the 64 MiB that one message takes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <string>

#include "agent_fixture.h"

namespace cfm_agent::testing {
namespace {

constexpr std::size_t kMostPayload = std::size_t{64} << 20U;
constexpr int kDomains = 64;

// As many domains, with names so long that all of it takes this many octets.
client_server::OpCacheSync CacheOf(std::size_t octets) {
  constexpr std::size_t kNameSize = 1'000'000;
  client_server::OpCacheSync cache;
  for (int i = 0; i < kDomains; ++i) {
    auto& domain = *cache.add_mds();
    domain.set_md_name(std::to_string(i) + std::string(kNameSize, 'x'));
    domain.set_level(1);
  }
  // Sizes of names are written in three octets up to two million.
  const std::size_t more = (octets - cache.ByteSizeLong()) / kDomains;
  for (auto& domain : *cache.mutable_mds()) {
    domain.mutable_md_name()->append(more, 'x');
  }
  cache.mutable_mds(0)->mutable_md_name()->append(octets - cache.ByteSizeLong(), 'x');
  return cache;
}

class PayloadLimit : public AgentTest {
 protected:
  void SetUp() override {
    WriteConfig(kOneEndpoint);
    WriteFile(directory_.File("log.conf"), "[rules]\n*.* \"/dev/null\"\n");
    StartAgent({"--log-config", directory_.File("log.conf")});
  }

  void ExpectInStep() {
    EXPECT_TRUE(WaitUntilItSays("server in step")) << Errors();
    EXPECT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_MEP_CREATE));
  }
};

TEST_F(PayloadLimit, IsTakenWholeByTheAgent) {
  auto cache = CacheOf(kMostPayload);
  ASSERT_EQ(cache.ByteSizeLong(), kMostPayload);
  StartServer(std::move(cache));
  ExpectInStep();
  EXPECT_EQ(server_->CountOf(CFM_MGR_C2S_SIG_MD_DELETE), std::size_t{kDomains});
}

TEST_F(PayloadLimit, IsRefusedOneOctetBeyondAndBothGoOn) {
  auto cache = CacheOf(kMostPayload + 1);
  ASSERT_EQ(cache.ByteSizeLong(), kMostPayload + 1);
  StartServer();
  server_->Hang();
  ASSERT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_CACHE_GET));
  EXPECT_EQ(server_->Reply(CFM_MGR_S2C_SIG_CACHE_REPLY, cache), -EMSGSIZE);
  EXPECT_EQ(server_->Reply(CFM_MGR_S2C_SIG_CACHE_REPLY, client_server::OpCacheSync()), 0);
  ExpectInStep();
}

}  // namespace
}  // namespace cfm_agent::testing
