/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_HANDLE_H
#define DEVHOST_VORX_HANDLE_H

#include <vorx/host.h>

#include <atomic>
#include <cstdint>
#include <string>

#include "bus.h"
#include "events.h"
#include "options.h"
#include "peers.h"
#include "presence.h"
#include "signals.h"

/** A process on the bus: what the C functions of vorx/vorx.h and vorx/host.h act on. */
struct vorx {
 public:
  explicit vorx(devhost::Options options);
  ~vorx();
  vorx(const vorx&) = delete;
  vorx& operator=(const vorx&) = delete;

  /** Joins the bus. 0, or a negative error number and the reason in last_error(). */
  int Open();

  int Dispatch();
  int Run();
  /** Safe in a signal handler. */
  void Stop(int status);
  /** How long to wait at most for the next Dispatch(), as poll(2) takes it. */
  int TimeoutMs() const;
  bool IsDispatching() const { return is_dispatching_; }

  int SendSignal(vorx_pid_t destination, const vorx_sig_descriptor& descriptor,
                 devhost::Payload payload);
  int PublishEvent(const vorx_event_descriptor& descriptor, devhost::Payload payload);

  /** Keeps the reason of a failure and says it on standard error. */
  int Fail(int error, const std::string& what);

  const devhost::Options& options() const { return options_; }
  vorx_pid_t self() const { return self_; }
  const std::string& last_error() const { return last_error_; }
  devhost::Bus& bus() { return bus_; }
  const devhost::Bus& bus() const { return bus_; }
  devhost::Diagnostics& diagnostics() { return diagnostics_; }
  devhost::Signals& signals() { return signals_; }
  devhost::Events& events() { return events_; }
  devhost::Presence& presence() { return presence_; }

 private:
  int JoinBus();
  int TakeName();
  int RequestName();
  void LeaveName();
  int WatchPresence();
  int Deliver(bool until_stopped);
  void NoteIdle();
  void Handle(devhost::Incoming& incoming);
  void HandlePacket(const devhost::Packet& packet);
  void ReportLost(const devhost::Packet& next, std::uint64_t lost);
  void WaitForWork();
  int TakeStop();

  const devhost::Options options_;
  devhost::Diagnostics diagnostics_;
  devhost::Peers peers_;
  devhost::Bus bus_;
  devhost::Signals signals_;
  devhost::Events events_;
  devhost::Presence presence_;
  vorx_pid_t self_ = 0;
  std::string last_error_;
  bool is_dispatching_ = false;
  bool is_loss_reported_ = false;
  std::size_t backlog_ = 0; /**< Bytes that came since there last was nothing to do. */
  std::uint64_t lost_ = 0;  /**< Messages that are known to be lost on the way here. */
  std::uint64_t lost_and_said_ = 0;
  int wake_up_fd_ = -1;
  /** The status that the process is to stop with; negative while it is not to stop. */
  std::atomic<int> stop_status_{-1};
};

#endif
