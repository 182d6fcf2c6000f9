// SPDX-License-Identifier: Apache-2.0
#include "net/packet/frame_queue.h"

#include "net/frame_codec.h"

namespace cfm_mgr::net {

bool FrameQueue::Push(const engine::Frame& frame) {
  if (frames_.size() == kMaxFrames) return false;
  const Kept kept{octets_.size(), EncodeFrame(frame, octets_)};
  if (kept.size == 0) return false;
  frames_.push_back(kept);
  return true;
}

void FrameQueue::Pop(std::size_t count) {
  if (count == frames_.size()) {
    frames_.clear();
    octets_.clear();
    return;
  }
  frames_.erase(frames_.begin(), frames_.begin() + static_cast<std::ptrdiff_t>(count));
  // An interface that is always behind never empties the queue.
  const std::size_t gone = frames_.front().begin;
  if (gone < octets_.size() - gone) return;
  octets_.erase(octets_.begin(), octets_.begin() + static_cast<std::ptrdiff_t>(gone));
  for (Kept& kept : frames_) kept.begin -= gone;
}

}  // namespace cfm_mgr::net
