// SPDX-License-Identifier: Apache-2.0
#include "net/packet/packet_socket.h"

#include <arpa/inet.h>
#include <linux/if_ether.h>
#include <net/if.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

#include "net/packet/packet_filter.h"

namespace cfm_mgr::net {
namespace {

// CFM's group addresses, one for each level and kind: 01:80:c2:00:00:30 to 3f.
constexpr std::uint8_t kFirstGroup = 0x30;
constexpr std::uint8_t kLastGroup = 0x3f;

// In octets, of the first EtherType or TPID.
constexpr std::size_t kEtherTypeAt = 12;

constexpr std::size_t kSendBatch = 64;
// Room for as many frames while the process does not run.
constexpr int kReceiveBuffer = 8 << 20;

template <class Value>
void SetOption(int socket, int level, int option, const Value& value, const char* what) {
  if (setsockopt(socket, level, option, &value, sizeof value) != 0) ThrowErrno(what);
}

// What the kernel tells beside a frame.
struct Ancillary {
  tpacket_auxdata auxiliary{};
  engine::Time stamp{};
};

Ancillary ReadControl(const msghdr& message) {
  Ancillary ancillary;
  // The macro takes no header that cannot be changed.
  auto& header = const_cast<msghdr&>(message);
  for (cmsghdr* control = CMSG_FIRSTHDR(&header); control != nullptr;
       control = CMSG_NXTHDR(&header, control)) {
    if (control->cmsg_level == SOL_PACKET && control->cmsg_type == PACKET_AUXDATA) {
      std::memcpy(&ancillary.auxiliary, CMSG_DATA(control), sizeof ancillary.auxiliary);
    } else if (control->cmsg_level == SOL_SOCKET && control->cmsg_type == SCM_TIMESTAMPNS) {
      timespec stamp{};
      std::memcpy(&stamp, CMSG_DATA(control), sizeof stamp);
      ancillary.stamp = ToTime(stamp);
    }
  }
  return ancillary;
}

// Puts back the outermost tag, which the kernel takes out of a frame.
bool PutTagBack(const tpacket_auxdata& auxiliary, engine::Frame& frame) {
  if ((auxiliary.tp_status & TP_STATUS_VLAN_VALID) == 0) return true;
  const bool has_tpid = (auxiliary.tp_status & TP_STATUS_VLAN_TPID_VALID) != 0;
  const auto tag =
      DecodeTag(has_tpid ? auxiliary.tp_vlan_tpid : kCustomerTag, auxiliary.tp_vlan_tci);
  if (!tag || frame.tags.size() >= kMaxTags) return false;
  frame.tags.insert(frame.tags.begin(), *tag);
  return true;
}

}  // namespace

ReceiveBatch::ReceiveBatch() : octets_(kSize * kBufferSize) {
  for (std::size_t i = 0; i < kSize; ++i) {
    vectors_[i] = {octets_.data() + i * kBufferSize, kBufferSize};
    msghdr& header = messages_[i].msg_hdr;
    header.msg_name = &addresses_[i];
    header.msg_iov = &vectors_[i];
    header.msg_iovlen = 1;
    header.msg_control = controls_[i].octets.data();
  }
}

mmsghdr* ReceiveBatch::Prepare() {
  for (mmsghdr& message : messages_) {
    message.msg_hdr.msg_namelen = sizeof(sockaddr_ll);
    message.msg_hdr.msg_controllen = kControlSize;
  }
  return messages_.data();
}

// Of protocol 0, the socket takes in nothing before it is bound.
PacketSocket::PacketSocket(engine::PortId interface)
    : interface_(interface),
      socket_(socket(AF_PACKET, SOCK_RAW | SOCK_NONBLOCK | SOCK_CLOEXEC, 0),
              "cannot open a packet socket") {
  SetOptions();
  sockaddr_ll address{};
  address.sll_family = AF_PACKET;
  address.sll_protocol = htons(ETH_P_ALL);
  address.sll_ifindex = static_cast<int>(interface);
  if (bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    ThrowErrno("cannot bind a packet socket");
  }
  JoinGroups();
}

void PacketSocket::SetOptions() {
  const int on = 1;
  std::vector<sock_filter> filter = CfmFilter();
  const sock_fprog program = {static_cast<std::uint16_t>(filter.size()), filter.data()};
  SetOption(socket_.get(), SOL_SOCKET, SO_ATTACH_FILTER, program, "cannot filter frames");
  SetOption(socket_.get(), SOL_PACKET, PACKET_AUXDATA, on, "cannot receive VLAN tags");
  SetOption(socket_.get(), SOL_SOCKET, SO_TIMESTAMPNS, on, "cannot receive time stamps");
  // Without the right to have more, the kernel grants what is allowed to everybody. An old one lets
  // outgoing frames through, which are told apart.
  if (setsockopt(socket_.get(), SOL_SOCKET, SO_RCVBUFFORCE, &kReceiveBuffer,
                 sizeof kReceiveBuffer) != 0) {
    setsockopt(socket_.get(), SOL_SOCKET, SO_RCVBUF, &kReceiveBuffer, sizeof kReceiveBuffer);
  }
  setsockopt(socket_.get(), SOL_PACKET, PACKET_IGNORE_OUTGOING, &on, sizeof on);
}

void PacketSocket::JoinGroups() {
  packet_mreq request{};
  request.mr_ifindex = static_cast<int>(interface_);
  request.mr_type = PACKET_MR_MULTICAST;
  request.mr_alen = ETH_ALEN;
  for (std::uint8_t last = kFirstGroup; last <= kLastGroup; ++last) {
    const engine::Mac group = {0x01, 0x80, 0xc2, 0x00, 0x00, last};
    std::copy(group.begin(), group.end(), request.mr_address);
    SetOption(socket_.get(), SOL_PACKET, PACKET_ADD_MEMBERSHIP, request,
              "cannot join CFM's group addresses");
  }
}

bool PacketSocket::Receive(ReceiveBatch& batch, std::size_t limit,
                           std::vector<ReceivedFrame>& out) {
  for (std::size_t taken = 0; taken < limit;) {
    mmsghdr* messages = batch.Prepare();
    const int count = recvmmsg(socket_.get(), messages, ReceiveBatch::kSize, MSG_DONTWAIT, nullptr);
    if (count <= 0) return false;  // Nothing is there, or the interface went down.
    const StampClock clock;
    for (int i = 0; i < count; ++i) TakeIn(messages[i], clock, out);
    taken += static_cast<std::size_t>(count);
    if (static_cast<std::size_t>(count) < ReceiveBatch::kSize) return false;
  }
  return true;
}

void PacketSocket::TakeIn(const mmsghdr& message, const StampClock& clock,
                          std::vector<ReceivedFrame>& out) {
  const msghdr& header = message.msg_hdr;
  const auto* address = static_cast<const sockaddr_ll*>(header.msg_name);
  if (address->sll_pkttype == PACKET_OUTGOING) return;
  const Ancillary ancillary = ReadControl(header);
  std::optional<engine::Frame> frame;
  if ((header.msg_flags & MSG_TRUNC) == 0) {
    const auto* octets = static_cast<const std::uint8_t*>(header.msg_iov->iov_base);
    frame = DecodeFrame(octets, message.msg_len);
  }
  if (!frame || !PutTagBack(ancillary.auxiliary, *frame)) {
    ++counters_.refused;
    return;
  }
  ++counters_.received;
  const engine::Time at =
      ancillary.stamp.count() == 0 ? clock.now() : clock.ToMonotonic(ancillary.stamp);
  out.push_back({at, interface_, std::move(*frame)});
}

void PacketSocket::Send(const engine::Frame& frame) {
  const bool crowded = backlog_.size() == FrameQueue::kMaxFrames;
  if (!backlog_.Push(frame)) ++(crowded ? counters_.crowded : counters_.unsendable);
}

void PacketSocket::CountOverruns() {
  // The kernel begins anew with each answer.
  tpacket_stats statistics{};
  socklen_t size = sizeof statistics;
  if (getsockopt(socket_.get(), SOL_PACKET, PACKET_STATISTICS, &statistics, &size) == 0) {
    counters_.overrun += statistics.tp_drops;
  }
}

bool PacketSocket::Flush() {
  std::size_t first = 0;
  while (first < backlog_.size()) {
    const int count = SendSome(first);
    if (count > 0) {
      counters_.sent += static_cast<std::uint64_t>(count);
      first += static_cast<std::size_t>(count);
    } else if (errno == EAGAIN) {
      backlog_.Pop(first);
      return false;
    } else if (errno == ENETDOWN || errno == ENXIO || errno == ENODEV) {
      counters_.down += backlog_.size() - first;
      break;
    } else if (errno != EINTR) {  // This frame is not to be had through: ENOBUFS, EMSGSIZE.
      ++counters_.unsendable;
      ++first;
    }
  }
  backlog_.Pop(backlog_.size());
  return true;
}

int PacketSocket::SendSome(std::size_t first) {
  std::array<sockaddr_ll, kSendBatch> addresses{};
  std::array<iovec, kSendBatch> vectors{};
  std::array<mmsghdr, kSendBatch> messages{};
  const std::size_t count = std::min(kSendBatch, backlog_.size() - first);
  for (std::size_t i = 0; i < count; ++i) {
    std::uint8_t* octets = backlog_.OctetsOf(first + i);
    addresses[i].sll_family = AF_PACKET;
    addresses[i].sll_ifindex = static_cast<int>(interface_);
    std::memcpy(&addresses[i].sll_protocol, octets + kEtherTypeAt, sizeof(std::uint16_t));
    vectors[i] = {octets, backlog_.SizeOf(first + i)};
    messages[i].msg_hdr.msg_name = &addresses[i];
    messages[i].msg_hdr.msg_namelen = sizeof addresses[i];
    messages[i].msg_hdr.msg_iov = &vectors[i];
    messages[i].msg_hdr.msg_iovlen = 1;
  }
  return sendmmsg(socket_.get(), messages.data(), static_cast<unsigned int>(count), MSG_DONTWAIT);
}

}  // namespace cfm_mgr::net
