/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_PACKET_FRAME_QUEUE_H
#define CFM_MGR_NET_PACKET_FRAME_QUEUE_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/frame.h"

namespace cfm_mgr::net {

/** Encoded frames that wait to be sent, in one block of memory. */
class FrameQueue {
 public:
  /** More than four thousand endpoints at a time have to say. */
  static constexpr std::size_t kMaxFrames = 16384;

  /** False when the frame cannot be encoded, or too many wait already. */
  bool Push(const engine::Frame& frame);
  /** Takes the first ones out; @p count is at most size(). */
  void Pop(std::size_t count);

  bool empty() const { return frames_.empty(); }
  std::size_t size() const { return frames_.size(); }
  /** @name Of the frame at @p index, until the next Push() or Pop()
   * @{ */
  std::uint8_t* OctetsOf(std::size_t index) { return octets_.data() + frames_[index].begin; }
  std::size_t SizeOf(std::size_t index) const { return frames_[index].size; }
  /** @} */

  /** Octets held: less than twice those of the frames that wait. */
  std::size_t held() const { return octets_.size(); }

 private:
  struct Kept {
    std::size_t begin = 0;
    std::size_t size = 0;
  };

  std::vector<std::uint8_t> octets_;
  std::vector<Kept> frames_;
};

}  // namespace cfm_mgr::net

#endif
