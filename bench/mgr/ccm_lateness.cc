// SPDX-License-Identifier: Apache-2.0
// How late CCMs leave: 4,000 endpoints at 1 s and 500 at 10 ms on one interface and one thread,
// each of which hears a remote endpoint at the same interval too.
//
// Times are the kernel's at the other end of a veth pair. Each endpoint's CCMs are held against the
// strict period that runs from its punctual ones, and a CCM that never comes is counted.
//
// usage: ccm_lateness [SECONDS [ENDPOINTS_AT_1S [ENDPOINTS_AT_10MS [PAUSE_US]]]]     as root
//   PAUSE_US   the loop sleeps at least so long, and does what has come up meanwhile in one go
#include <poll.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <iomanip>
#include <iostream>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "net/packet/packet_socket.h"
#include "wire.h"

namespace {

using cfm_mgr::engine::Frame;
using cfm_mgr::engine::Time;
using cfm_mgr::net::MonotonicNow;
using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kSlowLevel = 4;
constexpr std::uint32_t kFastLevel = 5;

// Its last octet in a CCM.
constexpr std::size_t kMepIdAt = 9;

/** When the CCMs of each endpoint came, by level and VID. */
using Log = std::map<std::pair<unsigned, unsigned>, std::vector<Time>>;

/** The other end: it keeps when each CCM comes, and answers it with one of the remote endpoint. */
class Peer {
 public:
  Peer() : socket_(cfm_bench::IndexOf(cfm_bench::kFar)) {}

  void Run(const std::atomic<bool>& stop) {
    std::vector<cfm_mgr::net::ReceivedFrame> frames;
    while (!stop) {
      pollfd waiting{socket_.descriptor(), POLLIN, 0};
      poll(&waiting, 1, 10);
      frames.clear();
      socket_.Receive(batch_, 4096, frames);
      for (auto& [at, port, frame] : frames) {
        if (records) log[{frame.pdu[0] >> 5U, frame.tags[0].vid}].push_back(at);
        Answer(frame);
      }
      socket_.Flush();
    }
  }

  std::atomic<bool> records = false;
  Log log;

 private:
  void Answer(Frame& frame) {
    frame.source = {0x02, 0, 0, 0, 0, 0x99};
    frame.pdu[kMepIdAt] = 2;
    socket_.Send(frame);
  }

  cfm_mgr::net::PacketSocket socket_;
  cfm_mgr::net::ReceiveBatch batch_;
};

// A server's loop.
void Serve(cfm_mgr::net::PacketNetwork& network, Time end, Time pause) {
  for (Time now = MonotonicNow(); now < end; now = MonotonicNow()) {
    network.Advance(now);
    if (pause.count() > 0) std::this_thread::sleep_until(Clock::time_point(now + pause));
    const Time next = std::min(network.NextDeadline().value_or(end), end);
    const Time wait = std::max(Time{}, next - MonotonicNow());
    const timespec limit = {static_cast<time_t>(wait / std::chrono::seconds(1)),
                            static_cast<long>((wait % std::chrono::seconds(1)).count())};
    pollfd waiting{network.Descriptor(), POLLIN, 0};
    ppoll(&waiting, 1, &limit, nullptr);
  }
}

// How much later than in the strict period each CCM of one endpoint came, and how many periods went
// by without one.
std::uint64_t Judge(const std::vector<Time>& arrivals, Time interval,
                    std::vector<double>& lateness) {
  const auto periods = [interval](Time time) { return (time + interval / 2) / interval; };
  const auto all = periods(arrivals.back() - arrivals.front()) + 1;
  const bool complete = all <= static_cast<std::int64_t>(arrivals.size());
  std::vector<Time> shifts;
  std::int64_t period = 0;
  for (std::size_t i = 0; i < arrivals.size(); ++i) {
    // Where some were left out, the time tells which ones.
    const Time since = arrivals[i] - arrivals[i == 0 ? 0 : i - 1];
    if (i > 0) period += complete ? 1 : std::max<std::int64_t>(1, periods(since));
    shifts.push_back(arrivals[i] - period * interval);
  }
  const Time base = *std::min_element(shifts.begin(), shifts.end());
  for (const Time shift : shifts) {
    lateness.push_back(static_cast<double>((shift - base).count()) / 1000);
  }
  return complete ? 0 : static_cast<std::uint64_t>(all) - arrivals.size();
}

void Print(const std::string& what, const Log& log, unsigned level, Time interval) {
  std::vector<double> lateness;
  std::uint64_t missing = 0;
  for (const auto& [endpoint, arrivals] : log) {
    if (endpoint.first == level) missing += Judge(arrivals, interval, lateness);
  }
  std::cout << std::left << std::setw(16) << what << std::right << std::setw(10) << lateness.size()
            << std::setw(9) << missing << std::fixed << std::setprecision(0);
  for (const double share : {0.5, 0.9, 0.99, 0.999, 1.0}) {
    std::cout << std::setw(9) << cfm_bench::Percentile(lateness, share);
  }
  std::cout << "\n";
}

}  // namespace

int main(int argc, char** argv) {
  const auto argument = [&](int place, unsigned long otherwise) {
    return static_cast<std::uint32_t>(argc > place ? std::stoul(argv[place]) : otherwise);
  };
  const std::chrono::seconds duration(argument(1, 20));
  const cfm_bench::EndpointGroup slow{argument(2, 4000), 4, kSlowLevel, 1, true};
  const cfm_bench::EndpointGroup fast{argument(3, 500), 2, kFastLevel, 1, true};
  const std::chrono::microseconds pause(argument(4, 0));
  cfm_bench::MakeWire();
  cfm_bench::NoNotifications nobody;
  cfm_mgr::net::PacketNetwork network({{cfm_bench::kNear}, nullptr}, nobody, 1);
  Peer peer;
  std::atomic<bool> stop = false;
  std::thread other_end([&] { peer.Run(stop); });
  // Endpoints are not configured all at the same moment, nor all in their own.
  cfm_bench::Configure(network, slow, cfm_bench::kNear, std::chrono::seconds(1));
  cfm_bench::Configure(network, fast, cfm_bench::kNear, std::chrono::milliseconds(10));
  Serve(network, MonotonicNow() + std::chrono::seconds(3), pause);
  peer.records = true;
  const Time cpu_before = cfm_mgr::net::ReadClock(CLOCK_THREAD_CPUTIME_ID);
  Serve(network, MonotonicNow() + duration, pause);
  const Time cpu = cfm_mgr::net::ReadClock(CLOCK_THREAD_CPUTIME_ID) - cpu_before;
  stop = true;
  other_end.join();
  std::cout << slow.count << " endpoints at 1 s and " << fast.count << " at 10 ms for "
            << duration.count() << " s; the thread took "
            << cpu.count() * 100 / Time(duration).count() << " % of a processor\n"
            << "lateness in us      CCMs  missing      50%      90%      99%    99.9%      max\n";
  Print("at 1 s", peer.log, kSlowLevel, std::chrono::seconds(1));
  Print("at 10 ms", peer.log, kFastLevel, std::chrono::milliseconds(10));
}
