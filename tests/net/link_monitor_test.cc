// SPDX-License-Identifier: Apache-2.0
#include "net/packet/link_monitor.h"

#include <gmock/gmock.h>

#include "net/frame_codec.h"
#include "net/packet/bridge_table.h"
#include "sample_network.h"
#include "wire_fixture.h"

namespace cfm_mgr::net {
namespace {

// Codes of the MIB.
constexpr std::uint8_t kUp = 1;
constexpr std::uint8_t kDown = 2;
constexpr std::uint8_t kLowerLayerDown = 7;
constexpr std::uint8_t kForwards = 2;

class LinkMonitorTest : public WireTest {
 protected:
  void SetUp() override {
    WireTest::SetUp();
    if (!IsSkipped()) monitor_.emplace();
  }

  // What is known of an interface after an update.
  std::optional<LinkState> Find(engine::PortId index) {
    monitor_->Update();
    const auto found = monitor_->links().find(index);
    return found == monitor_->links().end() ? std::nullopt : std::optional(found->second);
  }

  bool BecomesStatus(engine::PortId index, std::uint8_t status) {
    return WaitUntil([&] {
      const auto link = Find(index);
      return link && link->interface_status == status;
    });
  }

  std::optional<LinkMonitor> monitor_;
};

TEST_F(LinkMonitorTest, KnowsTheInterfacesThatThereAre) {
  const auto link = Find(IndexOf("v0"));
  ASSERT_TRUE(link);
  EXPECT_EQ(link->name, "v0");
  EXPECT_EQ(link->mac, MacOf("v0"));
  EXPECT_TRUE(link->is_ethernet);
  EXPECT_EQ(link->interface_status, kUp);
  EXPECT_EQ(link->port_status, kForwards);
  EXPECT_EQ(link->bridge, 0U);
}

TEST_F(LinkMonitorTest, FollowsTheLoopbackThatNeverTellsWhetherItWorks) {
  EXPECT_TRUE(BecomesStatus(IndexOf("lo"), kDown));
  EXPECT_TRUE(Find(IndexOf("lo"))->is_ethernet);
  Ip("link set lo up");
  EXPECT_TRUE(BecomesStatus(IndexOf("lo"), kUp));
}

TEST_F(LinkMonitorTest, TellsDownFromDownBelow) {
  Ip("link set v1 down");
  EXPECT_TRUE(BecomesStatus(IndexOf("v1"), kDown));
  EXPECT_TRUE(BecomesStatus(IndexOf("v0"), kLowerLayerDown));
  Ip("link set v1 up");
  EXPECT_TRUE(BecomesStatus(IndexOf("v1"), kUp));
  EXPECT_TRUE(BecomesStatus(IndexOf("v0"), kUp));
}

TEST_F(LinkMonitorTest, SeesInterfacesComeAndGo) {
  AddPair("w0", "w1");
  const engine::PortId index = IndexOf("w0");
  EXPECT_TRUE(BecomesStatus(index, kUp));
  Ip("link del w0");
  bool gone = false;
  EXPECT_TRUE(WaitUntil([&] {
    for (const LinkUpdate& update : monitor_->Update()) {
      gone = gone || (update.index == index && !update.link);
    }
    return gone;
  }));
  EXPECT_EQ(Find(index), std::nullopt);
}

TEST_F(LinkMonitorTest, SeesNewAddressesAndNames) {
  Ip("link set v0 address 02:00:5e:00:00:77");
  Ip("link set v0 name x0");
  EXPECT_TRUE(WaitUntil([&] {
    const auto link = Find(IndexOf("x0"));
    return link && link->name == "x0" && link->mac == engine::Mac{0x02, 0, 0x5e, 0, 0, 0x77};
  }));
}

TEST_F(LinkMonitorTest, KeepsAnInterfaceThatLeavesABridge) {
  Ip("link add br0 type bridge");
  Ip("link set br0 up");
  Ip("link set v0 master br0");
  const engine::PortId index = IndexOf("v0");
  EXPECT_TRUE(WaitUntil([&] {
    const auto link = Find(index);
    return link && link->bridge == IndexOf("br0") && link->port_status == kForwards;
  }));
  Ip("link set v0 nomaster");
  EXPECT_TRUE(WaitUntil([&] {
    const auto link = Find(index);
    return link && link->bridge == 0;
  }));
}

TEST_F(LinkMonitorTest, SeesThatABridgeBlocksAPort) {
  Ip("link add br0 type bridge");
  Ip("link set br0 up");
  Ip("link set v0 master br0");
  const engine::PortId index = IndexOf("v0");
  const auto becomes = [&](std::uint8_t status) {
    return WaitUntil([&] { return Find(index)->port_status == status; });
  };
  EXPECT_TRUE(becomes(kForwards));
  // It listens: without a spanning tree, the bridge ends a blocking state by itself.
  ASSERT_TRUE(Runs("bridge link set dev v0 state 1"));
  EXPECT_TRUE(becomes(1));
  ASSERT_TRUE(Runs("bridge link set dev v0 state 3"));
  EXPECT_TRUE(becomes(kForwards));
}

TEST_F(LinkMonitorTest, CatchesUpAfterMoreChangesThanTheKernelKeeps) {
  // Names change so often that the socket's room is not enough.
  Ip("-batch /dev/stdin <<'END'\n" +
     [] {
       std::string commands;
       for (int i = 0; i < 2000; ++i) {
         commands += "link set v0 address 02:00:5e:00:0" + std::to_string(i % 10) + ":01\n";
       }
       return commands;
     }() +
     "link set v0 address 02:00:5e:00:00:99\nEND");
  EXPECT_EQ(Find(IndexOf("v0"))->mac, (engine::Mac{0x02, 0, 0x5e, 0, 0, 0x99}));
}

TEST_F(LinkMonitorTest, TheBridgeTellsBehindWhichPortItKnowsAnAddress) {
  AddPair("w0", "w1");
  Ip("link add br0 type bridge");
  Ip("link set v0 master br0");
  Ip("link set w0 master br0");
  SetUpAndWait("br0");
  BridgeTable table;
  const engine::Frame frame = SampleFrame(1, 2, 0);
  EXPECT_EQ(table.Find(IndexOf("br0"), 0, frame.source), std::nullopt);
  Octets octets;
  EncodeFrame(frame, octets);
  RawSender("v1").Send(octets);
  EXPECT_TRUE(
      WaitUntil([&] { return table.Find(IndexOf("br0"), 0, frame.source) == IndexOf("v0"); }));
  // A bridge that does not tell VLANs apart knows it in all of them.
  EXPECT_EQ(table.Find(IndexOf("br0"), 100, frame.source), IndexOf("v0"));
  EXPECT_EQ(table.Find(IndexOf("br0"), 0, frame.destination), std::nullopt);
  EXPECT_EQ(table.Find(12345, 0, frame.source), std::nullopt);
}

}  // namespace
}  // namespace cfm_mgr::net
