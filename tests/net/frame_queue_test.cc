// SPDX-License-Identifier: Apache-2.0
#include "net/packet/frame_queue.h"

#include <gtest/gtest.h>

#include <vector>

#include "net/frame_codec.h"

namespace cfm_mgr::net {
namespace {

engine::Frame FrameOf(std::uint8_t mark, std::size_t pdu_size = 100) {
  engine::Frame frame;
  frame.destination = {0x01, 0x80, 0xc2, 0, 0, 0x30};
  frame.source = {0x02, 0, 0, 0, 0, mark};
  frame.pdu.assign(pdu_size, mark);
  return frame;
}

std::vector<std::uint8_t> OctetsOf(FrameQueue& queue, std::size_t index) {
  const std::uint8_t* const octets = queue.OctetsOf(index);
  return {octets, octets + queue.SizeOf(index)};
}

std::vector<std::uint8_t> Encoded(const engine::Frame& frame) {
  std::vector<std::uint8_t> octets;
  EncodeFrame(frame, octets);
  return octets;
}

TEST(FrameQueue, GivesFramesInTheOrderInWhichTheyCame) {
  FrameQueue queue;
  for (std::uint8_t mark = 1; mark <= 5; ++mark) EXPECT_TRUE(queue.Push(FrameOf(mark, 40 * mark)));
  queue.Pop(2);
  ASSERT_EQ(queue.size(), 3U);
  EXPECT_EQ(OctetsOf(queue, 0), Encoded(FrameOf(3, 120)));
  EXPECT_EQ(OctetsOf(queue, 2), Encoded(FrameOf(5, 200)));
  queue.Pop(3);
  EXPECT_TRUE(queue.empty());
  EXPECT_EQ(queue.held(), 0U);
}

TEST(FrameQueue, TakesNeitherWhatIsNoFrameNorTooMany) {
  FrameQueue queue;
  EXPECT_FALSE(queue.Push(FrameOf(1, 0)));
  EXPECT_EQ(queue.held(), 0U);
  for (std::size_t i = 0; i < FrameQueue::kMaxFrames; ++i) ASSERT_TRUE(queue.Push(FrameOf(1)));
  EXPECT_FALSE(queue.Push(FrameOf(1)));
  queue.Pop(1);
  EXPECT_TRUE(queue.Push(FrameOf(2)));
}

TEST(FrameQueue, DoesNotGrowWhenItNeverEmpties) {
  FrameQueue queue;
  const std::size_t size = Encoded(FrameOf(1)).size();
  for (std::uint8_t mark = 0; mark < 10; ++mark) queue.Push(FrameOf(mark));
  for (std::size_t round = 0; round < 1000; ++round) {
    queue.Push(FrameOf(static_cast<std::uint8_t>(round + 10)));
    queue.Pop(1);
    ASSERT_LE(queue.held(), 2 * queue.size() * size);
    ASSERT_EQ(OctetsOf(queue, 9), Encoded(FrameOf(static_cast<std::uint8_t>(round + 10))));
  }
}

}  // namespace
}  // namespace cfm_mgr::net
