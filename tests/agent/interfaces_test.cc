// SPDX-License-Identifier: Apache-2.0
// The agent in a network namespace whose interfaces come and go.
#include <gmock/gmock.h>
#include <net/if.h>

#include "agent_fixture.h"
#include "network_namespace.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;

class InterfacesOfTheMachine : public AgentTest {
 protected:
  void SetUp() override {
    if (const auto reason = cfm_test::EnterNamespace()) {
      GTEST_SKIP() << *reason;
    }
    if (!Add("probe0") || !Remove("probe0")) {
      GTEST_SKIP() << "this kernel has no veth pairs, or gives no right to create them";
    }
    WriteConfig(
        "domains:\n"
        "- name: d\n"
        "  level: 1\n"
        "  associations:\n"
        "  - {name: a, mep-ids: [1, 2, 9], endpoints: [{mep-id: 1, direction: up, port: lo},\n"
        "     {mep-id: 2, direction: up, port: late0}]}\n");
  }

  static bool Add(const std::string& name) {
    return cfm_test::Runs("ip link add " + name + " type veth peer name p" + name);
  }
  static bool Remove(const std::string& name) { return cfm_test::Runs("ip link del " + name); }

  void Start() {
    StartServer();
    StartAgent();
    ASSERT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_STATUS_GET_ALL));
  }

  // The interfaces that endpoint 2 was created with, in this order; an entry -1 is its deletion.
  std::vector<int> LifeOfEndpoint2() const {
    std::vector<int> life;
    for (const FakeServer::Request& request : server_->requests()) {
      client_server::OpCreateMaintenanceEndpoint create;
      client_server::OpDeleteMaintenanceEndpoint remove;
      if (request.number == CFM_MGR_C2S_SIG_MEP_CREATE->number &&
          create.ParseFromString(request.payload) && create.mep_id() == 2) {
        life.push_back(static_cast<int>(create.ifindex()));
      }
      if (request.number == CFM_MGR_C2S_SIG_MEP_DELETE->number &&
          remove.ParseFromString(request.payload) && remove.mep_id() == 2) {
        life.push_back(-1);
      }
    }
    return life;
  }

  bool WaitForLife(const std::vector<int>& life) {
    return server_->ServeUntil([&] { return LifeOfEndpoint2() == life; });
  }

  static int IndexOf(const char* name) { return static_cast<int>(if_nametoindex(name)); }
};

TEST_F(InterfacesOfTheMachine, GiveTheirEndpointsAnInterfaceWhenTheyAppear) {
  Start();
  EXPECT_THAT(LifeOfEndpoint2(), ElementsAre(0));
  ASSERT_TRUE(Add("other0"));
  ASSERT_TRUE(Add("late0"));
  EXPECT_TRUE(WaitForLife({0, -1, IndexOf("late0")}));
  EXPECT_TRUE(WaitUntilItSays("interface late0 is there; its endpoints are created anew"));
  // The endpoint on the interface that was there all the time is left alone.
  EXPECT_EQ(server_->CountOf(CFM_MGR_C2S_SIG_MEP_DELETE), 1U);
  EXPECT_EQ(server_->CountOf(CFM_MGR_C2S_SIG_MEP_CREATE), 3U);
}

TEST_F(InterfacesOfTheMachine, AreFollowedWhenTheyAreMadeAnew) {
  ASSERT_TRUE(Add("late0"));
  const int first = IndexOf("late0");
  Start();
  ASSERT_TRUE(Remove("late0"));
  ASSERT_TRUE(Add("late0"));
  const int second = IndexOf("late0");
  ASSERT_NE(first, second);
  EXPECT_TRUE(WaitForLife({first, -1, second}));
}

TEST_F(InterfacesOfTheMachine, AreFollowedWhenTheyAreRenamed) {
  ASSERT_TRUE(Add("early0"));
  Start();
  const int index = IndexOf("early0");
  ASSERT_TRUE(cfm_test::Runs("ip link set early0 down && ip link set early0 name late0"));
  EXPECT_TRUE(WaitForLife({0, -1, index}));
}

TEST_F(InterfacesOfTheMachine, ThatAppearedWithoutAServerAreThereWhenItComes) {
  StartAgent();
  ASSERT_TRUE(WaitUntilItSays("configuration loaded"));
  ASSERT_TRUE(Add("late0"));
  ASSERT_TRUE(WaitUntilItSays("interface late0 is there"));
  StartServer();
  EXPECT_TRUE(server_->ServeUntilAsked(CFM_MGR_C2S_SIG_STATUS_GET_ALL));
  EXPECT_THAT(LifeOfEndpoint2(), ElementsAre(IndexOf("late0")));
}

}  // namespace
}  // namespace cfm_agent::testing
