// SPDX-License-Identifier: Apache-2.0
// What a CCM costs to send and to receive through a packet network and its engine, beside what the
// bare system calls cost for the same frames over the same veth pair. Times are those of the
// thread's processor, the kernel's part included; of all rounds, the median counts.
//
// usage: ccm_cost [ENDPOINTS [ROUNDS]]     1000 and 200 by default; as root
#include <arpa/inet.h>
#include <linux/if_ether.h>
#include <linux/if_packet.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

#include "net/frame_codec.h"
#include "net/packet/clock.h"
#include "net/packet/packet_filter.h"
#include "wire.h"

namespace {

using cfm_mgr::engine::Time;
using cfm_mgr::net::FileDescriptor;
using cfm_mgr::net::PacketNetwork;
using Octets = std::vector<std::uint8_t>;

constexpr std::size_t kBatch = 64;
constexpr std::size_t kFrameSize = 2048;
constexpr std::int32_t kOneSecond = 4;

// Processor time of this thread that a piece of work takes, in nanoseconds.
double Measure(const std::function<void()>& work) {
  const Time before = cfm_mgr::net::ReadClock(CLOCK_THREAD_CPUTIME_ID);
  work();
  return static_cast<double>((cfm_mgr::net::ReadClock(CLOCK_THREAD_CPUTIME_ID) - before).count());
}

/** A packet socket and nothing else: prepared messages out, prepared buffers in. */
class BareSocket {
 public:
  BareSocket(const char* interface, std::vector<Octets> frames)
      : socket_(socket(AF_PACKET, SOCK_RAW | SOCK_NONBLOCK, 0), "packet socket"),
        frames_(std::move(frames)) {
    auto filter = cfm_mgr::net::CfmFilter();
    const sock_fprog program = {static_cast<std::uint16_t>(filter.size()), filter.data()};
    setsockopt(socket_.get(), SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program);
    const int room = 64 << 20;
    setsockopt(socket_.get(), SOL_SOCKET, SO_RCVBUFFORCE, &room, sizeof room);
    sockaddr_ll address{};
    address.sll_family = AF_PACKET;
    address.sll_protocol = htons(ETH_P_ALL);
    address.sll_ifindex = static_cast<int>(cfm_bench::IndexOf(interface));
    if (bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      cfm_bench::Fail("cannot bind a packet socket");
    }
    for (Octets& frame : frames_) outgoing_.push_back({frame.data(), frame.size()});
    for (std::size_t i = 0; i < kBatch; ++i) incoming_[i] = {&buffers_[i * kFrameSize], kFrameSize};
  }

  void SendAll() {
    for (std::size_t first = 0; first < outgoing_.size(); first += kBatch) {
      std::array<mmsghdr, kBatch> messages{};
      const std::size_t count = std::min(kBatch, outgoing_.size() - first);
      for (std::size_t i = 0; i < count; ++i) {
        messages[i].msg_hdr.msg_iov = &outgoing_[first + i];
        messages[i].msg_hdr.msg_iovlen = 1;
      }
      const auto sent = sendmmsg(socket_.get(), messages.data(), static_cast<unsigned>(count), 0);
      if (sent != static_cast<int>(count)) cfm_bench::Fail("the bare socket cannot send");
    }
  }

  std::size_t ReceiveAll() {
    std::size_t total = 0;
    for (;;) {
      std::array<mmsghdr, kBatch> messages{};
      for (std::size_t i = 0; i < kBatch; ++i) {
        messages[i].msg_hdr.msg_iov = &incoming_[i];
        messages[i].msg_hdr.msg_iovlen = 1;
      }
      const int count = recvmmsg(socket_.get(), messages.data(), kBatch, MSG_DONTWAIT, nullptr);
      if (count <= 0) return total;
      total += static_cast<std::size_t>(count);
    }
  }

