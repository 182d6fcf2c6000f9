// SPDX-License-Identifier: Apache-2.0
#include "net/packet/netlink_socket.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>

namespace cfm_mgr::net {
namespace {

constexpr std::size_t kBufferSize = 65536;
// The kernel answers at once; a second is for one that is very busy.
constexpr int kPatienceMs = 1000;

}  // namespace

NetlinkSocket::NetlinkSocket(std::uint32_t groups)
    : socket_(socket(AF_NETLINK, SOCK_RAW | SOCK_NONBLOCK | SOCK_CLOEXEC, NETLINK_ROUTE),
              "cannot open a netlink socket"),
      buffer_(kBufferSize) {
  sockaddr_nl address{};
  address.nl_family = AF_NETLINK;
  address.nl_groups = groups;
  if (bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    ThrowErrno("cannot bind a netlink socket");
  }
}

NetlinkSocket::Result NetlinkSocket::Ask(NetlinkRequest& request, const Visit& visit) {
  const auto& octets = request.Finish(++sequence_);
  if (send(socket_.get(), octets.data(), octets.size(), 0) < 0) return Result::Failed;
  Progress progress;
  while (!progress.complete && !progress.failed) {
    ReadOnce(sequence_, visit, progress);
    if (progress.nothing_there && !WaitForMore()) return Result::Incomplete;
  }
  if (progress.failed) return Result::Failed;
  return progress.incomplete ? Result::Incomplete : Result::Done;
}

NetlinkSocket::Result NetlinkSocket::Read(const Visit& visit) {
  Progress progress;
  while (!progress.nothing_there) ReadOnce(0, visit, progress);
  return progress.incomplete ? Result::Incomplete : Result::Done;
}

void NetlinkSocket::ReadOnce(std::uint32_t sequence, const Visit& visit, Progress& progress) {
  sockaddr_nl sender{};
  socklen_t sender_size = sizeof sender;
  const ssize_t size =
      recvfrom(socket_.get(), buffer_.data(), buffer_.size(), MSG_DONTWAIT | MSG_TRUNC,
               reinterpret_cast<sockaddr*>(&sender), &sender_size);
  progress.nothing_there = size < 0 && errno == EAGAIN;
  const bool is_lost = size < 0 ? errno != EAGAIN && errno != EINTR
                                : static_cast<std::size_t>(size) > buffer_.size();
  progress.incomplete = progress.incomplete || is_lost;
  if (size < 0 || is_lost || sender.nl_pid != 0) return;  // Only the kernel is believed.
  auto rest = static_cast<std::size_t>(size);
  const std::uint8_t* at = buffer_.data();
  while (rest >= sizeof(nlmsghdr)) {
    const auto* message = reinterpret_cast<const nlmsghdr*>(at);
    if (message->nlmsg_len < sizeof(nlmsghdr) || message->nlmsg_len > rest) return;
    Take(*message, sequence, visit, progress);
    const std::size_t step = std::min<std::size_t>(NLMSG_ALIGN(message->nlmsg_len), rest);
    at += step;
    rest -= step;
  }
}

void NetlinkSocket::Take(const nlmsghdr& message, std::uint32_t sequence, const Visit& visit,
                         Progress& progress) {
  const bool is_answer = sequence != 0 && message.nlmsg_seq == sequence;
  const bool is_end = message.nlmsg_type == NLMSG_DONE;
  const bool is_error = message.nlmsg_type == NLMSG_ERROR;
  if (!is_end && !is_error) visit(message);
  if (!is_answer) return;
  progress.failed = progress.failed || is_error;
  if ((message.nlmsg_flags & NLM_F_DUMP_INTR) != 0) progress.incomplete = true;
  // What is not one of many is all there is.
  if (is_end || (message.nlmsg_flags & NLM_F_MULTI) == 0) progress.complete = true;
}

bool NetlinkSocket::WaitForMore() const {
  pollfd waiting{socket_.get(), POLLIN, 0};
  return poll(&waiting, 1, kPatienceMs) > 0;
}

}  // namespace cfm_mgr::net
