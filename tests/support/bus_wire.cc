// SPDX-License-Identifier: Apache-2.0
#include "bus_wire.h"

#include <linux/sockios.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace cfm_test {
namespace {

constexpr std::size_t kMaxBuffer = std::size_t{64} << 10U;
constexpr std::size_t kReadSize = std::size_t{8} << 10U;
constexpr std::string_view kPathPrefix = "unix:path=";

UniqueFd NewSocket() {
  UniqueFd fd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (fd.get() < 0) {
    throw std::system_error(errno, std::generic_category(), "socket");
  }
  return fd;
}

sockaddr_un AddressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) {
    throw std::runtime_error("too long for a socket: " + path);
  }
  std::memcpy(address.sun_path, path.data(), path.size());
  return address;
}

const sockaddr* Generic(const sockaddr_un& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

/** How a stream goes on: with a message, or with a line by which the two sides meet. */
struct Unit {
  std::size_t size = 0;  // 0: not all that tells it has come yet
  bool is_message = false;
};

Unit FirstUnit(const std::string& stream) {
  constexpr std::size_t kFixedHeader = 16;
  constexpr std::size_t kBodySizeAt = 4;
  constexpr std::size_t kFieldsSizeAt = 12;
  constexpr std::uint32_t kAlignment = 8;
  if (stream.empty()) {
    return {};
  }
  // Lines of the introduction are in upper case, but for the byte 0 that comes first.
  if (stream.front() != 'l') {
    const std::size_t end = stream.find('\n');
    return {end == std::string::npos ? 0 : end + 1, false};
  }
  if (stream.size() < kFixedHeader) {
    return {};
  }
  std::uint32_t body = 0;
  std::uint32_t fields = 0;
  std::memcpy(&body, stream.data() + kBodySizeAt, sizeof body);
  std::memcpy(&fields, stream.data() + kFieldsSizeAt, sizeof fields);
  return {kFixedHeader + (fields + kAlignment - 1) / kAlignment * kAlignment + body, true};
}

}  // namespace

BusWire::BusWire(const std::string& bus)
    : address_(std::string(kPathPrefix) + directory_.File("wire")),
      listener_(NewSocket()),
      wake_up_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (bus.compare(0, kPathPrefix.size(), kPathPrefix) != 0) {
    throw std::runtime_error("no path of a socket: " + bus);
  }
  const std::string path = bus.substr(kPathPrefix.size());
  bus_path_ = path.substr(0, path.find(','));
  const sockaddr_un own = AddressOf(directory_.File("wire"));
  if (bind(listener_.get(), Generic(own), sizeof own) != 0 ||
      listen(listener_.get(), SOMAXCONN) != 0) {
    throw std::system_error(errno, std::generic_category(), "listen");
  }
  thread_ = std::thread([this] { Run(); });
}

BusWire::~BusWire() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    is_stopping_ = true;
  }
  Wake();
  thread_.join();
}

std::uint64_t BusWire::Passed(Direction direction) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return passed_.at(static_cast<std::size_t>(direction));
}

void BusWire::HoldAfter(Direction direction, std::uint64_t messages) {
  const std::lock_guard<std::mutex> lock(mutex_);
  hold_ = Hold{direction, messages};
}

bool BusWire::IsHeld() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return Holds() && IsAllRead();
}

void BusWire::Cut() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    connections_.clear();
    hold_.reset();
  }
  Wake();
}

void BusWire::Slow(Pace pace) {
  const std::lock_guard<std::mutex> lock(mutex_);
  pace_ = pace;
}

void BusWire::Run() {
  while (true) {
    Wait();
    const std::lock_guard<std::mutex> lock(mutex_);
    if (is_stopping_) {
      return;
    }
    Accept();
    for (Connection& connection : connections_) {
      Serve(connection);
    }
    const auto is_over = [this](const Flow& flow) { return flow.ended && !IsPassable(flow); };
    connections_.remove_if([&](const Connection& connection) {
      return !Holds() && (is_over(connection.to_bus) || is_over(connection.from_bus));
    });
  }
}

