// SPDX-License-Identifier: Apache-2.0
#include "net/packet/packet_socket.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <optional>
#include <thread>

#include "sample_network.h"
#include "wire_fixture.h"

namespace cfm_mgr::net {
namespace {

using engine::Frame;
using engine::VlanTag;
using std::chrono::milliseconds;
using testing::IsEmpty;

constexpr std::size_t kNoLimit = 1 << 20;

Octets Encoded(const Frame& frame) {
  Octets octets;
  EncodeFrame(frame, octets);
  return octets;
}

class PacketSocketTest : public WireTest {
 protected:
  void SetUp() override {
    WireTest::SetUp();
    if (IsSkipped()) return;
    near_.emplace(IndexOf("v0"));
    far_.emplace(IndexOf("v1"));
  }

  // What has come in when this many frames are there.
  std::vector<ReceivedFrame> Receive(PacketSocket& socket, std::size_t count) {
    std::vector<ReceivedFrame> frames;
    EXPECT_TRUE(WaitUntil([&] {
      socket.Receive(batch_, kNoLimit, frames);
      return frames.size() >= count;
    })) << frames.size();
    return frames;
  }

  ReceiveBatch batch_;
  std::optional<PacketSocket> near_;
  std::optional<PacketSocket> far_;
};

TEST_F(PacketSocketTest, KeepsTheTagsOfWhatComesIn) {
  const std::vector<std::vector<VlanTag>> tag_lists = {
      {},
      {{0x8100, 6, true, 100}},
      {{0x8100, 3, false, 0}},
      {{0x88a8, 5, false, 4094}},
      {{0x88a8, 5, true, 9}, {0x8100, 1, false, 7}},
      {{0x8100, 2, false, 8}, {0x8100, 1, true, 7}}};
  const RawSender sender("v1");
  for (const auto& tags : tag_lists) {
    Frame frame = SampleFrame(1, 2, 0);
    frame.tags = tags;
    sender.Send(Encoded(frame));
  }
  const auto received = Receive(*near_, tag_lists.size());
  ASSERT_EQ(received.size(), tag_lists.size());
  for (std::size_t i = 0; i < received.size(); ++i) {
    Frame expected = SampleFrame(1, 2, 0);
    expected.tags = tag_lists[i];
    EXPECT_EQ(Encoded(received[i].frame), Encoded(expected)) << i;
    EXPECT_EQ(received[i].port, IndexOf("v0"));
  }
  EXPECT_EQ(near_->counters().received, tag_lists.size());
}

TEST_F(PacketSocketTest, SeesNothingButCfm) {
  const RawSender sender("v1");
  Octets arp = Encoded(SampleFrame(1, 2, 0));
  arp[12] = 0x08;
  arp[13] = 0x06;
  Octets tagged_arp = Encoded(SampleFrame(1, 2, 100));
  tagged_arp[16] = 0x08;
  tagged_arp[17] = 0x06;
  Octets four_tags = Encoded(SampleFrame(1, 2, 100));
  const Octets tag(four_tags.begin() + 12, four_tags.begin() + 16);
  for (int i = 0; i < 3; ++i) four_tags.insert(four_tags.begin() + 12, tag.begin(), tag.end());
  for (const Octets& other : {arp, tagged_arp, four_tags}) sender.Send(other);
  sender.Send(Encoded(SampleFrame(3, 4, 0)));
  const auto received = Receive(*near_, 1);
  ASSERT_EQ(received.size(), 1U);
  EXPECT_EQ(received[0].frame.source, SampleFrame(3, 4, 0).source);
  EXPECT_EQ(near_->counters().refused, 0U);
}

TEST_F(PacketSocketTest, CountsAFrameWithThreeTagsAsRefused) {
  const RawSender sender("v1");
  Octets octets = Encoded(SampleFrame(1, 2, 100));
  const Octets tag(octets.begin() + 12, octets.begin() + 16);
  for (int i = 0; i < 2; ++i) octets.insert(octets.begin() + 12, tag.begin(), tag.end());
  sender.Send(octets);
  sender.Send(Encoded(SampleFrame(3, 4, 0)));
  EXPECT_EQ(Receive(*near_, 1).size(), 1U);
  EXPECT_EQ(near_->counters().refused, 1U);
}

TEST_F(PacketSocketTest, CountsWhatTheKernelHadNoRoomFor) {
  const int least = 0;
  setsockopt(near_->descriptor(), SOL_SOCKET, SO_RCVBUF, &least, sizeof least);
  const RawSender sender("v1");
  constexpr std::uint64_t kSent = 100;
  for (std::uint64_t i = 0; i < kSent; ++i) sender.Send(Encoded(SampleFrame(1, 2, 0)));
  std::vector<ReceivedFrame> received;
  near_->Receive(batch_, kNoLimit, received);
  near_->CountOverruns();
  EXPECT_LT(received.size(), kSent);
  EXPECT_EQ(near_->counters().overrun, kSent - received.size());
  near_->CountOverruns();
  EXPECT_EQ(near_->counters().overrun, kSent - received.size()) << "each is counted once";
}

TEST_F(PacketSocketTest, StampsFramesWhenTheyComeInNotWhenTheyAreRead) {
  const RawSender sender("v1");
  // The kernel begins to stamp a moment after the first socket has asked for it.
  EXPECT_TRUE(WaitUntil([&] {
    const auto before = MonotonicNow();
    sender.Send(Encoded(SampleFrame(1, 2, 0)));
    const auto after = MonotonicNow();
    std::this_thread::sleep_until(std::chrono::steady_clock::time_point(after + milliseconds(20)));
    const auto received = Receive(*near_, 1);
    // The two clocks are read one after the other; a busy machine may stop in between.
    return received.size() == 1 && received[0].at >= before - milliseconds(1) &&
           received[0].at <= after + milliseconds(1);
  }));
}

TEST_F(PacketSocketTest, SendsWholeFramesInOneGoAndInOrder) {
  constexpr std::size_t kFrames = 300;
  for (std::size_t i = 0; i < kFrames; ++i) {
    Frame frame = SampleFrame(static_cast<std::uint8_t>(i & 0xFFU), 2, 100);
    frame.tags.push_back({0x8100, 1, false, 7});
    near_->Send(frame);
  }
  EXPECT_TRUE(near_->HasBacklog());
  EXPECT_EQ(near_->counters().sent, 0U);
  EXPECT_TRUE(near_->Flush());
  EXPECT_FALSE(near_->HasBacklog());
  EXPECT_EQ(near_->counters().sent, kFrames);
  const auto received = Receive(*far_, kFrames);
  ASSERT_EQ(received.size(), kFrames);
  for (std::size_t i = 0; i < kFrames; ++i) {
    EXPECT_EQ(received[i].frame.source[5], i & 0xFFU);
    ASSERT_EQ(received[i].frame.tags.size(), 2U);
    EXPECT_EQ(received[i].frame.tags[0].vid, 100);
    EXPECT_EQ(received[i].frame.tags[1].vid, 7);
  }
}

TEST_F(PacketSocketTest, DoesNotSeeItsOwnFrames) {
  near_->Send(SampleFrame(1, 2, 0));
  near_->Flush();
  Receive(*far_, 1);
  RawSender("v1").Send(Encoded(SampleFrame(3, 4, 0)));
  const auto received = Receive(*near_, 1);
  ASSERT_EQ(received.size(), 1U);
  EXPECT_EQ(received[0].frame.source, SampleFrame(3, 4, 0).source);
}

TEST_F(PacketSocketTest, GoesOnAfterAFrameThatIsTooLongForTheInterface) {
  Frame frame = SampleFrame(1, 2, 0);
  frame.pdu.resize(3000);
  near_->Send(frame);
  near_->Send(SampleFrame(3, 4, 0));
  EXPECT_TRUE(near_->Flush());
  EXPECT_EQ(near_->counters().unsendable, 1U);
  EXPECT_EQ(near_->counters().sent, 1U);
  EXPECT_EQ(Receive(*far_, 1).size(), 1U);
}

TEST_F(PacketSocketTest, CountsWhatCannotBeEncoded) {
  Frame frame = SampleFrame(1, 2, 0);
  frame.pdu.clear();
  near_->Send(frame);
  EXPECT_FALSE(near_->HasBacklog());
  EXPECT_EQ(near_->counters().unsendable, 1U);
}

TEST_F(PacketSocketTest, WorksAgainAfterTheInterfaceWasDown) {
  Ip("link set v0 down");
  near_->Send(SampleFrame(1, 2, 0));
  near_->Send(SampleFrame(1, 2, 0));
  EXPECT_TRUE(near_->Flush());
  EXPECT_EQ(near_->counters().down, 2U);
  std::vector<ReceivedFrame> frames;
  near_->Receive(batch_, kNoLimit, frames);
  EXPECT_THAT(frames, IsEmpty());
  SetUpAndWait("v0");
  near_->Send(SampleFrame(3, 4, 0));
  EXPECT_TRUE(near_->Flush());
  EXPECT_EQ(Receive(*far_, 1).size(), 1U);
  RawSender("v1").Send(Encoded(SampleFrame(3, 4, 0)));
  EXPECT_EQ(Receive(*near_, 1).size(), 1U);
}

TEST_F(PacketSocketTest, DropsWhatAVanishedInterfaceWasToSend) {
  Ip("link del v0");
  near_->Send(SampleFrame(1, 2, 0));
  EXPECT_TRUE(near_->Flush());
  EXPECT_EQ(near_->counters().down, 1U);
  EXPECT_FALSE(near_->HasBacklog());
}

TEST_F(PacketSocketTest, JoinsTheGroupAddressesOfCfm) {
  // The kernel lists the addresses that an interface takes in.
  EXPECT_EQ(
      std::system("test $(ip maddress show dev v0 | grep -c 01:80:c2:00:00:3[0-9a-f]) -eq 16"), 0);
}

TEST_F(PacketSocketTest, RefusesAnInterfaceThatIsNotThere) {
  EXPECT_THROW(PacketSocket(12345), std::system_error);
}

}  // namespace
}  // namespace cfm_mgr::net
