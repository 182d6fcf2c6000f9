// SPDX-License-Identifier: Apache-2.0
#include "handle.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <thread>
#include <utility>

#include "names.h"
#include "registry.h"

using devhost::ErrorText;
using devhost::Incoming;
using devhost::MakeBusCall;
using devhost::MessagePtr;

namespace {

/** How many messages one call delivers, so that the caller's event loop gets its turn. */
constexpr int kMaxDeliveries = 512;

/** So much at once, in bytes, may have been the bus's limit for one process. */
constexpr std::size_t kLargeBacklog = std::size_t{64} << 10U;

/** How long closing waits for the name to be free. */
constexpr devhost::milliseconds kLeaveTimeout{1'000};

/** The bus's answer to a request for a name, as D-Bus numbers it. */
constexpr std::uint32_t kNameFlagDoNotQueue = 4;
constexpr std::uint32_t kNameIsOurs = 1;

/** The stop status is written in signal handlers. */
static_assert(std::atomic<int>::is_always_lock_free);

class ScopedFlag {
 public:
  explicit ScopedFlag(bool& flag) : flag_(flag) { flag_ = true; }
  ~ScopedFlag() { flag_ = false; }
  ScopedFlag(const ScopedFlag&) = delete;
  ScopedFlag& operator=(const ScopedFlag&) = delete;

 private:
  bool& flag_;
};

}  // namespace

vorx::vorx(devhost::Options options)
    : options_(std::move(options)),
      bus_(peers_, diagnostics_),
      signals_(this, bus_, peers_, diagnostics_),
      events_(this, bus_, diagnostics_),
      presence_(this, bus_, diagnostics_) {
  diagnostics_.SetProcess(options_.name);
}

vorx::~vorx() {
  devhost::Registry::Instance().RemoveHandle(this);
  if (lost_ != lost_and_said_) {
    diagnostics_.Say(std::to_string(lost_) + " messages lost in all");
  }
  if (bus_.Drain()) {
    LeaveName();
  }
  if (wake_up_fd_ >= 0) {
    close(wake_up_fd_);
  }
}

int vorx::Open() {
  wake_up_fd_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (wake_up_fd_ < 0) {
    const int error = -errno;
    last_error_ = "cannot make an event descriptor: " + ErrorText(error);
    return error;
  }
  int result = JoinBus();
  if (result >= 0) {
    result = WatchPresence();
  }
  if (result >= 0) {
    result = TakeName();
  }
  if (result >= 0) {
    devhost::Registry::Instance().AddHandle(
        this, options_.name + " (vorx " + std::to_string(self_) + ")");
  }
  return result;
}

int vorx::JoinBus() {
  const int result = bus_.Open(options_.bus_address, options_.limits);
  if (result < 0) {
    last_error_ = "cannot join the bus at '" + options_.bus_address + "': " + ErrorText(result);
    return result;
  }
  self_ = devhost::PidOf(bus_.UniqueName());
  if (self_ == 0) {
    last_error_ = "the bus gave a connection name that is no number: '" + bus_.UniqueName() + "'";
    return -EPROTO;
  }
  peers_.Seen(self_);
  return 0;
}

int vorx::WatchPresence() {
  MessagePtr reply;
  const int result = bus_.CallAndWait(
      MakeBusCall(bus_.raw(), "AddMatch", devhost::PresenceMatchRule().c_str()), reply);
  if (result < 0 || sd_bus_message_get_error(reply.get()) != nullptr) {
    last_error_ = "the bus does not tell who joins and leaves";
    return result < 0 ? result : -EPROTO;
  }
  return 0;
}

// The bus may take a moment to notice that an earlier process of the name was killed, the more so
// while it still has messages for it.
int vorx::TakeName() {
  constexpr auto patience = std::chrono::seconds(3);
  constexpr auto pause = std::chrono::milliseconds(10);
  const auto deadline = devhost::Clock::now() + patience;
  int result = RequestName();
  while (result == -EEXIST && devhost::Clock::now() < deadline) {
    std::this_thread::sleep_for(pause);
    result = RequestName();
  }
  return result;
}

int vorx::RequestName() {
  const std::string name = devhost::BusNameOf(options_.name);
  MessagePtr call = MakeBusCall(bus_.raw(), "RequestName", name.c_str());
  MessagePtr reply;
  int result =
      call == nullptr ? -ENOMEM : sd_bus_message_append(call.get(), "u", kNameFlagDoNotQueue);
  if (result >= 0) {
    result = bus_.CallAndWait(std::move(call), reply);
  }
  std::uint32_t answer = 0;
  if (result < 0 || sd_bus_message_get_error(reply.get()) != nullptr ||
      sd_bus_message_read(reply.get(), "u", &answer) <= 0) {
    const bool is_refused =
        reply != nullptr && sd_bus_error_has_name(sd_bus_message_get_error(reply.get()),
                                                  SD_BUS_ERROR_ACCESS_DENIED) != 0;
    last_error_ = "the bus does not give out the name " + name +
                  (is_refused ? ": its policy does not allow this user to have it" : "");
    return result < 0 ? result : -EPERM;
  }
  if (answer != kNameIsOurs) {
    last_error_ = "another process is called '" + options_.name + "' already";
    return -EEXIST;
  }
  return 0;
}

/** Once this has returned, the next process of the name finds it free. */
void vorx::LeaveName() {
  const std::string name = devhost::BusNameOf(options_.name);
  MessagePtr reply;
  bus_.CallAndWait(MakeBusCall(bus_.raw(), "ReleaseName", name.c_str()), reply,
                   std::min(options_.limits.timeout, kLeaveTimeout));
}

int vorx::Dispatch() {
  if (is_dispatching_) {
    return Fail(-EBUSY, "vorx_dispatch called from inside a callback");
  }
  return Deliver(false);
}

int vorx::Deliver(bool until_stopped) {
  const ScopedFlag dispatching(is_dispatching_);
  presence_.AskAgain();
  Incoming incoming;
  int left = kMaxDeliveries;
  for (; left > 0 && bus_.Next(incoming); --left) {
    Handle(incoming);
    if (until_stopped && stop_status_ >= 0) {
      return 0;
    }
  }
  if (left > 0) {
    NoteIdle();
  }
  if (bus_.IsConnected() || bus_.HasIncoming()) {
    return 0;
  }
  if (!std::exchange(is_loss_reported_, true)) {
    last_error_ = "the bus is gone";
    presence_.LoseAll();
  }
  return -ENOTCONN;
}

/** While much was waiting for this process, the bus may have dropped who came and who left. */
void vorx::NoteIdle() {
  if (std::exchange(backlog_, 0) >= kLargeBacklog) {
    presence_.Refresh();
  }
}

void vorx::Handle(Incoming& incoming) {
  if (const auto* const packet = std::get_if<devhost::Packet>(&incoming.content)) {
    HandlePacket(*packet);
  } else if (const auto* const change = std::get_if<devhost::OwnerChange>(&incoming.content)) {
    presence_.Deliver(*change);
    events_.Forget(change->from);
  } else {
    std::get<devhost::Reply>(incoming.content).handler(incoming.message.get());
  }
}

void vorx::HandlePacket(const devhost::Packet& packet) {
  backlog_ += packet.payload.size + devhost::kMessageOverhead;
  const bool is_signal = packet.kind == devhost::Packet::Kind::kSignal;
  const std::uint64_t lost = is_signal ? signals_.CountLost(packet) : events_.CountLost(packet);
  if (lost > 0) {
    ReportLost(packet, lost);
    // The bus may have dropped its own messages as well.
    presence_.Refresh();
  }
  if (is_signal) {
    signals_.Deliver(packet);
  } else {
    events_.Deliver(packet);
  }
}

void vorx::ReportLost(const devhost::Packet& next, std::uint64_t lost) {
  lost_ += lost;
  const std::string what = next.kind == devhost::Packet::Kind::kSignal
                               ? std::string("signals")
                               : "events " + devhost::ToText({next.name, next.number});
  const std::string source = what + " of process " + std::to_string(next.sender);
  const bool is_said = diagnostics_.SayCounted(
      "lost " + source, std::to_string(lost) + " " + source +
                            " were lost: this process read too slowly for the limits of the bus; " +
                            std::to_string(lost_) + " messages lost in all");
  lost_and_said_ = is_said ? lost_ : lost_and_said_;
}

int vorx::Run() {
  if (is_dispatching_) {
    return Fail(-EBUSY, "vorx_run called from inside a callback");
  }
  while (stop_status_ < 0) {
    const int result = Deliver(true);
    if (stop_status_ >= 0) {
      break;
    }
    if (result < 0) {
      return result;
    }
    WaitForWork();
  }
  return TakeStop();
}

int vorx::TimeoutMs() const {
  const int for_bus = bus_.TimeoutMs();
  const int for_presence = presence_.TimeoutMs();
  return for_bus < 0 || for_presence < 0 ? std::max(for_bus, for_presence)
                                         : std::min(for_bus, for_presence);
}

void vorx::WaitForWork() {
  const int events = bus_.Events();
  pollfd descriptors[] = {
      {bus_.Fd(), static_cast<std::int16_t>(std::max(events, 0)), 0},
      {wake_up_fd_, POLLIN, 0},
  };
  if (events >= 0) {
    poll(descriptors, std::size(descriptors), TimeoutMs());
  }
}

int vorx::TakeStop() {
  std::uint64_t ignored = 0;
  // NOLINTNEXTLINE(bugprone-unused-return-value): an empty counter is as good.
  static_cast<void>(read(wake_up_fd_, &ignored, sizeof ignored) >= 0);
  return stop_status_.exchange(-1);
}

void vorx::Stop(int status) {
  const int saved = errno;
  stop_status_ = std::max(status, 0);
  const std::uint64_t one = 1;
  // A full counter wakes the reader just as well.
  static_cast<void>(write(wake_up_fd_, &one, sizeof one) >= 0);
  errno = saved;
}

int vorx::SendSignal(vorx_pid_t destination, const vorx_sig_descriptor& descriptor,
                     devhost::Payload payload) {
  const int result = signals_.Send(destination, descriptor, payload);
  return result >= 0
             ? 0
             : Fail(result, "signal " + devhost::ToText({descriptor.block, descriptor.number}) +
                                " to process " + std::to_string(destination) + " not sent");
}

int vorx::PublishEvent(const vorx_event_descriptor& descriptor, devhost::Payload payload) {
  const int result = events_.Publish(descriptor, payload);
  return result >= 0
             ? 0
             : Fail(result, "event " + devhost::ToText({descriptor.group, descriptor.number}) +
                                " not published");
}

int vorx::Fail(int error, const std::string& what) {
  last_error_ = what + ": " + ErrorText(error);
  diagnostics_.SayCounted(last_error_, last_error_);
  return error;
}
