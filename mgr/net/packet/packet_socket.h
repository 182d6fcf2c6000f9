/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * CFM frames to and from one Linux interface, by a packet socket.
 */
#ifndef CFM_MGR_NET_PACKET_PACKET_SOCKET_H
#define CFM_MGR_NET_PACKET_PACKET_SOCKET_H

#include <linux/if_packet.h>
#include <sys/socket.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/frame.h"
#include "engine/surroundings.h"
#include "engine/time.h"
#include "net/frame_codec.h"
#include "net/packet/clock.h"
#include "net/packet/file_descriptor.h"
#include "net/packet/frame_queue.h"

namespace cfm_mgr::net {

struct ReceivedFrame {
  engine::Time at{};  ///< When the kernel took it in, by the monotonic clock.
  engine::PortId port = 0;
  engine::Frame frame;
};

/** What became of the frames of a port. */
struct PortCounters {
  std::uint64_t received = 0;
  std::uint64_t refused = 0;  ///< Came in, but are no CFM frame with at most two tags.
  std::uint64_t overrun = 0;  ///< Came in when there was no room for them.
  std::uint64_t sent = 0;
  /** @name Not sent
   * @{ */
  std::uint64_t down = 0;     ///< The interface was down or gone.
  std::uint64_t crowded = 0;  ///< Too many waited.
  std::uint64_t unsendable =
      0;  ///< Too long for the interface, or otherwise not to be had through.
  /** @} */
};

/** Room for what one system call receives; all sockets of a thread share one. */
class ReceiveBatch {
 public:
  static constexpr std::size_t kSize = 64;

  ReceiveBatch();
  ReceiveBatch(const ReceiveBatch&) = delete;
  ReceiveBatch& operator=(const ReceiveBatch&) = delete;
  ~ReceiveBatch() = default;

 private:
  friend class PacketSocket;

  static constexpr std::size_t kBufferSize = kMaxFrameSize;
  static constexpr std::size_t kControlSize =
      CMSG_SPACE(sizeof(tpacket_auxdata)) + CMSG_SPACE(sizeof(timespec));
  struct alignas(cmsghdr) Control {
    std::array<std::uint8_t, kControlSize> octets;
  };

  /** Makes all messages ready to be filled. */
  mmsghdr* Prepare();

  std::vector<std::uint8_t> octets_;
  std::array<sockaddr_ll, kSize> addresses_{};
  std::array<Control, kSize> controls_{};
  std::array<iovec, kSize> vectors_{};
  std::array<mmsghdr, kSize> messages_{};
};

/**
 * A non-blocking packet socket that is bound to one interface.
 *
 * It sees the CFM frames of all VLANs that come in, not those that go out, and joins CFM's group
 * addresses. It stays as it is while the interface is down, and is of no more use when the
 * interface is gone.
 */
class PacketSocket {
 public:
  /**
   * @throws std::system_error with EPERM when the process may not use packet sockets, with ENODEV
   *     or ENXIO when there is no such interface
   */
  explicit PacketSocket(engine::PortId interface);

  int descriptor() const { return socket_.get(); }

  /**
   * Appends what has come in to @p out: less than @p limit frames and one batch more.
   *
   * @return Whether there may be more.
   */
  bool Receive(ReceiveBatch& batch, std::size_t limit, std::vector<ReceivedFrame>& out);

  /** Keeps a frame for the next Flush(). One that cannot be sent is counted and dropped. */
  void Send(const engine::Frame& frame);

  /**
   * Sends what was kept, with as few system calls as there can be.
   *
   * @return Whether all is gone. Otherwise the socket is full for now, and becomes writable again.
   */
  bool Flush();

  bool HasBacklog() const { return !backlog_.empty(); }
  /** Those of Receive(), Send() and Flush(), and of the kernel up to the last CountOverruns(). */
  const PortCounters& counters() const { return counters_; }
  /** Asks the kernel what there was no room for. */
  void CountOverruns();

 private:
  void SetOptions();
  void JoinGroups();
  void TakeIn(const mmsghdr& message, const StampClock& clock, std::vector<ReceivedFrame>& out);
  int SendSome(std::size_t first);

  engine::PortId interface_;
  FileDescriptor socket_;
  FrameQueue backlog_;
  PortCounters counters_;
};

}  // namespace cfm_mgr::net

#endif
