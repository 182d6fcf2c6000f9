// SPDX-License-Identifier: Apache-2.0
// What is handed in or held that does not fit into the 64 MiB that one message takes.

#include <cfm/client.h>
#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "../devhost/test_process.h"
#include "configurations.h"
#include "exhaustive.h"
#include "system.h"

namespace cfm_test {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

constexpr std::size_t kMostPayload = std::size_t{64} << 20U;

/** A server that holds nothing, and an application with a client. */
class LongRequest : public testing::Test {
 protected:
  // A log without limits, and nothing but messages in it.
  std::string WriteLogConfig() const {
    std::ofstream(directory_.File("log.conf"))
        << "[global]\nbuffer max = 0\n[levels]\nTRACE = 10\n[formats]\nline = \"%m%n\"\n"
           "[rules]\n*.TRACE \""
        << directory_.File("log") << "\"; line\n";
    return directory_.File("log.conf");
  }

  // The longest name of a domain that a request to create it can carry.
  static std::size_t LongestName() {
    client_server::OpCreateMaintenanceDomain request;
    request.set_md_name(std::string(kMostPayload, 'x'));
    request.set_format(4);
    request.set_level(1);
    request.set_sender_id(1);
    request.set_mhf_creation(1);
    return kMostPayload - (request.ByteSizeLong() - kMostPayload);
  }

  static cfm::hierarchy WithDomain(const std::string& name) {
    cfm::hierarchy hierarchy;
    hierarchy.mds[name].cfg = {cfm::MdNameFormat::CharString, 1, cfm::SenderIdTlvContent::None,
                               cfm::MhfCreationMode::None};
    return hierarchy;
  }

  // Brings the client in step with an empty server.
  void GetInStep() {
    ASSERT_TRUE(Serve([this] { return asked_.count() == 1; }));
    ASSERT_EQ(server_.Send(asked_.entries().front().sender, *CFM_MGR_S2C_SIG_CACHE_REPLY), 0);
    ASSERT_TRUE(Serve([this] { return status_asked_.count() == 1; }));
  }

  bool Serve(const std::function<bool()>& condition) const {
    return ServiceUntil({application_.get(), server_.get()}, condition);
  }

  TemporaryDirectory directory_;
  PrivateBus bus_;
  TestProcess server_{bus_, CFM_MGR_PROCESS};
  TestProcess application_{bus_, "application", {0, 0, WriteLogConfig()}};
  SignalRecorder asked_{server_, *CFM_MGR_C2S_SIG_CACHE_GET};
  SignalRecorder status_asked_{server_, *CFM_MGR_C2S_SIG_STATUS_GET_ALL};
  SignalRecorder created_{server_, *CFM_MGR_C2S_SIG_MD_CREATE};
  SignalRecorder deleted_{server_, *CFM_MGR_C2S_SIG_MD_DELETE};
  cfm::Client client_{application_.get()};
};

TEST_F(LongRequest, OfTheMostThatFitsArrivesAndIsLoggedWhole) {
  GetInStep();
  const std::string name(LongestName(), 'x');
  client_.UpdateConfig(WithDomain(name));
  ASSERT_TRUE(Serve([this] { return created_.count() == 1; }));
  EXPECT_EQ(created_.entries().front().data.size(), kMostPayload);
  EXPECT_GT(std::filesystem::file_size(directory_.File("log")), name.size());
}

TEST_F(LongRequest, OfOneOctetMoreIsReportedAndTheNextOnesPass) {
  GetInStep();
  testing::internal::CaptureStderr();
  client_.UpdateConfig(WithDomain(std::string(LongestName() + 1, 'x')));
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("not sent: Message too long"));
  client_.UpdateConfig(WithDomain("net"));
  ASSERT_TRUE(Serve([this] { return created_.count() == 1; }));
  EXPECT_LT(created_.entries().front().data.size(), 100U);
  // It was never told, but the client cannot know.
  EXPECT_EQ(deleted_.count(), 1U);
}

// A store of associations that all name every endpoint there can be: more than one message takes.
std::string StoreBeyondTheLimit() {
  constexpr std::uint32_t kMostEndpoints = 8191;
  constexpr int kAssociations = 4300;
  client_server::OpCacheSync store;
  auto& domain = *store.add_mds();
  domain.set_md_name("net");
  domain.set_format(4);
  domain.set_sender_id(1);
  domain.set_mhf_creation(1);
  client_server::OpCreateMaintenanceAssociation association;
  association.set_md_name("net");
  association.set_format(2);
  association.set_ccm_interval(4);
  association.set_sender_id(5);
  association.set_mhf_creation(4);
  for (std::uint32_t id = 1; id <= kMostEndpoints; ++id) {
    association.add_mep_ids(id);
  }
  for (int number = 0; number < kAssociations; ++number) {
    association.set_ma_name("a" + std::to_string(number));
    *store.add_mas() = association;
  }
  return store.SerializeAsString();
}

TEST(LongStore, IsReportedByAServerThatCannotTellItAndGoesOn) {
  if (!IsExhaustive()) {
    GTEST_SKIP() << "fills some hundred megabytes; set CFM_EXHAUSTIVE to run it";
  }
  System system;
  const std::string store = StoreBeyondTheLimit();
  ASSERT_GT(store.size(), kMostPayload);
  std::ofstream(system.File("store"), std::ios::binary) << store;
  system.WriteConfig(ConfigFile({1, 1}));
  system.StartServer({"--store", system.File("store")});
  system.StartAgent();
  const auto refused = [&system] {
    return system.ServerLog().find("refused: cannot reply") != std::string::npos;
  };
  EXPECT_TRUE(Eventually(refused)) << system.ServerLog();
  EXPECT_THAT(system.ServerLog(), ContainsRegex("cache request: refused: cannot reply: .* not "
                                                "sent: Message too long"));
  EXPECT_THAT(system.AgentOutput(), Not(HasSubstr("in step")));
  EXPECT_EQ(system.StopServer(), 0);
  system.StartServer();
  EXPECT_TRUE(Eventually([&] {
    return system.Tree() == ExpectedTree({1, 1});
  })) << system.ServerLog();
}

}  // namespace
}  // namespace cfm_test