void BusWire::Wait() {
  std::vector<pollfd> descriptors = {{listener_.get(), POLLIN, 0}, {wake_up_.get(), POLLIN, 0}};
  const Clock::time_point now = Clock::now();
  auto due = Clock::time_point::max();
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const Connection& c : connections_) {
      const auto add = [&](const UniqueFd& fd, const Flow& in, const Flow& out) {
        const bool may_pass = IsPassable(out);
        if (may_pass && out.not_before > now) {
          due = std::min(due, out.not_before);
        }
        const bool may_read = !Holds() && in.buffer.size() < kMaxBuffer;
        const bool may_write = may_pass && out.not_before <= now;
        const auto events = static_cast<short>((may_read ? POLLIN : 0) | (may_write ? POLLOUT : 0));
        // One that hung up would be reported again and again.
        descriptors.push_back({events == 0 || in.ended ? -1 : fd.get(), events, 0});
      };
      add(c.process, c.to_bus, c.from_bus);
      add(c.bus, c.from_bus, c.to_bus);
    }
  }
  const auto left = std::chrono::duration_cast<std::chrono::nanoseconds>(due - now);
  constexpr std::int64_t kSecond = 1'000'000'000;
  const timespec timeout{left.count() / kSecond, left.count() % kSecond};
  ppoll(descriptors.data(), descriptors.size(),
        due == Clock::time_point::max() ? nullptr : &timeout, nullptr);
  std::uint64_t ignored = 0;
  static_cast<void>(read(wake_up_.get(), &ignored, sizeof ignored) >= 0);
}

bool BusWire::IsPassable(const Flow& flow) const {
  return !Holds() && !flow.buffer.empty() &&
         (flow.unit_left > 0 || FirstUnit(flow.buffer).size > 0);
}

bool BusWire::Holds() const {
  return hold_ && passed_.at(static_cast<std::size_t>(hold_->direction)) >= hold_->messages;
}

bool BusWire::IsAllRead() const {
  const auto unread = [](const UniqueFd& fd) {
    int bytes = 0;
    return ioctl(fd.get(), SIOCOUTQ, &bytes) == 0 && bytes > 0;
  };
  return std::none_of(connections_.begin(), connections_.end(), [&](const Connection& connection) {
    return unread(connection.process) || unread(connection.bus);
  });
}

void BusWire::Accept() {
  while (true) {
    UniqueFd process(accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (process.get() < 0) {
      return;
    }
    UniqueFd bus = NewSocket();
    const sockaddr_un address = AddressOf(bus_path_);
    // Without a bus the process is hung up on.
    if (connect(bus.get(), Generic(address), sizeof address) == 0) {
      connections_.push_back({std::move(process),
                              std::move(bus),
                              {Direction::kToBus, {}, 0, false, false, 0, {}},
                              {Direction::kFromBus, {}, 0, false, false, 0, {}}});
    }
  }
}

void BusWire::Serve(Connection& connection) {
  Read(connection.process, connection.to_bus);
  Write(connection.bus, connection.to_bus);
  Read(connection.bus, connection.from_bus);
  Write(connection.process, connection.from_bus);
}

void BusWire::Read(const UniqueFd& source, Flow& flow) const {
  std::array<char, kReadSize> chunk{};
  while (!Holds() && !flow.ended && flow.buffer.size() < kMaxBuffer) {
    const ssize_t count = recv(source.get(), chunk.data(), chunk.size(), 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
      return;
    }
    flow.ended = count <= 0;
    flow.buffer.append(chunk.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  }
}

void BusWire::Write(const UniqueFd& destination, Flow& flow) {
  while (IsPassable(flow) && flow.not_before <= Clock::now()) {
    if (flow.unit_left == 0) {
      const Unit unit = FirstUnit(flow.buffer);
      flow.unit_left = unit.size;
      flow.is_message = unit.is_message;
    }
    if (pace_ && flow.budget == 0) {
      flow.budget = pace_->bytes;
    }
    const std::size_t most = pace_ ? flow.budget : flow.unit_left;
    const std::size_t size = std::min({flow.unit_left, flow.buffer.size(), most});
    const ssize_t count = send(destination.get(), flow.buffer.data(), size, MSG_NOSIGNAL);
    if (count < 0 && errno != EAGAIN && errno != EINTR) {
      flow.buffer.clear();  // Nobody is there to read it.
      return;
    }
    if (count <= 0) {
      return;
    }
    NotePassed(flow, static_cast<std::size_t>(count));
  }
}

void BusWire::NotePassed(Flow& flow, std::size_t bytes) {
  flow.buffer.erase(0, bytes);
  flow.unit_left -= bytes;
  if (flow.unit_left == 0 && flow.is_message) {
    ++passed_.at(static_cast<std::size_t>(flow.direction));
  }
  if (pace_) {
    flow.budget -= bytes;
    flow.not_before = flow.budget > 0 ? Clock::now() : Clock::now() + pace_->pause;
  }
}

void BusWire::Wake() const {
  const std::uint64_t one = 1;
  static_cast<void>(write(wake_up_.get(), &one, sizeof one) >= 0);
}

}  // namespace cfm_test