 private:
  FileDescriptor socket_;
  std::vector<Octets> frames_;
  std::vector<iovec> outgoing_;
  std::vector<std::uint8_t> buffers_ = std::vector<std::uint8_t>(kBatch * kFrameSize);
  std::array<iovec, kBatch> incoming_{};
};

// What the endpoints send in one interval, as it stands on the wire.
std::vector<Octets> Record(PacketNetwork& network, Time& now, std::uint32_t endpoints) {
  const FileDescriptor tap(socket(AF_PACKET, SOCK_RAW | SOCK_NONBLOCK, 0), "packet socket");
  const int room = 64 << 20;
  setsockopt(tap.get(), SOL_SOCKET, SO_RCVBUFFORCE, &room, sizeof room);
  sockaddr_ll address{};
  address.sll_family = AF_PACKET;
  address.sll_protocol = htons(ETH_P_ALL);
  address.sll_ifindex = static_cast<int>(cfm_bench::IndexOf(cfm_bench::kNear));
  bind(tap.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
  network.Advance(now += std::chrono::seconds(1));
  std::vector<Octets> frames;
  Octets buffer(kFrameSize);
  for (;;) {
    const auto size = recv(tap.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (size < 0) break;
    // What goes out is seen with its tags.
    if (cfm_mgr::net::DecodeFrame(buffer.data(), static_cast<std::size_t>(size))) {
      frames.emplace_back(buffer.begin(), buffer.begin() + size);
    }
  }
  if (frames.size() != endpoints) cfm_bench::Fail("not one CCM of each endpoint");
  return frames;
}

struct Costs {
  std::vector<double> sending;
  std::vector<double> receiving;
};

Costs MeasureNetworks(PacketNetwork& sender, PacketNetwork& receiver, Time& now,
                      std::uint32_t endpoints, int rounds) {
  Costs costs;
  const auto port = cfm_bench::IndexOf(cfm_bench::kFar);
  for (int round = 0; round < rounds; ++round) {
    now += std::chrono::seconds(1);
    const auto before = receiver.CountersOf(port)->received;
    costs.sending.push_back(Measure([&] { sender.Advance(now); }) / endpoints);
    costs.receiving.push_back(Measure([&] { receiver.Advance(now); }) / endpoints);
    if (receiver.CountersOf(port)->received - before != endpoints) {
      cfm_bench::Fail("not every CCM has come in");
    }
  }
  return costs;
}

Costs MeasureBare(const std::vector<Octets>& frames, int rounds) {
  Costs costs;
  BareSocket sender(cfm_bench::kNear, frames);
  BareSocket receiver(cfm_bench::kFar, {});
  const auto count = static_cast<double>(frames.size());
  for (int round = 0; round < rounds; ++round) {
    std::size_t received = 0;
    costs.sending.push_back(Measure([&] { sender.SendAll(); }) / count);
    sender.ReceiveAll();  // Sees its own frames go out.
    costs.receiving.push_back(Measure([&] { received = receiver.ReceiveAll(); }) / count);
    if (received != frames.size()) cfm_bench::Fail("not every bare frame has come in");
  }
  return costs;
}

void Print(const char* what, std::vector<double>& whole, std::vector<double>& bare) {
  const double through = cfm_bench::Percentile(whole, 0.5);
  const double alone = cfm_bench::Percentile(bare, 0.5);
  std::cout << std::left << std::setw(10) << what << std::right << std::fixed
            << std::setprecision(0) << std::setw(12) << through << std::setw(12) << alone
            << std::setprecision(2) << std::setw(8) << through / alone << "\n";
}

}  // namespace

int main(int argc, char** argv) {
  const auto endpoints = static_cast<std::uint32_t>(argc > 1 ? std::stoul(argv[1]) : 1000);
  const int rounds = argc > 2 ? std::stoi(argv[2]) : 200;
  cfm_bench::MakeWire();
  std::vector<Octets> frames;
  Costs whole;
  {
    cfm_bench::NoNotifications nobody;
    PacketNetwork sender({{cfm_bench::kNear}, nullptr}, nobody, 1);
    cfm_bench::EndpointGroup group{endpoints, kOneSecond, 4, 1, true};
    cfm_bench::Configure(sender, group, cfm_bench::kNear, {});
    Time now = cfm_mgr::net::MonotonicNow() + std::chrono::seconds(2);
    sender.Advance(now);
    frames = Record(sender, now, endpoints);
    PacketNetwork receiver({{cfm_bench::kFar}, nullptr}, nobody, 2);
    group.mep_id = 2;
    group.sends = false;
    cfm_bench::Configure(receiver, group, cfm_bench::kFar, {});
    receiver.Advance(now);
    whole = MeasureNetworks(sender, receiver, now, endpoints, rounds);
  }
  Costs bare = MeasureBare(frames, rounds);
  std::cout << endpoints << " CCMs of " << frames[0].size() << " octets a round, " << rounds
            << " rounds; nanoseconds for each CCM\n"
            << "               engine        bare   ratio\n";
  Print("send", whole.sending, bare.sending);
  Print("receive", whole.receiving, bare.receiving);
}
