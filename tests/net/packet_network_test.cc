// SPDX-License-Identifier: Apache-2.0
#include "net/packet/packet_network.h"

#include <gmock/gmock.h>
#include <linux/capability.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <algorithm>

#include "net/frame_codec.h"
#include "packet_node.h"
#include "sample_network.h"
#include "wire_fixture.h"

namespace cfm_mgr::net {
namespace {

using engine::Time;
using std::chrono::milliseconds;
using std::chrono::seconds;

// Numbers of the MIB.
constexpr std::uint32_t kFailed = 3;
constexpr std::uint32_t kOk = 4;
constexpr std::int32_t kTenMilliseconds = 2;
constexpr std::uint8_t kLowerLayerDown = 7;

bool RunFor(const std::vector<Node*>& nodes, Time time) {
  const Time end = MonotonicNow() + time;
  return RunUntil(nodes, [end] { return MonotonicNow() >= end; });
}

/** Measures the delay to endpoint 2; the result ends up in the node's notifications. */
void StartDelayMeasurement(Node& node, std::uint32_t count, std::uint32_t interval_ms) {
  engine::DelayRequest request;
  request.mep = SampleMep(1);
  request.remote_mep_id = 2;
  request.count = count;
  request.interval_ms = interval_ms;
  const Time now = MonotonicNow();
  node.network.Advance(now);
  EXPECT_FALSE(node.network.engine().StartDelayMeasurement(now, request).error);
}

class PacketNetworkTest : public WireTest {};

TEST_F(PacketNetworkTest, TwoEndsSeeEachOtherAndACutBetweenThem) {
  Node near({"v0"});
  Node far({"v1"});
  near.AddMep(1, "v0");
  far.AddMep(2, "v1");
  const std::vector<Node*> both = {&near, &far};
  EXPECT_TRUE(
      RunUntil(both, [&] { return near.StateOf(1, 2) == kOk && far.StateOf(2, 1) == kOk; }));
  EXPECT_EQ(near.network.engine().RemoteStatus(SampleMep(1), 2)->mac, MacOf("v1"));

  Ip("link set v1 down");
  EXPECT_TRUE(RunUntil(both, [&] { return near.StateOf(1, 2) == kFailed; }));
  EXPECT_TRUE(RunUntil(both, [&] { return near.StatusOf(1).interface_status == kLowerLayerDown; }));
  EXPECT_TRUE(near.StatusOf(1).defect_remote_ccm);

  SetUpAndWait("v1");
  EXPECT_TRUE(RunUntil(both, [&] {
    return near.StateOf(1, 2) == kOk && far.StateOf(2, 1) == kOk &&
           near.StatusOf(1).interface_status == 1;
  }));
  EXPECT_FALSE(near.StatusOf(1).defect_remote_ccm);
  EXPECT_EQ(near.network.CountersOf(IndexOf("v0"))->refused, 0U);
}

TEST_F(PacketNetworkTest, TakesWhatCameInTimeForItWhenTheProcessWasHeldUp) {
  Node near({"v0"});
  Node far({"v1"});
  near.AddMep(1, "v0", kDown, kTenMilliseconds);
  far.AddMep(2, "v1", kDown, kTenMilliseconds);
  ASSERT_TRUE(RunUntil({&near, &far}, [&] { return near.StateOf(1, 2) == kOk; }));
  ASSERT_TRUE(RunFor({&near, &far}, milliseconds(100)));
  const auto state_since = [&] {
    return near.network.engine().RemoteStatus(SampleMep(1), 2)->last_change;
  };
  const Time since = state_since();
  // Far longer than 3.5 intervals, while the other end goes on.
  ASSERT_TRUE(RunFor({&far}, milliseconds(200)));
  near.network.Advance(MonotonicNow());
  EXPECT_EQ(near.StateOf(1, 2), kOk);
  EXPECT_EQ(state_since(), since);
}

TEST_F(PacketNetworkTest, MeasuresADelayThatIsNotNegativeAndSmall) {
  Node near({"v0"});
  Node far({"v1"});
  near.AddMep(1, "v0");
  far.AddMep(2, "v1");
  const std::vector<Node*> both = {&near, &far};
  ASSERT_TRUE(RunUntil(both, [&] { return near.StateOf(1, 2) == kOk; }));
  StartDelayMeasurement(near, 10, 20);
  ASSERT_TRUE(RunUntil(both, [&] { return !near.notifications.delay_results.empty(); }));
  const auto& result = near.notifications.delay_results[0];
  EXPECT_EQ(result.sent, 10U);
  EXPECT_EQ(result.received, 10U);
  EXPECT_GT(result.delay.min.count(), 0);
  EXPECT_LT(result.delay.min, milliseconds(20));
}

TEST_F(PacketNetworkTest, StampsADmmThatWasDueWhileItWasHeldUpWhenItSendsIt) {
  Node near({"v0"});
  Node far({"v1"});
  near.AddMep(1, "v0", kDown, kTenMilliseconds);
  far.AddMep(2, "v1", kDown, kTenMilliseconds);
  const std::vector<Node*> both = {&near, &far};
  ASSERT_TRUE(RunUntil(both, [&] { return near.StateOf(1, 2) == kOk; }));
  StartDelayMeasurement(near, 2, 50);
  // CCMs come in meanwhile, so that there are moments to catch up with.
  ASSERT_TRUE(RunFor({&far}, milliseconds(400)));
  ASSERT_TRUE(RunUntil(both, [&] { return !near.notifications.delay_results.empty(); }));
  const auto& result = near.notifications.delay_results[0];
  EXPECT_EQ(result.received, 2U);
  EXPECT_LT(result.delay.max, milliseconds(200));
}

TEST_F(PacketNetworkTest, TellsWhatWasDroppedByInterfaceAndReason) {
  Node near({"v0"});
  EXPECT_THAT(near.network.Drops(), testing::IsEmpty());
  near.AddMep(1, "v0");
  const RawSender sender("v1");
  engine::Frame frame = SampleFrame(1, 2, 100);
  frame.pdu = {0x80, 0x01, 0x03, 70};  // the header of a CCM of level 4, and nothing behind it
  frame.destination = {0x01, 0x80, 0xc2, 0, 0, 0x34};
  std::vector<std::uint8_t> octets;
  EncodeFrame(frame, octets);
  sender.Send(octets);
  const std::vector<std::uint8_t> tag(octets.begin() + 12, octets.begin() + 16);
  for (int i = 0; i < 2; ++i) octets.insert(octets.begin() + 12, tag.begin(), tag.end());
  sender.Send(octets);
  ASSERT_TRUE(RunUntil({&near}, [&] { return near.network.Drops().size() == 2; }));
  const auto drops = near.network.Drops();
  EXPECT_EQ(drops[0].interface, "v0");
  EXPECT_THAT(drops[0].reason, testing::StartsWith("not readable"));
  EXPECT_EQ(drops[0].frames, 1U);
  EXPECT_EQ(drops[1], (DropCount{"v0", "malformed: truncated", 1}));

  Ip("link set v0 down");
  const auto not_sent = [&] {
    for (const DropCount& drop : near.network.Drops()) {
      if (drop.reason == "not sent: the interface is down") return drop.frames > 0;
    }
    return false;
  };
  EXPECT_TRUE(RunUntil({&near}, not_sent));
}

TEST_F(PacketNetworkTest, UsesInterfacesThatAppearAndForgetsThoseThatGo) {
  Node near({"w0"});
  EXPECT_EQ(near.network.CountersOf(IndexOf("v0")), std::nullopt);
  AddPair("w0", "w1");
  Node far({"w1"});
  near.AddMep(1, "w0");
  far.AddMep(2, "w1");
  const std::vector<Node*> both = {&near, &far};
  EXPECT_TRUE(RunUntil(both, [&] { return near.StateOf(1, 2) == kOk; }));
  const engine::PortId index = IndexOf("w0");
  Ip("link del w0");
  EXPECT_TRUE(RunUntil(both, [&] { return !near.network.CountersOf(index); }));
}

TEST_F(PacketNetworkTest, UsesEveryEthernetInterfaceUnlessItIsToldWhichOnes) {
  Node all({});
  EXPECT_TRUE(all.network.CountersOf(IndexOf("lo")));
  EXPECT_TRUE(all.network.CountersOf(IndexOf("v0")));
  EXPECT_TRUE(all.network.CountersOf(IndexOf("v1")));
}

TEST_F(PacketNetworkTest, UpMepsReachTheOtherPortsOfTheirBridge) {
  AddPair("w0", "w1");
  Ip("link add br0 type bridge");
  Ip("link set v0 master br0");
  Ip("link set w0 master br0");
  SetUpAndWait("br0");
  Node bridge({"v0", "w0"});
  Node far({"w1"});
  bridge.AddMep(1, "v0", kUp);
  far.AddMep(2, "w1");
  EXPECT_TRUE(RunUntil({&bridge, &far},
                       [&] { return bridge.StateOf(1, 2) == kOk && far.StateOf(2, 1) == kOk; }));
  EXPECT_EQ(bridge.network.CountersOf(IndexOf("v0"))->sent, 0U);
}

TEST_F(PacketNetworkTest, SaysWhichCapabilityItLacks) {
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, 2> none{};
    if (syscall(SYS_capset, &header, none.data()) != 0) _exit(2);
    RecordingNotifications notifications;
    try {
      const PacketNetwork network({}, notifications, 1);
    } catch (const std::runtime_error& error) {
      _exit(std::string(error.what()).find("CAP_NET_RAW") == std::string::npos ? 3 : 0);
    }
    _exit(1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
}  // namespace cfm_mgr::net
