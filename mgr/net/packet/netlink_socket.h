/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_PACKET_NETLINK_SOCKET_H
#define CFM_MGR_NET_PACKET_NETLINK_SOCKET_H

#include <linux/netlink.h>

#include <cstdint>
#include <functional>
#include <vector>

#include "net/packet/attributes.h"
#include "net/packet/file_descriptor.h"

namespace cfm_mgr::net {

/** A socket to the kernel's routing tables. */
class NetlinkSocket {
 public:
  using Visit = std::function<void(const nlmsghdr& message)>;

  enum class Result : std::uint8_t {
    Done,
    Incomplete,  ///< Messages were lost, or what was asked for changed meanwhile: ask again.
    Failed,      ///< The kernel refused the request.
  };

  /** @param groups Mask of the groups to hear. @throws std::system_error */
  explicit NetlinkSocket(std::uint32_t groups);

  int descriptor() const { return socket_.get(); }

  /** Sends a request and visits what comes back until the answer is complete. */
  Result Ask(NetlinkRequest& request, const Visit& visit);

  /** Visits what has come in by itself. */
  Result Read(const Visit& visit);

 private:
  /** What has been read so far of an answer, or of what comes in by itself. */
  struct Progress {
    bool nothing_there = false;
    bool complete = false;
    bool incomplete = false;
    bool failed = false;
  };

  void ReadOnce(std::uint32_t sequence, const Visit& visit, Progress& progress);
  static void Take(const nlmsghdr& message, std::uint32_t sequence, const Visit& visit,
                   Progress& progress);
  bool WaitForMore() const;

  FileDescriptor socket_;
  std::uint32_t sequence_ = 0;
  std::vector<std::uint8_t> buffer_;
};

}  // namespace cfm_mgr::net

#endif
